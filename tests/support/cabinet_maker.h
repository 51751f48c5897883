// Cabinets for tests, written byte by byte so that no library helps or hides
// what the decoder is given.
#ifndef TOVREL_TESTS_CABINET_MAKER_H
#define TOVREL_TESTS_CABINET_MAKER_H

#include <windows.h>

#include <string>
#include <vector>

struct CStoredFile {
    std::string Stored, Content;
    USHORT Date, Time, Attributes;
};

// One uncompressed cabinet, alone in its set, of one folder (files up to
// 32 KiB together), written without any library. No files gives a cabinet
// without folders. The same cabinet as bytes, to be damaged before it is
// written; empty when the files are too large.
std::string StoredCabinetBytes(const std::vector<CStoredFile> &files);
bool WriteStoredCabinet(const std::string &path, const std::vector<CStoredFile> &files);

#endif
