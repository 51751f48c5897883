#include "registration/shortcut.h"

#include <cstdlib>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/path_parts.h"
#include "files/uninstall_data.h"

namespace {

const char *Text(const char *text) { return text ? text : ""; }

// The fields of one shortcut line, by their place in it.
enum {
    GroupRoot,
    GroupFolder,
    Description,
    TargetRoot,
    TargetFolder,
    TargetFile,
    Arguments,
    WorkingRoot,
    WorkingFolder,
    ShowCommand,
    IconRoot,
    IconFolder,
    IconFile,
    IconIndex,
    HotKey,
    ShortcutFieldCount
};

bool IsTextField(int field)
{
    switch (field) {
    case GroupFolder:
    case Description:
    case TargetFolder:
    case TargetFile:
    case Arguments:
    case WorkingFolder:
    case IconFolder:
    case IconFile:
        return true;
    default:
        return false;
    }
}

// A spec at an INF directory id and a folder below it; an unknown id leaves
// the folder alone, relative to the current directory.
void PlaceUnder(CPrinterInf &printer, CFileSpec &spec, const char *root, const char *folder)
{
    char directory[CBoundedString::Capacity] = "";
    printer.FindDirectoryIdText(root, directory);
    spec.SetPath(directory);
    spec.AppendDirectory(folder);
}

}  // namespace

CShortcut::CShortcut()
{
    HRESULT result = Initialize();
    if (FAILED(result)) {
        CShortcutException failure = {result};
        throw failure;
    }
}

CShortcut::~CShortcut() {}

HRESULT CShortcut::Initialize()
{
    HRESULT result = Com.Join();
    if (FAILED(result))
        return result;
    result = CoCreateInstance(CLSID_ShellLink, NULL, CLSCTX_INPROC_SERVER, IID_IShellLinkA, ShellLink.PutVoid());
    if (FAILED(result))
        return result;
    return ShellLink->QueryInterface(IID_IPersistFile, PersistFile.PutVoid());
}

bool CShortcut::SetDescription(const char *text) { return SUCCEEDED(ShellLink->SetDescription(Text(text))); }

bool CShortcut::SetPath(const char *text) { return SUCCEEDED(ShellLink->SetPath(Text(text))); }

bool CShortcut::SetWorkingDirectory(const char *text)
{
    return SUCCEEDED(ShellLink->SetWorkingDirectory(Text(text)));
}

bool CShortcut::SetArguments(const char *text) { return SUCCEEDED(ShellLink->SetArguments(Text(text))); }

bool CShortcut::Save(const char *path)
{
    if (!ShellLink.IsValid() || !PersistFile.IsValid())
        return false;
    char description[257] = "";
    ShellLink->GetDescription(description, sizeof description);
    // The file is named by the description: without one there is no name,
    // and every such line would overwrite one file called ".lnk".
    if (!description[0])
        return false;

    // The description is the file name as it stands, dots and all. A path
    // that doesn't fit is refused, never cut into another name.
    char drive[PathDriveSize], directory[PathPartSize];
    SplitPath(Text(path), drive, directory, NULL, NULL);
    char file[2 * MAX_PATH];
    if (MakePath(file, sizeof file, drive, directory, description, ".lnk") >= MAX_PATH)
        return false;

    WCHAR wide[MAX_PATH];
    wide[0] = 0;
    MultiByteToWideChar(CP_ACP, 0, file, -1, wide, MAX_PATH);
    return SUCCEEDED(PersistFile->Save(wide, TRUE));
}

int CPrinterInf::AddProgramGroup()
{
    try {
        CInfSection section;
        if (!FindSection(ProgramGroupSections, section))
            throw "no shortcut section";
        if (section->second.empty())
            throw " the program group section is empty";

        for (const CInfKey &entry : section->second) {
            CShortcut link;
            CBoundedString line(entry.Name);
            line.Append(entry.Value);
            LogUninstall(UninstallShortcuts, line, "1");

            // Quotes don't protect a comma, and the last field takes the rest.
            char *cut[ShortcutFieldCount];
            cut[0] = line.Text;
            for (int i = 1; i < ShortcutFieldCount; ++i)
                cut[i] = NextToken(cut[i - 1], ',');
            CBoundedString fields[ShortcutFieldCount];
            for (int i = 0; i < ShortcutFieldCount; ++i) {
                if (!cut[i])
                    continue;
                StripChar(cut[i], ' ');
                if (IsTextField(i))
                    ExpandToken(cut[i], fields[i], NULL);
                else
                    fields[i] = CBoundedString(cut[i]);
            }

            char directory[CBoundedString::Capacity] = "";
            CFileSpec group;
            group.Resolve(FileSpecEmpty);
            if (!fields[GroupRoot].IsEmpty() && FindDirectoryIdText(fields[GroupRoot], directory) &&
                directory[0])
                group.SetPath(directory);
            else
                group.Resolve(FileSpecPrograms);
            group.AppendDirectory(fields[GroupFolder]);
            CreateDirectoryA(group.DirectoryPath(), NULL);

            link.SetDescription(fields[Description]);

            CFileSpec target;
            target.Resolve(FileSpecEmpty);
            if (!fields[TargetRoot].IsEmpty()) {
                PlaceUnder(*this, target, fields[TargetRoot], fields[TargetFolder]);
                target.SetFileName(fields[TargetFile]);
                link.SetPath(target.FullPath());
            }

            if (!fields[Arguments].IsEmpty())
                link.SetArguments(fields[Arguments]);

            CFileSpec workDir;
            workDir.Resolve(FileSpecEmpty);
            if (!fields[WorkingRoot].IsEmpty()) {
                PlaceUnder(*this, workDir, fields[WorkingRoot], fields[WorkingFolder]);
            } else {
                workDir.SetDirectory(target.DirectoryPath());
            }
            link.SetWorkingDirectory(workDir.DirectoryPath());

            if (!fields[ShowCommand].IsEmpty())
                link.ShellLink->SetShowCmd(static_cast<int>(std::atol(fields[ShowCommand])));

            if (!fields[IconRoot].IsEmpty() && !fields[IconIndex].IsEmpty()) {
                CFileSpec icon;
                icon.Resolve(FileSpecEmpty);
                PlaceUnder(*this, icon, fields[IconRoot], fields[IconFolder]);
                icon.SetFileName(fields[IconFile]);
                link.ShellLink->SetIconLocation(icon.FullPath(), static_cast<int>(std::atol(fields[IconIndex])));
            }

            if (!fields[HotKey].IsEmpty())
                link.ShellLink->SetHotkey(static_cast<WORD>(std::atol(fields[HotKey])));

            link.Save(group.FullPath());
        }
    } catch (const char *) {
        return 0;
    } catch (const CShortcutException &) {
        return 0;
    }
    return 1;
}
