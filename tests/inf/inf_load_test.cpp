#include <gtest/gtest.h>

#include <string>

#include "inf/inf_file.h"
#include "test_support.h"

namespace {

TEST(InfLoad, ARealFileFillsTheStoreOnceAndIsClosedAfterwards)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "a.inf", "[Version]\r\nClass=Printer\r\n[A]\r\nlast=1");
    WriteText(dir + "b.inf", "[B]\r\nk=b");
    CInfFile inf;
    ASSERT_EQ(1, inf.Load((dir + "a.inf").c_str()));
    EXPECT_EQ(0, inf.Load((dir + "b.inf").c_str()));
    EXPECT_STREQ((dir + "a.inf").c_str(), inf.FilePath.Text);
    EXPECT_EQ(1, inf.GetKeyCount("A")) << "the last line needs no line end";
    EXPECT_EQ(0, inf.GetKeyCount("B"));
    EXPECT_TRUE(DeleteFileA((dir + "a.inf").c_str()));

    // Text without sections leaves room for another load.
    WriteText(dir + "none.inf", "just text\r\nno header");
    CInfFile none;
    EXPECT_EQ(1, none.Load((dir + "none.inf").c_str()));
    EXPECT_EQ(1, none.Load((dir + "b.inf").c_str()));
    EXPECT_EQ(1, none.GetKeyCount("B"));
}

TEST(InfLoad, BadFilesGiveTheGrammarsAnswer)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "empty.inf", "");
    const char withNul[] = "[S]\r\nkept=1\r\ncut=2\0[T]\r\nhidden=3\r\n";
    WriteBytes(dir + "cut.inf", withNul, sizeof withNul - 1);
    std::string binary;
    for (int i = 0; i < 65536; ++i)
        binary += static_cast<char>((i * 7919) & 0xff);
    WriteBytes(dir + "binary.inf", binary.data(), binary.size());
    const char wide[] = "\xff\xfe[\0S\0]\0\r\0\n\0k\0=\0v\0\r\0\n\0";
    WriteBytes(dir + "wide.inf", wide, sizeof wide - 1);
    const struct {
        const char *Name;
        int Result, KeysInS;
    } cases[] = {
        {"missing.inf", 0, 0}, {"empty.inf", 0, 0}, {"cut.inf", 1, 1}, {"binary.inf", 1, 0}, {"wide.inf", 1, 0},
    };
    for (const auto &c : cases) {
        CInfFile inf;
        EXPECT_EQ(c.Result, inf.Load((dir + c.Name).c_str())) << c.Name;
        EXPECT_EQ(c.KeysInS, inf.GetKeyCount("S")) << c.Name;
        EXPECT_EQ(0, inf.GetKeyCount("T")) << c.Name << ": a NUL ends the text";
    }
    CInfFile nullPath;
    EXPECT_EQ(0, nullPath.Load(nullptr));

    // Held open elsewhere without sharing.
    HANDLE holder = CreateFileA((dir + "binary.inf").c_str(), GENERIC_READ, 0, NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, holder);
    CInfFile blocked;
    EXPECT_EQ(0, blocked.Load((dir + "binary.inf").c_str()));
    CloseHandle(holder);
    EXPECT_EQ(1, blocked.Load((dir + "binary.inf").c_str()));
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
    char out[260];
    EXPECT_EQ(1, inf.LookupKey("Section1234", "key19", out, nullptr));
    EXPECT_STREQ("Value19", out);
    EXPECT_EQ(1, inf.LookupKey("Section7", std::string(259, 'n').c_str(), out, nullptr));
    EXPECT_EQ(std::string(259, 'v'), out);
    EXPECT_EQ(1, inf.GetKeyCount(std::string(259, 'S').c_str()));
}

}  // namespace
