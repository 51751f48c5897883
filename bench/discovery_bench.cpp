// INF discovery on a machine's scale. DevicePath holds 100, 500 or 1,500
// INFs: mostly of other device classes, 3 to 22 KB, every 25th a small
// printer INF of other models, and one large printer INF of 100
// manufacturers x 40 models behind %token% names (about 1.16 MB), then one
// of 200 manufacturers, twice the size. FindInf looks for the last model of
// the last manufacturer, and for a model that is nowhere, which reads every
// candidate. Beside it, in the same process, setupapi walks the same folder
// in the same order: each INF opened, its class read, every manufacturer and
// model looked at, until the model turns up. The DevicePath of the prefix
// the bench runs in is pointed at each folder in turn and put back at the end.
// Prints MatchInf on each large INF alone, their rounds taking turns:
//   "figure growth BYTES MS BYTES MS",
// per folder and large INF
//   "figure discovery INFS BYTES position N found MS nowhere MS
//    setupapi-found MS setupapi-nowhere MS ok FOUND SETUPAPI"
// (ok: 1 when the model was found in the large INF under its manufacturer),
// and for 1,500 INFs with the 1.16 MB one, every INF written long before
// and just before each round:
//   "figure fresh INFS found-old MS found-fresh MS nowhere-old MS nowhere-fresh MS".
#include "discovery_bench.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench_support.h"
#include "entry/printer_inf.h"
#include "support/handles.h"

#include <setupapi.h>

namespace {

const int FolderSizes[] = {100, 500, 1500};
const int LargeMakers[] = {100, 200};
const int ModelsPerMaker = 40;
const size_t SmallestOther = 3 * 1024;
const size_t OtherSpread = 19 * 1024;
const int PrinterEvery = 25;
const char LargeName[] = "zeta.inf";
const char NowhereModel[] = "Nowhere Model 1";
const char PrinterGuid[] = "{4D36E979-E325-11CE-BFC1-08002BE10318}";
const char CurrentVersionKey[] = "Software\\Microsoft\\Windows\\CurrentVersion";
// A file the profile calls would still take for freshly written is less
// than 2.1 s old; one of an hour ago is long settled.
const ULONGLONG HourIn100ns = 36000000000ull;

const struct {
    const char *Name, *Guid;
} OtherClasses[] = {
    {"Net", "{4D36E972-E325-11CE-BFC1-08002BE10318}"},     {"MEDIA", "{4D36E96C-E325-11CE-BFC1-08002BE10318}"},
    {"HIDClass", "{745A17A0-74D3-11D0-B6FE-00A0C90F57DA}"}, {"Display", "{4D36E968-E325-11CE-BFC1-08002BE10318}"},
    {"USB", "{36FC9E60-C465-11CF-8056-444553540000}"},     {"Ports", "{4D36E978-E325-11CE-BFC1-08002BE10318}"},
};

struct CSetupInfTraits {
    typedef HINF Type;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type value) { SetupCloseInfFile(value); }
};
typedef CUniqueHandle<CSetupInfTraits> CSetupInf;

std::string Number(int value, int width)
{
    char text[16];
    snprintf(text, sizeof text, "%0*d", width, value);
    return text;
}

std::string VersionLines(const std::string &name, const std::string &guid)
{
    return "[Version]\r\nSignature=\"$Windows NT$\"\r\nClass=" + name + "\r\nClassGUID=" + guid +
           "\r\nProvider=%Vendor%\r\nDriverVer=01/01/2024,1.0.0.0\r\n\r\n";
}

// A driver INF of another class, or a small printer INF of other models,
// of about size bytes.
std::string SmallInf(int i, size_t size)
{
    bool printer = i % PrinterEvery == 0;
    const auto &other = OtherClasses[i % (sizeof OtherClasses / sizeof OtherClasses[0])];
    std::string head = VersionLines(printer ? "Printer" : other.Name, printer ? PrinterGuid : other.Guid) +
                       "[Manufacturer]\r\n%Vendor%=Devices\r\n\r\n[Devices]\r\n";
    std::string sections, strings = "[Strings]\r\nVendor=\"Vendor " + Number(i, 4) + "\"\r\n";
    for (int d = 0; head.size() + sections.size() + strings.size() < size; ++d) {
        std::string id = "Dev" + Number(d, 3);
        head += "%" + id + "%=" + id + "_Inst,PCI\\VEN_" + Number(i, 4) + "&DEV_" + Number(d, 4) + "\r\n";
        sections += "[" + id + "_Inst]\r\nCopyFiles=" + id + "_Files\r\nAddReg=" + id + "_Reg\r\n\r\n[" + id +
                    "_Files]\r\ndev" + Number(d, 3) + ".sys\r\n\r\n[" + id + "_Reg]\r\nHKR,,DevLoader,,*ntkern\r\n\r\n";
        strings += id + "=\"Device " + Number(i, 4) + " model " + Number(d, 3) + "\"\r\n";
    }
    return head + "\r\n" + sections + strings;
}

