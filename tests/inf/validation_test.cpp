#include <gtest/gtest.h>

#include <string>

#include "debug_output.h"
#include "entry/printer_inf.h"
#include "test_support.h"

namespace {

const char Prefix[] = "\nCPrinterInf::Open,failure,";

// A printer INF that Open accepts on the NT family; each case swaps lines.
std::string Inf(const std::string &version, const std::string &rest = "[Manufacturer]\r\nAcme=Acme\r\n")
{
    return "[Version]\r\n" + version + rest + "[DestinationDirs]\r\nDefaultDestDir=11\r\n";
}

struct COpenCase {
    const char *Name;
    std::string Text;
    const char *Message;  // null: accepted
};

class Validation : public ::testing::Test {
protected:
    void SetUp() override { Dir = ScratchDirectory(); }

    // Opens the text as a file and gives what went to the debug output.
    std::string OpenText(const std::string &text, int &result)
    {
        std::string path = Dir + "printer.inf";
        WriteText(path, text);
        CDebugOutputCapture capture;
        EXPECT_TRUE(capture.IsActive());
        CPrinterInf printer;
        result = printer.Open(path.c_str());
        return capture.Text();
    }

    void Run(const COpenCase *cases, size_t count)
    {
        for (size_t i = 0; i < count; ++i) {
            const COpenCase &c = cases[i];
            int result = -1;
            std::string output = OpenText(c.Text, result);
            EXPECT_EQ(c.Message ? 0 : 1, result) << c.Name;
            EXPECT_EQ(c.Message ? std::string(Prefix) + c.Message : std::string(), output) << c.Name;
        }
    }

