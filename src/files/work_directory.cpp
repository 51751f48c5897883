#include "files/work_directory.h"

#include <windows.h>

#include <vector>

#include "files/file_identity.h"
#include "files/interruption_points.h"
#include "files/path_parts.h"
#include "files/temp_names.h"
#include "inf/os_version.h"

namespace {

// One value a work directory: its full path, and the identity of the
// directory once it is made (no data before). Under HKLM, where only an
// administrator writes, so that nobody else can point a later run's clean-up
// at a directory of theirs.
const char LedgerKey[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Work Directories";
const DWORD LedgerMost = 4096;

struct CLedgerLine {
    std::string Directory;
    bool Made;
    CFileIdentity Identity;
};

void WriteLedger(const std::string &directory, const CFileIdentity *identity)
{
    CRegistryHandle key;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, LedgerKey, 0, NULL, 0, KEY_SET_VALUE, NULL, key.Put(), NULL) ==
        ERROR_SUCCESS)
        RegSetValueExA(key.Get(), directory.c_str(), 0, REG_BINARY, reinterpret_cast<const BYTE *>(identity),
                       identity ? sizeof *identity : 0);
}

void EraseLedger(const std::string &directory)
{
    CRegistryHandle key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, LedgerKey, 0, KEY_SET_VALUE, key.Put()) == ERROR_SUCCESS)
        RegDeleteValueA(key.Get(), directory.c_str());
}

// A line that is not one of ours in form (a name or data of another size,
// another type) is passed over.
std::vector<CLedgerLine> ReadLedger()
{
    std::vector<CLedgerLine> lines;
    CRegistryHandle key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, LedgerKey, 0, KEY_QUERY_VALUE, key.Put()) != ERROR_SUCCESS)
        return lines;
    for (DWORD index = 0; index < LedgerMost; ++index) {
        char name[MAX_PATH];
        CLedgerLine line = {};
        DWORD nameSize = sizeof name, size = sizeof line.Identity, type = 0;
        LONG status = RegEnumValueA(key.Get(), index, name, &nameSize, NULL, &type,
                                    reinterpret_cast<BYTE *>(&line.Identity), &size);
        if (status == ERROR_NO_MORE_ITEMS)
            break;
        line.Directory = name;
        line.Made = size == sizeof line.Identity;
        if (status == ERROR_SUCCESS && type == REG_BINARY && (line.Made || !size))
            lines.push_back(line);
    }
    return lines;
}

bool IsPlainDirectory(const std::string &path)
{
    DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) &&
           !(attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

// The plain files of a directory the ledger saw made; a subdirectory or a
// link stays, and so then does the directory.
void DeleteFilesIn(const std::string &directory)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((directory + "\\*").c_str(), &found));
    for (bool more = find.IsValid(); more; more = FindNextFileA(find.Get(), &found) != 0)
        if (!(found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)))
            DeleteLeftover((directory + "\\" + found.cFileName).c_str());
}

// What a line leaves of its directory: nothing, unless a running install
// holds it. Anything at that name that is not the directory the line saw
// made is not touched; a line stopped before it could say what it made
// takes only an empty directory with it.
bool RemoveListed(const CLedgerLine &line)
{
    const char *directory = line.Directory.c_str();
    if (!IsPlainDirectory(line.Directory))
        return true;
    if (IsDirectoryHeld(directory))
        return false;
    CFileIdentity identity;
    {
        CFileHandle hold(HoldDirectory(directory));
        if (!hold.IsValid() || !IdentityOf(hold.Get(), identity))
            return false;
        if (line.Made && !SameIdentity(identity, line.Identity))
            return true;
        if (line.Made)
            DeleteFilesIn(line.Directory);
    }
    return RemoveDirectoryIfSame(directory, identity);
}

}  // namespace

void RemoveStaleWorkDirectories()
{
    for (const CLedgerLine &line : ReadLedger()) {
        const char *name = line.Directory.c_str() + FileNameOffset(line.Directory.c_str());
        if (!IsTempName(name, "") || RemoveListed(line))
            EraseLedger(line.Directory);
    }
}

CWorkDirectory::CWorkDirectory() : Ready(false)
{
    RemoveStaleWorkDirectories();
    Ready = Make();
}

// Listed before it is made, so that no moment leaves a directory of the run
// that the ledger does not name. A name that is taken, by whatever and
// whoever, is never used.
bool CWorkDirectory::Make()
{
    char temp[MAX_PATH + 1] = "";
    DWORD length = GetTempPathA(MAX_PATH, temp);
    std::string chosen;
    // The system's temp path ends in a separator.
    if (!length || length >= MAX_PATH || temp[length - 1] != '\\')
        return false;
    std::string directory = ChosenWorkDirectoryName(chosen) ? JoinPath(temp, chosen) : TempName(temp, "");
    if (directory.size() >= MAX_PATH)
        return false;
    WriteLedger(directory, NULL);
    if (!CreateDirectoryA(directory.c_str(), NULL)) {
        EraseLedger(directory);
        return false;
    }
    Directory = directory;
    Hold.Reset(HoldDirectory(Directory.c_str()));
    // The 9x family cannot open a directory: there it is used unheld.
    bool held = Hold.IsValid() && IdentityOf(Hold.Get(), Identity);
    if (!IsPlainDirectory(Directory) || (!held && COsVersion().Family == COsVersion::FamilyWindowsNt))
        return false;
    if (held)
        WriteLedger(Directory, &Identity);
    return true;
}

CWorkDirectory::~CWorkDirectory()
{
    if (Directory.empty())
        return;
    bool held = Hold.IsValid();
    Hold.Reset();
    if (Ready && held)
        RemoveDirectoryIfSame(Directory.c_str(), Identity);
    else if (Ready)
        RemoveDirectoryA(Directory.c_str());
    if (GetFileAttributesA(Directory.c_str()) == INVALID_FILE_ATTRIBUTES)
        EraseLedger(Directory);
}
