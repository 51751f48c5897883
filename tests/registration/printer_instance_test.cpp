#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/printer_instance.h"
#include "registry_support.h"
#include "support/handles.h"

namespace {

// What EnumPrintersA lists for the printer, and the mark the stage leaves.
struct CListedPrinter {
    bool Found = false;
    std::string Driver, Port, Processor, Datatype, Comment;
    DWORD Mark = 0;
};

CListedPrinter ListedPrinter(const char *name)
{
    CListedPrinter listed;
    DWORD needed = 0, count = 0;
    EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, buffer.data(), needed, &needed, &count);
    const PRINTER_INFO_2A *printers = reinterpret_cast<PRINTER_INFO_2A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        if (!lstrcmpiA(printers[i].pPrinterName, name))
            listed = {true, printers[i].pDriverName, printers[i].pPortName, printers[i].pPrintProcessor,
                      printers[i].pDatatype, printers[i].pComment ? printers[i].pComment : ""};
    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ACCESS_USE};
    DWORD type = 0;
    if (listed.Found && OpenPrinterA(const_cast<char *>(name), printer.Put(), &defaults) &&
        GetPrinterDataA(printer.Get(), const_cast<char *>(PrinterMarkValue), &type,
                        reinterpret_cast<BYTE *>(&listed.Mark), sizeof listed.Mark, &needed) == ERROR_SUCCESS) {
        EXPECT_EQ(static_cast<DWORD>(REG_DWORD), type);
    }
    return listed;
}

// A driver that the spooler knows, with a config file that is no library:
// adding a printer makes the spooler load it.
void PrepareModel(CPrinterInf &inf, const char *printer)
{
    inf.Model = CBoundedString("Tovrel Printer Model");
    inf.DriverFile = CBoundedString("tvdrv.dll");
    inf.DataFile = CBoundedString("tvdata.ppd");
    inf.ConfigFile = CBoundedString("tvui.txt");
    inf.DefaultDataType = CBoundedString("RAW");
    inf.PrintProcessorName = CBoundedString("winprint");
    inf.PrinterName = CBoundedString(printer);
    if (!inf.UpdateInstalledDrivers()) {
        ASSERT_EQ(1, inf.AddNewDriver(CDestinationList(1, CBoundedString("tvdrv.dll")))) << GetLastError();
    }
}

TEST(InstallPrinter, NewPrinterOnTheDriverWithItsPortOrAnExistingOneKept)
{
    const char existing[] = "Tovrel Printer Existing";
    CPrinterInf inf;
    PrepareModel(inf, existing);
    char port[] = "COM1:", comment[] = "Kept comment", processor[] = "winprint", datatype[] = "RAW";
    PRINTER_INFO_2A info = {};
    info.pPrinterName = inf.PrinterName;
    info.pDriverName = inf.Model;
    info.pPortName = port;
    info.pComment = comment;
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    ASSERT_TRUE(CPrinterHandle(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info))).IsValid()) << GetLastError();
    ASSERT_EQ(0u, ListedPrinter(existing).Mark);
    const struct {
        const char *Printer, *Port, *Expected, *Comment;
    } cases[] = {
        {"Tovrel Printer Null Port", nullptr, "LPT1:", ""},
        {"Tovrel Printer Empty Port", "", "LPT1:", ""},
        {"Tovrel Printer File Port", "FILE:", "FILE:", ""},
        {existing, "FILE:", "COM1:", "Kept comment"},
    };
    for (const auto &c : cases) {
        CPrinterInf inf;
        PrepareModel(inf, c.Printer);
        EXPECT_EQ(1, inf.InstallPrinter(c.Port));
        CListedPrinter listed = ListedPrinter(c.Printer);
        EXPECT_TRUE(listed.Found) << c.Printer;
        EXPECT_EQ("Tovrel Printer Model", listed.Driver) << c.Printer;
        EXPECT_EQ(c.Expected, listed.Port) << c.Printer;
        EXPECT_EQ("winprint", listed.Processor) << c.Printer;
        EXPECT_EQ("RAW", listed.Datatype) << c.Printer;
        EXPECT_EQ(c.Comment, listed.Comment) << c.Printer;
        EXPECT_EQ(1u, listed.Mark) << c.Printer;
    }
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
