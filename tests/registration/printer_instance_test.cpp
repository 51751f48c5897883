#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/printer_instance.h"
#include "support/handles.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

struct CListedPrinter {
    bool Found = false;
    std::string Driver, Port, Processor, Datatype, Comment, Location, Share;
};

std::string Text(const char *text) { return text ? text : ""; }

CListedPrinter ListedPrinter(const char *name)
{
    CListedPrinter listed;
    DWORD needed = 0, count = 0;
    EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    if (!EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, buffer.data(), needed, &needed, &count))
        return listed;
    PRINTER_INFO_2A *printers = reinterpret_cast<PRINTER_INFO_2A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i) {
        if (lstrcmpiA(printers[i].pPrinterName, name))
            continue;
        listed.Found = true;
        listed.Driver = Text(printers[i].pDriverName);
        listed.Port = Text(printers[i].pPortName);
        listed.Processor = Text(printers[i].pPrintProcessor);
        listed.Datatype = Text(printers[i].pDatatype);
        listed.Comment = Text(printers[i].pComment);
        listed.Location = Text(printers[i].pLocation);
        listed.Share = Text(printers[i].pShareName);
    }
    return listed;
}

// The mark the stage leaves; 0 when the printer or the value is missing.
DWORD PrinterMark(const char *name)
{
    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ACCESS_USE};
    if (!OpenPrinterA(const_cast<char *>(name), printer.Put(), &defaults))
        return 0;
    DWORD type = 0, value = 0, needed = 0;
    if (GetPrinterDataA(printer.Get(), const_cast<char *>(PrinterMarkValue), &type,
                        reinterpret_cast<BYTE *>(&value), sizeof value, &needed) != ERROR_SUCCESS)
        return 0;
    EXPECT_EQ(static_cast<DWORD>(REG_DWORD), type);
    EXPECT_EQ(4u, needed);
    return value;
}

// A driver that the spooler knows, with a config file that is no library.
void PrepareModel(CPrinterInf &inf, const char *printer)
{
    inf.Model = CBoundedString("Tovrel Printer Model");
    inf.DriverFile = CBoundedString("tvdrv.dll");
    inf.DataFile = CBoundedString("tvdata.ppd");
    inf.ConfigFile = CBoundedString("tvui.txt");
    inf.HelpFile = CBoundedString("tvhelp.hlp");
    inf.DefaultDataType = CBoundedString("RAW");
    inf.PrintProcessorName = CBoundedString("winprint");
    inf.PrinterName = CBoundedString(printer);
    if (!inf.UpdateInstalledDrivers()) {
        ASSERT_EQ(1, inf.AddNewDriver(CDestinationList(1, CBoundedString("tvdrv.dll")))) << GetLastError();
    }
}

TEST(InstallPrinter, NewPrinterOnTheDriverWithItsPort)
{
    static const struct {
        const char *Printer, *Port, *Expected;
    } cases[] = {
        {"Tovrel Printer Null Port", nullptr, "LPT1:"},
        {"Tovrel Printer Empty Port", "", "LPT1:"},
        {"Tovrel Printer File Port", "FILE:", "FILE:"},
    };
    for (const auto &c : cases) {
        CPrinterInf inf;
        PrepareModel(inf, c.Printer);
        EXPECT_EQ(1, inf.InstallPrinter(c.Port));
        CListedPrinter listed = ListedPrinter(c.Printer);
        ASSERT_TRUE(listed.Found) << c.Printer;
        EXPECT_EQ("Tovrel Printer Model", listed.Driver);
        EXPECT_EQ(c.Expected, listed.Port) << c.Printer;
        EXPECT_EQ("winprint", listed.Processor);
        EXPECT_EQ("RAW", listed.Datatype);
        EXPECT_EQ("", listed.Comment);
        EXPECT_EQ("", listed.Location);
        EXPECT_EQ(1u, PrinterMark(c.Printer)) << c.Printer;
    }
}

TEST(InstallPrinter, AnExistingPrinterKeepsWhatItHolds)
{
    const char *name = "Tovrel Printer Existing";
    CPrinterInf inf;
    PrepareModel(inf, name);
    char port[] = "COM1:", comment[] = "Kept comment", location[] = "Kept place", processor[] = "winprint",
         datatype[] = "RAW";
    PRINTER_INFO_2A info;
    std::memset(&info, 0, sizeof info);
    info.pPrinterName = inf.PrinterName;
    info.pDriverName = inf.Model;
    info.pPortName = port;
    info.pComment = comment;
    info.pLocation = location;
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    CPrinterHandle added(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info)));
    ASSERT_TRUE(added.IsValid()) << GetLastError();
    added.Reset();
    ASSERT_EQ(0u, PrinterMark(name));

    EXPECT_EQ(1, inf.InstallPrinter("FILE:"));
    CListedPrinter listed = ListedPrinter(name);
    ASSERT_TRUE(listed.Found);
    EXPECT_EQ("COM1:", listed.Port);
    EXPECT_EQ("Kept comment", listed.Comment);
    EXPECT_EQ("Kept place", listed.Location);
    EXPECT_EQ(1u, PrinterMark(name));
}

TEST(InstallPrinter, AnUnknownDriverMakesNoPrinterButTheKeyIsThere)
{
    const char *name = "Tovrel Printer No Driver";
    CPrinterInf inf;
    inf.Model = CBoundedString("Tovrel Model Nobody Added");
    inf.PrintProcessorName = CBoundedString("winprint");
    inf.PrinterName = CBoundedString(name);
    EXPECT_EQ(1, inf.InstallPrinter(NULL));
    EXPECT_FALSE(ListedPrinter(name).Found);
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, std::string(PrintersKey) + name));
}

}  // namespace
