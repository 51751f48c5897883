// Helpers for the Windows test programs: scratch directories inside the test
// prefix, files written and read back, the paths of fixtures and built files.
#ifndef TOVREL_TESTS_TEST_SUPPORT_H
#define TOVREL_TESTS_TEST_SUPPORT_H

#include <windows.h>

#include <string>

// A fresh, empty directory for the running test, ending in a backslash.
std::string ScratchDirectory();

void WriteBytes(const std::string &path, const void *data, size_t size);
void WriteText(const std::string &path, const std::string &text);
std::string ReadText(const std::string &path);
bool PathExists(const std::string &path);
void DeleteTree(const std::string &path);

class CPrinterInf;
// Writes a printer INF of the given sections behind its [Version] to path and
// loads it into printer, whose model becomes "Acme Laser", as Install has it
// by the time the stages run.
void LoadModelInf(CPrinterInf &printer, const std::string &path, const std::string &sections);

// A file under tests/fixtures of the source tree, as Wine sees it.
std::string FixturePath(const std::string &relative);
// The directory of the running test program, where the build puts tovrel.dll
// and the fixture binaries; ends in a backslash.
std::string BinaryDirectory();

#endif
