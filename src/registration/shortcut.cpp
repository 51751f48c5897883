#include "registration/shortcut.h"

#include <cstdlib>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/path_parts.h"
#include "files/uninstall_data.h"

namespace {

const char *Text(const char *text) { return text ? text : ""; }

// What Save reads back of the description, which names the shortcut file.
const int DescriptionSize = 257;

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
    char description[DescriptionSize] = "";
    ShellLink->GetDescription(description, sizeof description);
    // The file is named by the description: without one there is no name,
    // and every such line would overwrite one file called ".lnk".
    if (!description[0])
        return false;

    // The description is the file name as it stands, dots and all. A path
    // that doesn't fit, or a folder that came to nothing, is refused, never
    // cut into another name or taken for the current directory.
    if (!IsAbsoluteDirectory(Text(path)))
        return false;
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

namespace {

// One line of a program group section. A field that a short line doesn't
// reach stays empty.
struct CShortcutLine {
    CBoundedString GroupRoot, GroupFolder, Description;
    CBoundedString TargetRoot, TargetFolder, TargetFile, Arguments;
    CBoundedString WorkingRoot, WorkingFolder, ShowCommand;
    CBoundedString IconRoot, IconFolder, IconFile, IconIndex, HotKey;
};

// The fields in their order on the line. Directory ids and numbers are taken
// as they stand; a text field may be a string token of the INF.
const struct {
    CBoundedString CShortcutLine::*Field;
    bool IsText;
} ShortcutFields[] = {
    {&CShortcutLine::GroupRoot, false},    {&CShortcutLine::GroupFolder, true},
    {&CShortcutLine::Description, true},   {&CShortcutLine::TargetRoot, false},
    {&CShortcutLine::TargetFolder, true},  {&CShortcutLine::TargetFile, true},
    {&CShortcutLine::Arguments, true},     {&CShortcutLine::WorkingRoot, false},
    {&CShortcutLine::WorkingFolder, true}, {&CShortcutLine::ShowCommand, false},
    {&CShortcutLine::IconRoot, false},     {&CShortcutLine::IconFolder, true},
    {&CShortcutLine::IconFile, true},      {&CShortcutLine::IconIndex, false},
    {&CShortcutLine::HotKey, false},
};
const int ShortcutFieldCount = sizeof ShortcutFields / sizeof ShortcutFields[0];

// Commas cut the text, in place, into the fields; quotes don't protect a
// comma, and the last field takes the rest. Blanks round a field go. False
// when a field names a token whose text was cut.
bool ReadShortcutLine(CPrinterInf &printer, char *text, CShortcutLine &line)
{
    char *field = text;
    for (int i = 0; i < ShortcutFieldCount && field; ++i) {
        char *rest = i + 1 < ShortcutFieldCount ? NextToken(field, ',') : NULL;
        StripChar(field, ' ');
        CBoundedString &value = line.*ShortcutFields[i].Field;
        if (!ShortcutFields[i].IsText)
            value = CBoundedString(field);
        else if (printer.ExpandToken(field, value, NULL) == KeyCut)
            return false;
        field = rest;
    }
    return true;
}

// The group is one folder below its root and the description one file in
// it: a path in either could put the link anywhere.
bool NamesStayPut(const CShortcutLine &line)
{
    return (line.GroupFolder.IsEmpty() || IsSingleName(line.GroupFolder)) &&
           (line.Description.IsEmpty() || IsSingleName(line.Description));
}

long Number(const CBoundedString &field) { return std::atol(field); }

// A spec at an INF directory id and a folder below it; an unknown id leaves
// the folder alone, relative to the current directory.
void PlaceUnder(CPrinterInf &printer, CFileSpec &spec, const char *root, const char *folder)
{
    char directory[CBoundedString::Capacity] = "";
    printer.FindDirectoryIdText(root, directory);
    spec.SetPath(directory);
    spec.AppendDirectory(folder);
}

// The group's folder: below the root that the line names, or below the
// Programs folder when that root has no path. Only its last level is made.
void MakeGroupFolder(CPrinterInf &printer, const CShortcutLine &line, CFileSpec &group)
{
    char directory[CBoundedString::Capacity] = "";
    group.Resolve(FileSpecEmpty);
    if (!line.GroupRoot.IsEmpty() && printer.FindDirectoryIdText(line.GroupRoot, directory) && directory[0])
        group.SetPath(directory);
    else
        group.Resolve(FileSpecPrograms);
    group.AppendDirectory(line.GroupFolder);
    CreateDirectoryA(group.DirectoryPath(), NULL);
}

// Without a working root the target's directory serves, which is empty when
// the line names no target either.
void PlaceWorkingDirectory(CPrinterInf &printer, const CShortcutLine &line, CFileSpec &target, CShortcut &link)
{
    CFileSpec workDir;
    workDir.Resolve(FileSpecEmpty);
    if (!line.WorkingRoot.IsEmpty())
        PlaceUnder(printer, workDir, line.WorkingRoot, line.WorkingFolder);
    else
        workDir.SetDirectory(target.DirectoryPath());
    link.SetWorkingDirectory(workDir.DirectoryPath());
}

// The icon needs both its root and its index; an index of 0 is the text 0.
void SetIcon(CPrinterInf &printer, const CShortcutLine &line, CShortcut &link)
{
    if (line.IconRoot.IsEmpty() || line.IconIndex.IsEmpty())
        return;
    CFileSpec icon;
    icon.Resolve(FileSpecEmpty);
    PlaceUnder(printer, icon, line.IconRoot, line.IconFolder);
    icon.SetFileName(line.IconFile);
    link.ShellLink->SetIconLocation(icon.FullPath(), static_cast<int>(Number(line.IconIndex)));
}

void DescribeLink(CPrinterInf &printer, const CShortcutLine &line, CShortcut &link)
{
    link.SetDescription(line.Description);
    CFileSpec target;
    target.Resolve(FileSpecEmpty);
    if (!line.TargetRoot.IsEmpty()) {
        PlaceUnder(printer, target, line.TargetRoot, line.TargetFolder);
        target.SetFileName(line.TargetFile);
        link.SetPath(target.FullPath());
    }
    if (!line.Arguments.IsEmpty())
        link.SetArguments(line.Arguments);
    PlaceWorkingDirectory(printer, line, target, link);
    if (!line.ShowCommand.IsEmpty())
        link.ShellLink->SetShowCmd(static_cast<int>(Number(line.ShowCommand)));
    SetIcon(printer, line, link);
    if (!line.HotKey.IsEmpty())
        link.ShellLink->SetHotkey(static_cast<WORD>(Number(line.HotKey)));
}

// One shortcut: on record before anything else that the line causes, then
// made and saved. The whole line, still uncut, names the record. A line that
// was cut, or whose names are paths, is refused before anything.
void AddShortcut(CPrinterInf &printer, const CInfKey &entry)
{
    CShortcut link;
    CBoundedString text, fields;
    CShortcutLine line;
    if (!JoinLine(entry, text) || !ReadShortcutLine(printer, fields = text, line) || !NamesStayPut(line))
        return;
    printer.LogUninstall(UninstallShortcuts, text, "1");

    CFileSpec group;
    MakeGroupFolder(printer, line, group);
    DescribeLink(printer, line, link);
    link.Save(group.FullPath());
}

}  // namespace

int CPrinterInf::AddProgramGroup()
{
    try {
        CInfSection section;
        if (!FindSection(ProgramGroupSections, section))
            throw "no shortcut section";
        if (section->second.empty())
            throw " the program group section is empty";
        for (const CInfKey &entry : section->second)
            AddShortcut(*this, entry);
    } catch (const char *) {
        return 0;
    } catch (const CShortcutException &) {
        return 0;
    }
    return 1;
}
