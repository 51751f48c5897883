#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "test_support.h"

namespace {

const char Prefix[] = "\nCPrinterInf::Open,failure,";
#define NT "Signature=\"$Windows NT$\"\r\n"
#define MAKERS "[Manufacturer]\r\nAcme=Acme\r\n"
#define DIRS "[DestinationDirs]\r\nDefaultDestDir=11\r\n"
#define VERSION(lines) "[Version]\r\n" lines MAKERS DIRS

const char NoClass[] = "unable to locate Class=Printer in the inf file";
const char NoGuid[] = "unable to locate ClassGUID=<printergiud> in the inf file";
const char NoInfo[] = "unable to find class info in the inf file";
const char Unknown[] = "this inf file is for an unknown OS";
const char NoMakers[] = "unable to locate [Manufacturer] section in the INF file";
const char NoDirs[] = "no destination directories";
const char Unable[] = "Unable to open the file";

struct COpenCase {
    const char *Text;
    const char *Message;  // null: accepted
};

// Opens each text as a file; what went to the debug output tells the check.
void RunOpen(const COpenCase *cases, size_t count)
{
    std::string path = ScratchDirectory() + "printer.inf";
    for (size_t i = 0; i < count; ++i) {
        const COpenCase &c = cases[i];
        WriteText(path, c.Text);
        CDebugOutputCapture capture;
        CPrinterInf printer;
        EXPECT_EQ(c.Message ? 0 : 1, printer.Open(path.c_str())) << c.Text;
        EXPECT_EQ(c.Message ? std::string(Prefix) + c.Message : std::string(), capture.Text()) << c.Text;
    }
}

TEST(Validation, EveryCheckInItsOrderOnTheNtFamily)
{
    const COpenCase cases[] = {
        {VERSION("class=printer\r\n" NT), nullptr},
        {VERSION("Class=%C%\r\n" NT) "[Strings]\r\nC=Printer\r\n", nullptr},
        {VERSION("Class=Printer\r\nClassGUID={00000000-0000-0000-0000-000000000000}\r\n" NT), nullptr},
        {VERSION("Class=\"Printer\"\r\n" NT), NoClass},
        {VERSION("Class=\r\n" NT), NoClass},
        {VERSION("Class=Net\r\nClassGUID={4D36E979-E325-11CE-BFC1-08002BE10318}\r\n" NT), NoClass},
        {VERSION("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n" NT), nullptr},
        {VERSION("ClassGUID={4D36E972-E325-11CE-BFC1-08002BE10318}\r\n" NT), NoGuid},
        {VERSION("ClassGUID=\r\n" NT), NoGuid},
        {VERSION(NT), NoInfo},
        {"Class=Printer\r\n" NT, NoInfo},
        {VERSION("Class=Printer\r\nSignature=$windows nt$\r\n"), nullptr},
        {VERSION("Class=Printer\r\nSignature=\"$CHICAGO$\"\r\n"), nullptr},
        {VERSION("Class=Printer\r\nSignature=\"$Windows 95$\"\r\n"), "this inf is for Win9x only."},
        {VERSION("Class=Printer\r\nSignature=\"$Windows 2000$\"\r\n"), Unknown},
        {VERSION("Class=Printer\r\nSignature=\" $Chicago$ \"\r\n"), Unknown},
        {VERSION("Class=Printer\r\nSignature=\r\n"), Unknown},
        {VERSION("Class=Printer\r\n"), "no [version] section"},
        {"[Version]\r\nClass=Printer\r\n" NT "[Manufacturer]\r\n" DIRS, NoMakers},
        {"[Version]\r\nClass=Printer\r\n" NT DIRS, NoMakers},
        {"[Version]\r\nClass=Printer\r\n" NT "[manufacturer]\r\nAcme\r\n" DIRS, nullptr},
        {"[Version]\r\nClass=Printer\r\n" NT MAKERS, NoDirs},
        {"[Version]\r\nClass=Printer\r\n" NT MAKERS "[DestinationDirs]\r\n[DestinationDirs.CAB]\r\n", NoDirs},
        {"[Version]\r\nClass=Printer\r\n" NT MAKERS "[DestinationDirs.CAB]\r\nx.cab=11\r\n", nullptr},
        {"", Unable},
    };
    RunOpen(cases, sizeof cases / sizeof cases[0]);
}

TEST(ValidationWin98, SignatureOnTheWin98Family)
{
    const COpenCase cases[] = {
        {VERSION("Class=Printer\r\nSignature=\"$Windows 95$\"\r\n"), nullptr},
        {VERSION("Class=Printer\r\nSignature=\"$Chicago$\"\r\n"), nullptr},
        {VERSION("Class=Printer\r\n" NT), "this inf is for WinNT only."},
    };
    RunOpen(cases, sizeof cases / sizeof cases[0]);
}

}  // namespace
