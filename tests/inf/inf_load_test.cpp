#include <gtest/gtest.h>

#include <string>

#include "inf/inf_file.h"
#include "test_support.h"

namespace {

class CountingInf : public CInfFile {
public:
    void OnLoad(int starting) override { Calls += starting ? "1" : "0"; }
    std::string Calls;
};

TEST(InfLoad, ReadsARealFile)
{
    std::string path = ScratchDirectory() + "printer.inf";
    WriteText(path, "[Version]\r\nClass=Printer\r\n[Manufacturer]\r\n\"Maker\"=Maker");
    CountingInf inf;
    ASSERT_EQ(1, inf.Load(path.c_str()));
    EXPECT_EQ("10", inf.Calls);
    EXPECT_STREQ(path.c_str(), inf.FilePath.Text);
    EXPECT_EQ(1, inf.GetKeyCount("manufacturer"));
    char out[260];
    EXPECT_EQ(1, inf.LookupKey("Version", "Class", out, nullptr));
    EXPECT_STREQ("Printer", out);
}

TEST(InfLoad, AStoreIsFilledOnce)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "a.inf", "[A]\r\nk=a");
    WriteText(dir + "b.inf", "[B]\r\nk=b");
    CountingInf inf;
    ASSERT_EQ(1, inf.Load((dir + "a.inf").c_str()));
    EXPECT_EQ(0, inf.Load((dir + "b.inf").c_str()));
    EXPECT_EQ("10", inf.Calls) << "a refused load does not reach the hook";
    EXPECT_STREQ((dir + "a.inf").c_str(), inf.FilePath.Text);
    EXPECT_EQ(0, inf.GetKeyCount("B"));
}

TEST(InfLoad, TextWithoutSectionsLeavesRoomForAnotherLoad)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "none.inf", "just text\r\nno header");
    WriteText(dir + "real.inf", "[Real]\r\nk=v");
    CInfFile inf;
    EXPECT_EQ(1, inf.Load((dir + "none.inf").c_str()));
    EXPECT_TRUE(inf.Sections.empty());
    EXPECT_EQ(1, inf.Load((dir + "real.inf").c_str()));
    EXPECT_EQ(1, inf.GetKeyCount("Real"));
}

TEST(InfLoad, MissingEmptyAndLockedFilesFail)
{
    std::string dir = ScratchDirectory();
    CountingInf missing;
    EXPECT_EQ(0, missing.Load((dir + "missing.inf").c_str()));
    EXPECT_EQ("10", missing.Calls);

    WriteText(dir + "empty.inf", "");
    CInfFile empty;
    EXPECT_EQ(0, empty.Load((dir + "empty.inf").c_str()));

    std::string locked = dir + "locked.inf";
    WriteText(locked, "[S]\r\nk=v");
    HANDLE holder = CreateFileA(locked.c_str(), GENERIC_READ, 0, NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, holder);
    CInfFile blocked;
    EXPECT_EQ(0, blocked.Load(locked.c_str()));
    CloseHandle(holder);
    EXPECT_EQ(1, blocked.Load(locked.c_str()));

    CInfFile nullPath;
    EXPECT_EQ(0, nullPath.Load(nullptr));
}

TEST(InfLoad, TheFileIsClosedAfterLoading)
{
    std::string path = ScratchDirectory() + "closed.inf";
    WriteText(path, "[S]\r\nk=v");
    CInfFile inf;
    ASSERT_EQ(1, inf.Load(path.c_str()));
    EXPECT_TRUE(DeleteFileA(path.c_str()));
}

TEST(InfLoad, LastLineNeedsNoLineEndButANulCutsIt)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "end.inf", "[S]\r\nlast=1");
    CInfFile end;
    ASSERT_EQ(1, end.Load((dir + "end.inf").c_str()));
    EXPECT_EQ(1, end.GetKeyCount("S"));

    const char withNul[] = "[S]\r\nkept=1\r\ncut=2\0[T]\r\nhidden=3\r\n";
    WriteBytes(dir + "cut.inf", withNul, sizeof withNul - 1);
    CInfFile nul;
    ASSERT_EQ(1, nul.Load((dir + "cut.inf").c_str()));
    EXPECT_EQ(1, nul.GetKeyCount("S"));
    EXPECT_EQ(0, nul.GetKeyCount("T"));
}

TEST(InfLoad, BinaryAndSixteenBitFilesLoadToNothingUsable)
{
    std::string dir = ScratchDirectory();
    std::string binary;
    for (int i = 0; i < 65536; ++i)
        binary += static_cast<char>((i * 7919) & 0xff);
    WriteBytes(dir + "binary.inf", binary.data(), binary.size());
    CInfFile bin;
    EXPECT_EQ(1, bin.Load((dir + "binary.inf").c_str()));

    const char wide[] = "\xff\xfe[\0V\0e\0r\0s\0i\0o\0n\0]\0\r\0\n\0C\0=\0P\0\r\0\n\0";
    WriteBytes(dir + "wide.inf", wide, sizeof wide - 1);
    CInfFile utf16;
    EXPECT_EQ(1, utf16.Load((dir + "wide.inf").c_str()));
    EXPECT_EQ(0, utf16.GetKeyCount("Version"));
}

TEST(InfLoad, TensOfMegabytesWithVeryLongLines)
{
    std::string text;
    text.reserve(24u << 20);
    std::string longName(4000, 'n'), longValue(6000, 'v');
    for (int s = 0; s < 2200; ++s) {
        text += "[Section" + std::to_string(s) + "]\r\n";
        for (int k = 0; k < 20; ++k)
            text += "Key" + std::to_string(k) + "=Value" + std::to_string(k) + "\r\n";
        text += longName + "=" + longValue + "\r\n";
    }
    text += "[" + std::string(3000, 'S') + "]\r\n" + std::string(100000, 'x') + "\r\n";
    std::string path = ScratchDirectory() + "large.inf";
    WriteBytes(path, text.data(), text.size());
    ASSERT_GT(text.size(), 20u << 20);

    CInfFile inf;
    ASSERT_EQ(1, inf.Load(path.c_str()));
    EXPECT_EQ(2201u, inf.Sections.size());
    EXPECT_EQ(21, inf.GetKeyCount("section2199"));
    char out[260];
    EXPECT_EQ(1, inf.LookupKey("Section1234", "key19", out, nullptr));
    EXPECT_STREQ("Value19", out);
    EXPECT_EQ(1, inf.LookupKey("Section7", std::string(259, 'n').c_str(), out, nullptr));
    EXPECT_EQ(std::string(259, 'v'), out);
    EXPECT_EQ(1, inf.GetKeyCount(std::string(259, 'S').c_str()));
}

}  // namespace
