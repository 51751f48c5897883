#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "registration/spooler.h"
#include "support/handles.h"

namespace {

// The wrapper's directories against what the spooler itself answers.
void ExpectDirectoriesAsTheSpoolerGivesThem()
{
    char expected[MAX_PATH] = "", out[MAX_PATH];
    DWORD needed = 0;
    for (const char *environment : {static_cast<const char *>(NULL), "Windows 4.0", "No Such Environment"}) {
        const char *label = environment ? environment : "(own)";
        expected[0] = 0;
        BOOL known = GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
                                                reinterpret_cast<BYTE *>(expected), MAX_PATH, &needed);
        EXPECT_EQ(environment == NULL || environment[0] == 'W', known != FALSE) << label;
        std::memset(out, 'X', sizeof out);
        EXPECT_EQ(known ? 1 : 0, PrinterDriverDirectory(environment, out)) << label;
        EXPECT_STREQ(expected, out) << label;
    }
    ASSERT_TRUE(GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(expected), MAX_PATH, &needed));
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrintProcessorDirectory(out));
    EXPECT_STREQ(expected, out);
}

TEST(SpoolerDirectories, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }
TEST(SpoolerDirectoriesNt40, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }
TEST(SpoolerDirectoriesWin98, MatchThePlatformAndTheMachinesOwnIsTheNineXOne)
{
    ExpectDirectoriesAsTheSpoolerGivesThem();
    char own[MAX_PATH], ninex[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, own));
    ASSERT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, ninex));
    EXPECT_STREQ(ninex, own);
}

// A driver and a printer on it, made through the spooler itself.
TEST(SpoolerRecords, ReadBackWhatWasAdded)
{
    char driverName[] = "Tovrel Test Driver", printerName[] = "Tovrel Test Printer", driverPath[] = "tovrel_drv.dll",
         dataFile[] = "tovrel.ppd", configFile[] = "tovrel_ui.txt";
    DRIVER_INFO_3A driver = {};
    driver.cVersion = 3;
    driver.pName = driverName;
    driver.pDriverPath = driverPath;
    driver.pDataFile = dataFile;
    driver.pConfigFile = configFile;
    ASSERT_TRUE(AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&driver))) << GetLastError();
    std::vector<BYTE> buffer;
    DWORD count = 0;
    DRIVER_INFO_3A *drivers = EnumDriverInfo3(buffer, &count);
    ASSERT_NE(nullptr, drivers);
    bool listed = false;
    for (DWORD i = 0; i < count; ++i)
        listed = listed || lstrcmpiA(drivers[i].pName, driverName) == 0;
    EXPECT_TRUE(listed) << count << " drivers";

    char port[] = "FILE:", processor[] = "winprint", datatype[] = "RAW";
    PRINTER_INFO_2A info = {};
    info.pPrinterName = printerName;
    info.pPortName = port;
    info.pDriverName = driverName;
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    ASSERT_TRUE(CPrinterHandle(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info))).IsValid()) << GetLastError();
    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ALL_ACCESS};
    ASSERT_TRUE(OpenPrinterA(printerName, printer.Put(), &defaults));
    PRINTER_INFO_2A *read = ReadPrinterInfo2(printer.Get(), buffer);
    ASSERT_NE(nullptr, read);
    EXPECT_STREQ(driverName, read->pDriverName);
    EXPECT_STREQ(port, read->pPortName);
    std::vector<BYTE> driverBuffer;
    DRIVER_INFO_2A *readDriver = ReadDriverInfo2(printer.Get(), driverBuffer);
    ASSERT_NE(nullptr, readDriver);
    EXPECT_STREQ(driverName, readDriver->pName);
    EXPECT_EQ(nullptr, ReadPrinterInfo2(NULL, buffer)) << "no printer";
    EXPECT_EQ(nullptr, ReadDriverInfo2(NULL, buffer));
    DeletePrinter(printer.Get());
}

}  // namespace