    std::string Dir;
};

const char NtSignature[] = "Signature=\"$Windows NT$\"\r\n";

TEST_F(Validation, ClassAndClassGuid)
{
    const COpenCase cases[] = {
        {"class", Inf(std::string("Class=Printer\r\n") + NtSignature), nullptr},
        {"lower case", Inf(std::string("class=printer\r\n") + NtSignature), nullptr},
        {"from a token", Inf(std::string("Class=%C%\r\n") + NtSignature) + "[Strings]\r\nC=Printer\r\n", nullptr},
        {"class decides alone",
         Inf(std::string("Class=Printer\r\nClassGUID={00000000-0000-0000-0000-000000000000}\r\n") + NtSignature),
         nullptr},
        {"quoted class", Inf(std::string("Class=\"Printer\"\r\n") + NtSignature),
         "unable to locate Class=Printer in the inf file"},
        {"empty class", Inf(std::string("Class=\r\n") + NtSignature), "unable to locate Class=Printer in the inf file"},
        {"other class beside the printer guid",
         Inf(std::string("Class=Net\r\nClassGUID={4D36E979-E325-11CE-BFC1-08002BE10318}\r\n") + NtSignature),
         "unable to locate Class=Printer in the inf file"},
        {"guid", Inf(std::string("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n") + NtSignature), nullptr},
        {"other guid", Inf(std::string("ClassGUID={4D36E972-E325-11CE-BFC1-08002BE10318}\r\n") + NtSignature),
         "unable to locate ClassGUID=<printergiud> in the inf file"},
        {"empty guid", Inf(std::string("ClassGUID=\r\n") + NtSignature),
         "unable to locate ClassGUID=<printergiud> in the inf file"},
        {"neither", Inf(NtSignature), "unable to find class info in the inf file"},
        {"no section header", "Class=Printer\r\nSignature=\"$Chicago$\"\r\n",
         "unable to find class info in the inf file"},
    };
    Run(cases, sizeof cases / sizeof cases[0]);
}

TEST_F(Validation, SignatureOnTheNtFamily)
{
    const COpenCase cases[] = {
        {"nt", Inf("Class=Printer\r\nSignature=\"$Windows NT$\"\r\n"), nullptr},
        {"nt unquoted", Inf("Class=Printer\r\nSignature=$windows nt$\r\n"), nullptr},
        {"chicago", Inf("Class=Printer\r\nSignature=\"$Chicago$\"\r\n"), nullptr},
        {"chicago upper", Inf("Class=Printer\r\nSignature=\"$CHICAGO$\"\r\n"), nullptr},
        {"95", Inf("Class=Printer\r\nSignature=\"$Windows 95$\"\r\n"), "this inf is for Win9x only."},
        {"unknown", Inf("Class=Printer\r\nSignature=\"$Windows 2000$\"\r\n"), "this inf file is for an unknown OS"},
        {"blanks inside quotes", Inf("Class=Printer\r\nSignature=\" $Chicago$ \"\r\n"),
         "this inf file is for an unknown OS"},
        {"empty", Inf("Class=Printer\r\nSignature=\r\n"), "this inf file is for an unknown OS"},
        {"missing", Inf("Class=Printer\r\n"), "no [version] section"},
    };
    Run(cases, sizeof cases / sizeof cases[0]);
}

TEST_F(Validation, SignatureOnTheWin98Family)
{
    const COpenCase cases[] = {
        {"95", Inf("Class=Printer\r\nSignature=\"$Windows 95$\"\r\n"), nullptr},
        {"chicago", Inf("Class=Printer\r\nSignature=\"$Chicago$\"\r\n"), nullptr},
        {"nt", Inf("Class=Printer\r\nSignature=\"$Windows NT$\"\r\n"), "this inf is for WinNT only."},
    };
    Run(cases, sizeof cases / sizeof cases[0]);
}

TEST_F(Validation, ManufacturerSection)
{
    const COpenCase cases[] = {
        {"empty section", Inf(std::string("Class=Printer\r\n") + NtSignature, "[Manufacturer]\r\n"),
         "unable to locate [Manufacturer] section in the INF file"},
        {"no section", Inf(std::string("Class=Printer\r\n") + NtSignature, ""),
         "unable to locate [Manufacturer] section in the INF file"},
        {"a line without a value", Inf(std::string("Class=Printer\r\n") + NtSignature, "[manufacturer]\r\nAcme\r\n"),
         nullptr},
    };
    Run(cases, sizeof cases / sizeof cases[0]);
}

TEST_F(Validation, DestinationDirectories)
{
    const std::string head = std::string("[Version]\r\nClass=Printer\r\n") + NtSignature + "[Manufacturer]\r\nA=A\r\n";
    const COpenCase cases[] = {
        {"none", head, "no destination directories"},
        {"empty sections", head + "[DestinationDirs]\r\n[DestinationDirs.CAB]\r\n", "no destination directories"},
        {"cabinet section only", head + "[DestinationDirs.CAB]\r\nx.cab=11\r\n", nullptr},
        {"plain section only", head + "[DestinationDirs]\r\nDefaultDestDir=11\r\n", nullptr},
    };
    Run(cases, sizeof cases / sizeof cases[0]);
}

TEST_F(Validation, AnAcceptedFileHasItsDirectoryMaps)
{
    std::string path = Dir + "printer.inf";
    WriteText(path, Inf(std::string("Class=Printer\r\n") + NtSignature) + "[DestinationDirs.CAB]\r\nd.cab=10:11\r\n");
    CPrinterInf printer;
    ASSERT_EQ(1, printer.Open(path.c_str()));
    char windows[MAX_PATH], system[MAX_PATH], out[260] = "";
    GetWindowsDirectoryA(windows, MAX_PATH);
    GetSystemDirectoryA(system, MAX_PATH);
    EXPECT_EQ(1, printer.FindDirectoryId(11, out));
    EXPECT_EQ(0, lstrcmpiA((std::string(system) + "\\").c_str(), out)) << out;
    EXPECT_EQ(1u, printer.DestinationDirs.count(CBoundedString("DefaultDestDir")));
    EXPECT_EQ(2u, printer.DestinationDirs[CBoundedString("d.cab")].size());
}

TEST_F(Validation, FilesThatCannotBeRead)
{
    const std::string unable = std::string(Prefix) + "Unable to open the file";
    CDebugOutputCapture capture;
    CPrinterInf missing;
    EXPECT_EQ(0, missing.Open((Dir + "missing.inf").c_str()));
    EXPECT_EQ(unable, capture.Text());

    int result = -1;
    EXPECT_EQ(unable, OpenText("", result));
    EXPECT_EQ(0, result);

    // Held open elsewhere without sharing.
    std::string locked = Dir + "locked.inf";
    WriteText(locked, Inf(std::string("Class=Printer\r\n") + NtSignature));
    HANDLE holder = CreateFileA(locked.c_str(), GENERIC_READ, 0, NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, holder);
    capture.Clear();
    CPrinterInf blocked;
    EXPECT_EQ(0, blocked.Open(locked.c_str()));
    CloseHandle(holder);
    EXPECT_EQ(unable, capture.Text());

    // The reader sees nothing in 16-bit text: no class, whatever the file says.
    const std::string narrow = Inf(std::string("Class=Printer\r\n") + NtSignature);
    std::string wide("\xff\xfe", 2);
    for (char ch : narrow)
        wide += std::string(1, ch) + '\0';
    EXPECT_EQ(std::string(Prefix) + "unable to find class info in the inf file", OpenText(wide, result));
    EXPECT_EQ(0, result);
}

TEST_F(Validation, AFailedOpenKeepsItsStoreAndRefusesASecondLoad)
{
    std::string path = Dir + "95.inf";
    WriteText(path, Inf("Class=Printer\r\nSignature=\"$Windows 95$\"\r\n"));
    CPrinterInf printer;
    EXPECT_EQ(0, printer.Open(path.c_str()));
    EXPECT_EQ(1, printer.GetKeyCount("Manufacturer"));

    std::string good = Dir + "good.inf";
    WriteText(good, Inf(std::string("Class=Printer\r\n") + NtSignature));
    CDebugOutputCapture capture;
    EXPECT_EQ(0, printer.Open(good.c_str()));
    EXPECT_EQ(std::string(Prefix) + "Unable to open the file", capture.Text());
}

}  // namespace
