// Helpers for the Windows test programs: scratch directories inside the test
// prefix, files and registry values written and read back, programs run.
#ifndef TOVREL_TESTS_TEST_SUPPORT_H
#define TOVREL_TESTS_TEST_SUPPORT_H

#include <windows.h>
#include <shlwapi.h>

#include <future>
#include <string>
#include <vector>

// A fresh, empty directory for the running test, ending in a backslash.
std::string ScratchDirectory();
void WriteText(const std::string &path, const std::string &bytes);
std::string ReadText(const std::string &path);
inline bool PathExists(const std::string &path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }
void DeleteTree(const std::string &path);
// The directory of the running test program, where the build puts tovrel.dll
// and the fixture binaries; ends in a backslash.
std::string BinaryDirectory();

class CPrinterInf;
// Writes a printer INF of the given sections behind its [Version] to path and
// loads it into printer, whose model becomes "Acme Laser", as Install has it
// by the time the stages run.
void LoadModelInf(CPrinterInf &printer, const std::string &path, const std::string &sections);

struct CStoredValue {
    DWORD Type = 0;  // 0 when the value or its key is missing
    std::string Data;  // the stored bytes, NULs included
};
CStoredValue ReadStoredValue(HKEY root, const std::string &key, const char *name);
// Value names of a key as the registry enumerates them; empty if the key is missing.
std::vector<std::string> StoredValueNames(HKEY root, const std::string &key);
bool KeyExists(HKEY root, const std::string &key);
inline void DeleteKeyTree(HKEY root, const std::string &key) { SHDeleteKeyA(root, key.c_str()); }

// Runs a command line and gives its exit code, -1 when it did not start or end.
int RunProcess(const std::string &commandLine);

// Message boxes: a box is found by its caption (class "#32770", in any process
// of the prefix), read and answered with a button's command on a thread of its
// own, for a box that the calling thread or a child shows.
struct CSeenBox {
    bool Found = false;
    std::string Text;
    std::vector<std::string> Buttons;
};
const DWORD BoxWait = 30000;
std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout = BoxWait);

#endif