// The install section of one model of the large INF; its manufacturer's
// models share their file list and data section, as in shipped printer INFs.
std::string ModelSection(const std::string &key, const std::string &maker, const std::string &id)
{
    return "[" + key + "]\r\nCopyFiles=ZETA" + maker + "_Files\r\nDataSection=ZETA" + maker + "_Data\r\nDataFile=" +
           key + ".PPD\r\nInclude=NTPRINT.INF\r\nNeeds=PSCRIPT.OEM,PSCRIPT_DATA\r\nHardwareID=" + id +
           "\r\nDriverVer=01/01/2024,1.0.0.0\r\n\r\n";
}

std::string MakerSections(const std::string &maker)
{
    return "[ZETA" + maker + "_Data]\r\nDriverFile=ZETA" + maker + ".DLL\r\nConfigFile=ZETAUI.DLL\r\nHelpFile=ZETA.HLP\r\n\r\n"
           "[ZETA" + maker + "_Files]\r\nZETA" + maker + ".DLL\r\nZETAUI.DLL\r\nZETA.HLP\r\n\r\n";
}

std::string LargeInf(int makers)
{
    std::string head = VersionLines("Printer", PrinterGuid) + "[Manufacturer]\r\n", models, sections;
    std::string strings = "[Strings]\r\nVendor=\"Zeta\"\r\n";
    for (int m = 1; m <= makers; ++m) {
        std::string maker = Number(m, 3);
        head += "%Zeta" + maker + "%=Zeta" + maker + "\r\n";
        strings += "Zeta" + maker + "=\"Zeta Vendor " + maker + "\"\r\n";
        models += "[Zeta" + maker + "]\r\n";
        sections += MakerSections(maker);
        for (int k = 1; k <= ModelsPerMaker; ++k) {
            std::string key = "Z" + maker + "M" + Number(k, 2);
            std::string id = "LPTENUM\\ZetaVendor" + maker + "Model" + Number(k, 2);
            models += "%" + key + "%=" + key + "," + id + "\r\n";
            sections += ModelSection(key, maker, id);
            strings += key + "=\"Zeta Vendor " + maker + " Model " + Number(k, 2) + "\"\r\n";
        }
        models += "\r\n";
    }
    return head + "\r\n" + models + sections + strings;
}

// Points DevicePath at a folder for as long as it lives, then puts the old
// value back.
class CDevicePath {
public:
    CDevicePath()
    {
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, CurrentVersionKey, 0, KEY_QUERY_VALUE | KEY_SET_VALUE, Key.Put());
        DWORD size = sizeof Saved;
        if (RegQueryValueExA(Key.Get(), "DevicePath", NULL, &SavedType, reinterpret_cast<BYTE *>(Saved), &size))
            SavedType = 0;
    }
    ~CDevicePath()
    {
        if (SavedType)
            RegSetValueExA(Key.Get(), "DevicePath", 0, SavedType, reinterpret_cast<const BYTE *>(Saved),
                           static_cast<DWORD>(strlen(Saved) + 1));
    }
    bool Set(const std::string &folder)
    {
        return RegSetValueExA(Key.Get(), "DevicePath", 0, REG_SZ, reinterpret_cast<const BYTE *>(folder.c_str()),
                              static_cast<DWORD>(folder.size() + 1)) == ERROR_SUCCESS;
    }

private:
    CRegistryHandle Key;
    DWORD SavedType = 0;
    char Saved[MAX_PATH] = "";
};

bool MakeFolder(const std::string &folder, int count)
{
    CreateDirectoryA(folder.c_str(), NULL);
    for (int i = 1; i < count; ++i)
        if (!WriteFileText(folder + "dev" + Number(i, 4) + ".inf", SmallInf(i, SmallestOther + (i * 7919) % OtherSpread)))
            return false;
    return true;
}

