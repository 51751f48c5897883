#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "inf/inf_discovery.h"
#include "inf/printer_class.h"
#include "test_support.h"

namespace {

const char NoMatch[] = "<none>";

// The lines of a section as the profile calls give them into 260 bytes.
std::vector<std::string> ProfileLines(const char *section, const std::string &path)
{
    char block[CBoundedString::Capacity] = {};
    GetPrivateProfileSectionA(section, block, sizeof block, path.c_str());
    block[sizeof block - 2] = block[sizeof block - 1] = 0;
    std::vector<std::string> lines;
    for (const char *line = block; *line; line += std::strlen(line) + 1)
        lines.push_back(line);
    return lines;
}

// The discovery as it was before it read its candidates into a store: every
// question asked through the profile calls, sections cut at 260 bytes.
std::string ProfileMatch(const std::string &path, const char *model)
{
    CInfFile profile;  // only for ExpandToken through the profile calls
    char value[CBoundedString::Capacity];
    const char *inf = path.c_str();
    if (GetPrivateProfileStringA(VersionSection, VersionClassGuidKey, "", value, sizeof value, inf)
            ? !IsPrinterClassGuid(value)
            : !GetPrivateProfileStringA(VersionSection, VersionClassKey, "", value, sizeof value, inf) ||
                  !IsPrinterClassName(value))
        return NoMatch;
    for (const std::string &line : ProfileLines("Manufacturer", path)) {
        size_t equals = line.find('=');
        CBoundedString maker(line.substr(0, equals).c_str()), expanded, models;
        StripOne(maker, '"');
        profile.ExpandToken(maker, expanded, inf);
        models = equals == std::string::npos ? "" : line.substr(equals + 1).c_str();
        for (const std::string &entry : ProfileLines(models.IsEmpty() ? expanded : models, path)) {
            CBoundedString name(entry.substr(0, entry.find('=')).c_str()), found;
            StripOne(name, ' ');
            StripOne(name, '"');
            profile.ExpandToken(name, found, inf);
            if (found.Equals(model))
                return expanded.Text;
        }
    }
    return NoMatch;
}

std::string PrinterInf(const std::string &version, const std::string &rest)
{
    return "[Version]\r\nSignature=\"$Windows NT$\"\r\n" + version + rest;
}

std::string Utf16(const std::string &text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (char c : text)
        bytes += bigEndian ? std::string(1, '\0') + c : std::string(1, c) + '\0';
    return bytes;
}

// A models section of Fill=Inst and then Late: the profile calls list it
// whole up to 259 bytes, each line counted with its NUL.
std::string ModelsOfSize(size_t bytes)
{
    return PrinterInf("Class=Printer\r\n", "[Manufacturer]\r\nAcme=M\r\n[M]\r\n" +
                                               std::string(bytes - std::strlen("Late") - 7, 'F') + "=Inst\r\nLate");
}

const char ClassPrinter[] = "Class=Printer\r\n";
const char Models[] =
    "[Manufacturer]\r\nAcme=AcmeModels\r\n[AcmeModels]\r\n\"Laser 5\" = Inst5,LPTENUM\\AcmeLaser5\r\n";
const std::string Offers5 = PrinterInf(ClassPrinter, Models);
const std::string Guid = std::string("ClassGUID=") + PrinterClassGuid + "\r\n";

// Found by the store's reading; by the profile calls too where Same.
struct CMatchCase {
    std::string Text, Model;
    const char *Manufacturer;
    bool Same;
};

std::vector<CMatchCase> MatchCases()
{
    std::string longSection = "[Manufacturer]\r\nAcme=Long\r\n[Long]\r\n";
    for (int i = 0; i < 12; ++i)
        longSection += "Filler Model Number " + std::to_string(i) + "=Inst\r\n";
    std::string longToken = PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=M\r\n[M]\r\n%T%\r\n[Strings]\r\nT=" +
                                                         std::string(300, 'x'));
    return {
        {PrinterInf("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n", Models), "Laser 5", "Acme", true},
        {PrinterInf("ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\nClass=Printer\r\n", Models), "Laser 5",
         NoMatch, true},
        {PrinterInf("ClassGUID=\r\nClass=pRINTER\r\n", Models), "laser 5", "Acme", true},
        {PrinterInf("Class=Keyboard\r\n", Models), "Laser 5", NoMatch, true},
        {PrinterInf("", Models), "Laser 5", NoMatch, true},
        {Offers5, "Laser 6", NoMatch, true},
        // How the profile calls read [Version]: quotes of either kind go,
        // ";" is text, blanks round a line go, the first section and line win.
        {PrinterInf("ClassGUID=\"" + std::string(PrinterClassGuid) + "\"\r\n", Models), "Laser 5", "Acme", true},
        {PrinterInf("Class='Printer'\r\n", Models), "Laser 5", "Acme", true},
        {PrinterInf("Class=Printer ; a printer\r\n", Models), "Laser 5", NoMatch, true},
        {PrinterInf("  Class\t=\tPrinter \r\n[Broken\r\n", Models), "Laser 5", "Acme", true},
        {PrinterInf("[Version]\r\nClass=Printer\r\n", Models), "Laser 5", NoMatch, true},
        {PrinterInf("Class=Net\r\nClass=Printer\r\n", Models), "Laser 5", NoMatch, true},
        {"[Version] ; see [notes]\r\n" + Guid + Models, "Laser 5", NoMatch, true},
        {"[Version] ; notes\rClass=Printer\r" + std::string(Models), "Laser 5", "Acme", true},
        {"\xEF\xBB\xBF" + Offers5, "Laser 5", "Acme", true},
        {Utf16(Offers5, false), "Laser 5", "Acme", true},
        {Utf16(Offers5, true), "Laser 5", "Acme", true},
        // Names, quotes and tokens.
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nBare\r\n[Bare]\r\nPlain=Inst\r\n"), "Plain", "Bare", true},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\n;Acme=BModels\r\nA=Empty\r\n\"B Corp\"=BModels\r\n[BModels]\r\n"
                                  "B1=Inst\r\n"), "B1", "B Corp", true},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\n%Maker%=TokModels\r\n[TokModels]\r\n% Model %=Inst\r\n"
                                  "[Strings]\r\nMaker=\"Acme Corp\"\r\nModel='Laser ; Tok'\r\n"), "Laser ; Tok", "Acme Corp",
         true},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=M\r\n[M]\r\n%Missing%=Inst\r\n"), "%Missing%", "A", true},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=M\r\n[M]\r\nLaser 5 ; old=Inst\r\n"), "Laser 5", NoMatch, true},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=M\r\n[M]\r\nx=1\r\n[Manufacturer]\r\nB=N\r\n[N]\r\nLaser 5=I\r\n"
                                  "[m]\r\nLaser 5=I\r\n"), "Laser 5", NoMatch, true},
        {"Laser 5=Inst\r\n" + PrinterInf(ClassPrinter, "[Manufacturer]\r\n=\r\n"), "Laser 5", "", true},
        // Sections that fit 260 bytes read alike; beyond, only the store sees all.
        {ModelsOfSize(259), "Late", "Acme", true},
        {ModelsOfSize(260), "Late", "Acme", false},
        {PrinterInf(ClassPrinter, longSection), "Filler Model Number 1", "Acme", true},
        {PrinterInf(ClassPrinter, longSection + "Late=Inst\r\n"), "Late", "Acme", false},
        // A text cut at 259 characters names nothing: the profile calls gave its head.
        {longToken, std::string(259, 'x'), NoMatch, false},
    };
}

TEST(MatchInf, ReadsCandidatesAsTheProfileCallsDid)
{
    std::string directory = ScratchDirectory();
    CPrinterInf inf;
    int n = 0;
    for (const CMatchCase &c : MatchCases()) {
        // A new name for each case: the profile calls cache a file.
        std::string path = directory + "match" + std::to_string(n++) + ".inf";
        WriteText(path, c.Text);
        CBoundedString manufacturer("Given");
        int found = inf.MatchInf(CBoundedString(path.c_str()), CBoundedString(c.Model.c_str()), manufacturer);
        EXPECT_EQ(c.Manufacturer, found ? std::string(manufacturer.Text) : NoMatch) << n - 1 << ": " << c.Text;
        EXPECT_EQ(c.Same, ProfileMatch(path, c.Model.c_str()) == c.Manufacturer) << n - 1 << ": " << c.Text;
    }
}

}  // namespace
