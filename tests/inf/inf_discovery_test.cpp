#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "inf/inf_discovery.h"
#include "test_support.h"

namespace {

std::string PrinterInf(const std::string &version, const std::string &rest)
{
    return "[Version]\r\nSignature=\"$Windows NT$\"\r\n" + version + rest;
}

const char ClassPrinter[] = "Class=Printer\r\n";
const char OtherGuid[] = "ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\n";
const char Models[] =
    "[Manufacturer]\r\nAcme=AcmeModels\r\n[AcmeModels]\r\n\"Laser 5\" = Inst5,LPTENUM\\AcmeLaser5\r\n";
const std::string Offers5 = PrinterInf(ClassPrinter, Models);

TEST(MatchInf, ClassModelAndManufacturer)
{
    std::string longSection = "[Manufacturer]\r\nAcme=Long\r\n[Long]\r\n";
    for (int i = 0; i < 12; ++i)
        longSection += "Filler Model Number " + std::to_string(i) + "=Inst\r\n";
    longSection += "Late=Inst\r\n";
    const struct {
        std::string Text;
        const char *Model;
        const char *Manufacturer;  // null: no match
    } cases[] = {
        {PrinterInf("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n", Models), "Laser 5", "Acme"},
        {PrinterInf(std::string(OtherGuid) + ClassPrinter, Models), "Laser 5", nullptr},
        {PrinterInf("Class=pRINTER\r\n", Models), "laser 5", "Acme"},
        {PrinterInf("Class=Keyboard\r\n", Models), "Laser 5", nullptr},
        {PrinterInf("", Models), "Laser 5", nullptr},
        {Offers5, "Laser 6", nullptr},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nBare\r\n[Bare]\r\nPlain=Inst\r\n"), "Plain", "Bare"},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=Empty\r\n\"B Corp\"=BModels\r\n[BModels]\r\nB1=Inst\r\n"),
         "B1", "B Corp"},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\n%Maker%=TokModels\r\n[TokModels]\r\n%Model%=Inst\r\n"
                                  "[Strings]\r\nMaker=\"Acme Corp\"\r\nModel=\"Laser Tok\"\r\n"), "Laser Tok", "Acme Corp"},
        // The profile calls read 260 bytes of a section's key names.
        {PrinterInf(ClassPrinter, longSection), "Late", nullptr},
        {PrinterInf(ClassPrinter, longSection), "Filler Model Number 1", "Acme"},
    };
    std::string directory = ScratchDirectory();
    CPrinterInf inf;
    int n = 0;
    for (const auto &c : cases) {
        // A new name for each case: the profile calls cache a file.
        std::string path = directory + "match" + std::to_string(n++) + ".inf";
        WriteText(path, c.Text);
        CBoundedString manufacturer("Given");
        EXPECT_EQ(c.Manufacturer ? 1 : 0,
                  inf.MatchInf(CBoundedString(path.c_str()), CBoundedString(c.Model), manufacturer)) << c.Text;
        if (c.Manufacturer) {
            EXPECT_STREQ(c.Manufacturer, manufacturer.Text) << c.Text;
        }
    }
}

}  // namespace