// Every INF of the folder written an hour ago, or just now.
void SetWriteTimes(const std::string &folder, bool now)
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    ULARGE_INTEGER value = {{time.dwLowDateTime, time.dwHighDateTime}};
    if (!now)
        value.QuadPart -= HourIn100ns;
    time.dwLowDateTime = value.LowPart;
    time.dwHighDateTime = value.HighPart;
    WIN32_FIND_DATAA data;
    CFindHandle find(FindFirstFileA((folder + "*.inf").c_str(), &data));
    if (find.IsValid())
        do {
            CFileHandle file(CreateFileA((folder + data.cFileName).c_str(), FILE_WRITE_ATTRIBUTES,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE, NULL, OPEN_EXISTING, 0, NULL));
            SetFileTime(file.Get(), NULL, NULL, &time);
        } while (FindNextFileA(find.Get(), &data));
}

// Where the large INF comes in the platform's order of the folder.
int PositionOf(const std::string &folder, const char *name)
{
    WIN32_FIND_DATAA data;
    CFindHandle find(FindFirstFileA((folder + "*.inf").c_str(), &data));
    int position = 1;
    if (find.IsValid())
        do {
            if (!lstrcmpiA(data.cFileName, name))
                return position;
            ++position;
        } while (FindNextFileA(find.Get(), &data));
    return 0;
}

// FindInf for a printer that does not exist: the directories alone.
bool Find(const char *model, std::string &inf, std::string &maker)
{
    CPrinterInf printer;
    char infText[MAX_PATH] = "", makerText[MAX_PATH] = "", modelText[MAX_PATH];
    lstrcpynA(modelText, model, sizeof modelText);
    bool found = printer.FindInf("", infText, sizeof infText, makerText, sizeof makerText, modelText, sizeof modelText);
    inf = infText;
    maker = makerText;
    return found;
}

bool SetupapiIsPrinter(HINF inf)
{
    char value[MAX_PATH] = "";
    if (SetupGetLineTextA(NULL, inf, "Version", "ClassGUID", value, sizeof value, NULL) && *value)
        return !lstrcmpiA(value, PrinterGuid);
    return SetupGetLineTextA(NULL, inf, "Version", "Class", value, sizeof value, NULL) && !lstrcmpiA(value, "Printer");
}

bool SetupapiListsModel(HINF inf, const char *model, std::string &maker)
{
    INFCONTEXT line, next;
    for (BOOL more = SetupFindFirstLineA(inf, "Manufacturer", NULL, &line); more;
         more = SetupFindNextLine(&line, &next), line = next) {
        char name[MAX_PATH] = "", models[MAX_PATH] = "", entry[MAX_PATH];
        SetupGetStringFieldA(&line, 0, name, sizeof name, NULL);
        if (!SetupGetStringFieldA(&line, 1, models, sizeof models, NULL) || !*models)
            lstrcpynA(models, name, sizeof models);
        INFCONTEXT modelLine, nextModel;
        for (BOOL listed = SetupFindFirstLineA(inf, models, NULL, &modelLine); listed;
             listed = SetupFindNextLine(&modelLine, &nextModel), modelLine = nextModel)
            if (SetupGetStringFieldA(&modelLine, 0, entry, sizeof entry, NULL) && !lstrcmpiA(entry, model)) {
                maker = name;
                return true;
            }
    }
    return false;
}

bool SetupapiFind(const std::string &folder, const char *model, std::string &inf, std::string &maker)
{
    WIN32_FIND_DATAA data;
    CFindHandle find(FindFirstFileA((folder + "*.inf").c_str(), &data));
    if (!find.IsValid())
        return false;
    do {
        inf = folder + data.cFileName;
        CSetupInf handle(SetupOpenInfFileA(inf.c_str(), NULL, INF_STYLE_WIN4, NULL));
        if (handle.IsValid() && SetupapiIsPrinter(handle.Get()) && SetupapiListsModel(handle.Get(), model, maker))
            return true;
    } while (FindNextFileA(find.Get(), &data));
    return false;
}

// The model found in the large INF, under its manufacturer.
bool FoundRight(bool found, const std::string &inf, const std::string &maker, const std::string &wanted)
{
    size_t name = inf.size() >= strlen(LargeName) ? inf.size() - strlen(LargeName) : 0;
    return found && !lstrcmpiA(inf.c_str() + name, LargeName) && maker == wanted;
}

