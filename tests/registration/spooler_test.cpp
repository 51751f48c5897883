#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

#include "registration/spooler.h"
#include "support/handles.h"

namespace {

// What the spooler itself reports, asked without our wrapper in between.
std::string DriverDirectoryFromSpooler(const char *environment)
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    if (!GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
                                    reinterpret_cast<BYTE *>(buffer), sizeof buffer, &needed))
        return "";
    return buffer;
}

std::string ProcessorDirectoryFromSpooler()
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    if (!GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(buffer),
                                     sizeof buffer, &needed))
        return "";
    return buffer;
}

std::string Lower(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

void ExpectDirectoriesAsTheSpoolerGivesThem()
{
    char out[MAX_PATH];
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrinterDriverDirectory(NULL, out));
    EXPECT_STREQ(DriverDirectoryFromSpooler(NULL).c_str(), out);
    EXPECT_NE(0, out[0]);

    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, out));
    EXPECT_STREQ(DriverDirectoryFromSpooler("Windows 4.0").c_str(), out);
    // The 9x environment keeps its drivers in their own folder everywhere.
    std::string ninex = Lower(out);
    EXPECT_EQ("win40", ninex.substr(ninex.size() - 5)) << out;

    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrintProcessorDirectory(out));
    EXPECT_STREQ(ProcessorDirectoryFromSpooler().c_str(), out);
    EXPECT_NE(0, out[0]);
}

TEST(SpoolerDirectories, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }

TEST(SpoolerDirectoriesWin98, MatchThePlatform)
{
    ExpectDirectoriesAsTheSpoolerGivesThem();
    // On the 9x family the machine's own environment is "Windows 4.0".
    char own[MAX_PATH], ninex[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, own));
    ASSERT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, ninex));
    EXPECT_STREQ(ninex, own);
}

TEST(SpoolerDirectoriesNt40, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }

TEST(SpoolerDirectories, UnknownEnvironmentLeavesTheBufferEmpty)
{
    char out[MAX_PATH];
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(0, PrinterDriverDirectory("No Such Environment", out));
    EXPECT_STREQ("", out);
}

}  // namespace

namespace {

// A driver and a printer on it, made through the spooler itself.
TEST(SpoolerRecords, ReadBackWhatWasAdded)
{
    char driverName[] = "Tovrel Test Driver", printerName[] = "Tovrel Test Printer";
    char driverPath[] = "tovrel_drv.dll", dataFile[] = "tovrel.ppd", configFile[] = "tovrel_ui.txt";
    DRIVER_INFO_3A driver;
    std::memset(&driver, 0, sizeof driver);
    driver.cVersion = 3;
    driver.pName = driverName;
    driver.pDriverPath = driverPath;
    driver.pDataFile = dataFile;
    driver.pConfigFile = configFile;
    ASSERT_TRUE(AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&driver)))
        << GetLastError();

    std::vector<BYTE> buffer;
    DWORD count = 0;
    DRIVER_INFO_3A *drivers = EnumDriverInfo3(buffer, &count);
    ASSERT_NE(nullptr, drivers);
    bool listed = false;
    for (DWORD i = 0; i < count; ++i)
        listed = listed || lstrcmpiA(drivers[i].pName, driverName) == 0;
    EXPECT_TRUE(listed) << count << " drivers";

    char port[] = "FILE:", processor[] = "winprint", datatype[] = "RAW";
    PRINTER_INFO_2A info;
    std::memset(&info, 0, sizeof info);
    info.pPrinterName = printerName;
    info.pPortName = port;
    info.pDriverName = driverName;
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    CPrinterHandle added(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info)));
    ASSERT_TRUE(added.IsValid()) << GetLastError();
    added.Reset();

    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ALL_ACCESS};
    ASSERT_TRUE(OpenPrinterA(printerName, printer.Put(), &defaults));
    PRINTER_INFO_2A *read = ReadPrinterInfo2(printer.Get(), buffer);
    ASSERT_NE(nullptr, read);
    EXPECT_STREQ(printerName, read->pPrinterName);
    EXPECT_STREQ(driverName, read->pDriverName);
    EXPECT_STREQ(port, read->pPortName);

    std::vector<BYTE> driverBuffer;
    DRIVER_INFO_2A *readDriver = ReadDriverInfo2(printer.Get(), driverBuffer);
    ASSERT_NE(nullptr, readDriver);
    EXPECT_STREQ(driverName, readDriver->pName);
    EXPECT_EQ(3u, readDriver->cVersion);

    DeletePrinter(printer.Get());
}

TEST(SpoolerRecords, ClosedOrMissingPrintersGiveNothing)
{
    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ACCESS_USE};
    char missing[] = "No Such Printer";
    EXPECT_FALSE(OpenPrinterA(missing, printer.Put(), &defaults));
    std::vector<BYTE> buffer;
    EXPECT_EQ(nullptr, ReadPrinterInfo2(NULL, buffer));
    EXPECT_EQ(nullptr, ReadDriverInfo2(NULL, buffer));
}

}  // namespace
