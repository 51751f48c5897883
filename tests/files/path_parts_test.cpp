#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "files/path_parts.h"

namespace {

// A stand-in for a double-byte code page in which 0x81 opens a character.
int LeadIs81(unsigned char c) { return c == 0x81; }

std::string Split(const char *path, int (*isLead)(unsigned char) = nullptr)
{
    char drive[PathDriveSize], dir[PathPartSize], name[PathPartSize], ext[PathPartSize];
    if (isLead)
        SplitPath(path, drive, dir, name, ext, isLead);
    else
        SplitPath(path, drive, dir, name, ext);
    return std::string(drive) + "|" + dir + "|" + name + "|" + ext;
}

TEST(PathParts, SplitsLikeTheRuntime)
{
    static const struct {
        const char *Path, *Expected;
    } cases[] = {
        {"C:\\windows\\system32\\driver.dll", "C:|\\windows\\system32\\|driver|.dll"},
        {"C:", "C:|||"},
        {"C:file.txt", "C:||file|.txt"},
        {"archive.tar.gz", "||archive.tar|.gz"},
        {"dir.d\\noext", "|dir.d\\|noext|"},
        {".profile", "|||.profile"},
        {"name.", "||name|."},
        {"\\\\server\\share\\file.cab", "|\\\\server\\share\\|file|.cab"},
        {"a/b\\c.x", "|a/b\\|c|.x"},
        // 0x81 0x5C is one character whose trail byte has the backslash's value.
        {"C:\\dir\\na\x81\\me.txt", "C:|\\dir\\na\x81\\|me|.txt"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.Expected, Split(c.Path)) << c.Path;
    EXPECT_EQ("C:|\\dir\\|na\x81\\me|.txt", Split("C:\\dir\\na\x81\\me.txt", LeadIs81));

    // Parts left out are not written; long parts are cut to 255 and said to be.
    char dir[PathPartSize] = "untouched", name[PathPartSize], ext[PathPartSize];
    EXPECT_TRUE(SplitPath("C:\\a\\b.c", nullptr, nullptr, name, nullptr));
    EXPECT_STREQ("untouched", dir);
    std::string path = "C:\\" + std::string(253, 'd') + "\\" + std::string(255, 'n');
    EXPECT_TRUE(SplitPath(path.c_str(), nullptr, dir, name, ext)) << "255 is whole";
    EXPECT_TRUE(SplitPath(("C:\\a\\" + std::string(300, 'n')).c_str(), nullptr, dir, nullptr, ext)) << "the cut name is not wanted";
    path = "C:\\" + std::string(300, 'd') + "\\" + std::string(300, 'n') + "." + std::string(300, 'e');
    EXPECT_FALSE(SplitPath(path.c_str(), nullptr, dir, name, ext));
    EXPECT_EQ(255u, std::strlen(dir));
    EXPECT_EQ(std::string(255, 'n'), name);
    EXPECT_EQ("." + std::string(254, 'e'), ext);
}

TEST(PathParts, ComposesLikeTheRuntimeWithinTheBuffer)
{
    static const struct {
        const char *Drive, *Directory, *Name, *Extension, *Expected;
    } cases[] = {
        {"C:", "\\windows\\", "notepad", ".exe", "C:\\windows\\notepad.exe"},
        {"C", "\\windows", "notepad", "exe", "C:\\windows\\notepad.exe"},
        {"", "dir/", "f", "", "dir/f"},
        {"", "", "name", ".", "name."},
        {"D:", "", "", "", "D:"},
        {nullptr, nullptr, "only", nullptr, "only"},
    };
    char out[261];
    for (const auto &c : cases) {
        EXPECT_EQ(std::strlen(c.Expected), MakePath(out, sizeof out, c.Drive, c.Directory, c.Name, c.Extension));
        EXPECT_STREQ(c.Expected, out);
    }
    std::string dir(255, 'd'), name(255, 'n');
    EXPECT_EQ(260u, MakePath(out, sizeof out, "C:", dir.c_str(), name.c_str(), ".ext"));
    EXPECT_EQ("C:" + dir + "\\nn", out);
    char tiny[4];
    EXPECT_EQ(3u, MakePath(tiny, sizeof tiny, "C:", "\\dir\\", "a", "b"));
    EXPECT_STREQ("C:\\", tiny);
}

TEST(PathParts, IllegalCharactersAndTrailingBackslash)
{
    static const struct {
        const char *Text;
        char Substitute;
        const char *Expected;
    } cases[] = {
        {"a/b*c?d\"e<f>g|h", '_', "a_b_c_d_e_f_g_h"},
        {"C:\\keep\\colon:and\\backslash", '_', "C:\\keep\\colon:and\\backslash"},
        {"what?", 0, "what_"},
        {"x*y", '-', "x-y"},
    };
    char text[64];
    for (const auto &c : cases) {
        std::strcpy(text, c.Text);
        EXPECT_EQ(text, ReplaceIllegalChars(text, c.Substitute));
        EXPECT_STREQ(c.Expected, text) << c.Text;
    }
    EXPECT_EQ(nullptr, ReplaceIllegalChars(nullptr, '_'));

    static const struct {
        const char *Text, *Expected;
    } backslashes[] = {{"", "\\"}, {"C:\\dir", "C:\\dir\\"}, {"C:\\dir\\", "C:\\dir\\"}, {"dir/", "dir/\\"}};
    for (const auto &c : backslashes) {
        std::strcpy(text, c.Text);
        EXPECT_EQ(text, EnsureTrailingBackslash(text));
        EXPECT_STREQ(c.Expected, text) << c.Text;
    }
}

TEST(PathParts, FileNameOffsetAndJoin)
{
    static const struct {
        const char *Path, *Directory, *Name;
    } cases[] = {
        {"C:\\file.cab", "C:\\", "file.cab"},
        {"\\\\server\\share\\a.tar.b", "\\\\server\\share\\", "a.tar.b"},
        {"C:file.cab", "C:", "file.cab"},
        {"dir/sub\\", "dir/sub\\", ""},
        {"plain", "", "plain"},
        {"\x81\\name", "", "\x81\\name"},  // the backslash is a trail byte
    };
    for (const auto &c : cases) {
        size_t offset = FileNameOffset(c.Path, LeadIs81);
        EXPECT_EQ(std::string(c.Directory) + "|" + c.Name,
                  std::string(c.Path, offset) + "|" + (c.Path + offset)) << c.Path;
        EXPECT_EQ(c.Path, JoinPath(c.Directory, c.Name)) << c.Path;
    }
    EXPECT_EQ("C:\\dir\\next.cab", JoinPath("C:\\dir", "next.cab"));
}

// A shortcut's group and description must each be one name; a destination
// must start at a drive's root or a share.
TEST(PathParts, SingleNamesAndAbsoluteDirectories)
{
    static const struct {
        const char *Text;
        bool Single, Absolute;
    } cases[] = {
        {"Plenarc Demo", true, false},  {"", false, false},          {"..", false, false},
        {". .", false, false},          {"a\\b", false, false},       {"a/b", false, false},
        {"C:x", false, false},          {"lpt1.txt", false, false},  {"CONOUT$", false, false},
        {"C:\\", false, true},          {"c:/dir", false, true},     {"\\", false, false},
        {"\\\\server\\s", false, true}, {"\\\\?\\C:\\x", false, false}, {"::{20d04fe0}", false, false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(c.Single, IsSingleName(c.Text)) << c.Text;
        EXPECT_EQ(c.Absolute, IsAbsoluteDirectory(c.Text)) << c.Text;
    }
}

}  // namespace