void Measure(const std::string &folder, int count, int makers, size_t bytes, int repeats)
{
    std::string model = "Zeta Vendor " + Number(makers, 3) + " Model " + Number(ModelsPerMaker, 2);
    std::string wanted = "Zeta Vendor " + Number(makers, 3), inf, maker, setupInf, setupMaker, none;
    bool found = false, setupFound = false;
    double ours = MedianOf(repeats, [&] { found = Find(model.c_str(), inf, maker); });
    double nowhere = MedianOf(repeats, [&] { Find(NowhereModel, none, none); });
    double setupapi = Milliseconds([&] { setupFound = SetupapiFind(folder, model.c_str(), setupInf, setupMaker); });
    double setupapiNowhere = Milliseconds([&] { SetupapiFind(folder, NowhereModel, none, none); });
    printf("figure discovery %d %u position %d found %.3f nowhere %.3f setupapi-found %.3f "
           "setupapi-nowhere %.3f ok %d %d\n",
           count, static_cast<unsigned>(bytes), PositionOf(folder, LargeName), ours, nowhere, setupapi,
           setupapiNowhere, FoundRight(found, inf, maker, wanted), FoundRight(setupFound, setupInf, setupMaker, wanted));
    fflush(stdout);
}

// MatchInf on the large INF alone, at its size and at twice it; the rounds
// of both take turns, so that whatever else the machine does weighs on both
// alike.
void MeasureGrowth(const std::string &directory, int repeats)
{
    std::string paths[2], models[2];
    size_t bytes[2];
    std::vector<double> times[2];
    for (int i = 0; i < 2; ++i) {
        std::string text = LargeInf(LargeMakers[i]);
        paths[i] = directory + "large" + std::to_string(i) + ".inf";
        models[i] = "Zeta Vendor " + Number(LargeMakers[i], 3) + " Model " + Number(ModelsPerMaker, 2);
        bytes[i] = text.size();
        WriteFileText(paths[i], text);
    }
    for (int round = 0; round < repeats; ++round)
        for (int i = 0; i < 2; ++i)
            times[i].push_back(Milliseconds([&] {
                CPrinterInf printer;
                CBoundedString maker;
                printer.MatchInf(CBoundedString(paths[i].c_str()), CBoundedString(models[i].c_str()), maker);
            }));
    for (std::vector<double> &t : times)
        std::sort(t.begin(), t.end());
    printf("figure growth %u %.3f %u %.3f\n", static_cast<unsigned>(bytes[0]), times[0][repeats / 2],
           static_cast<unsigned>(bytes[1]), times[1][repeats / 2]);
    fflush(stdout);
}

// What a search costs with every INF written just before it, as after an
// update: the profile calls would read such a file again on every call.
void MeasureFresh(const std::string &folder, int count, int repeats)
{
    std::string model = "Zeta Vendor " + Number(LargeMakers[0], 3) + " Model " + Number(ModelsPerMaker, 2);
    std::string inf, maker;
    auto fresh = [&] { SetWriteTimes(folder, true); };
    SetWriteTimes(folder, false);
    double foundOld = MedianOf(repeats, [&] { Find(model.c_str(), inf, maker); });
    double nowhereOld = MedianOf(repeats, [&] { Find(NowhereModel, inf, maker); });
    double foundFresh = MedianOf(repeats, [&] { Find(model.c_str(), inf, maker); }, fresh);
    double nowhereFresh = MedianOf(repeats, [&] { Find(NowhereModel, inf, maker); }, fresh);
    printf("figure fresh %d found-old %.3f found-fresh %.3f nowhere-old %.3f nowhere-fresh %.3f\n", count, foundOld,
           foundFresh, nowhereOld, nowhereFresh);
    fflush(stdout);
}

}  // namespace

int Discovery(const std::string &directory, int repeats)
{
    MeasureGrowth(directory, repeats);
    std::string empty = directory + "empty\\";
    CreateDirectoryA(empty.c_str(), NULL);
    for (int count : FolderSizes)
        if (!MakeFolder(directory + "devices" + std::to_string(count) + "\\", count))
            return 1;
    // Searched first, and empty: the folder is reached through DevicePath.
    SetCurrentDirectoryA(empty.c_str());
    CDevicePath devicePath;
    for (int makers : LargeMakers) {
        std::string large = LargeInf(makers);
        for (int count : FolderSizes) {
            std::string folder = directory + "devices" + std::to_string(count) + "\\";
            if (!WriteFileText(folder + LargeName, large) || !devicePath.Set(folder))
                return 1;
            SetWriteTimes(folder, false);
            Measure(folder, count, makers, large.size(), repeats);
        }
    }
    std::string last = directory + "devices" + std::to_string(FolderSizes[2]) + "\\";
    if (!WriteFileText(last + LargeName, LargeInf(LargeMakers[0])) || !devicePath.Set(last))
        return 1;
    MeasureFresh(last, FolderSizes[2], repeats);
    return 0;
}
