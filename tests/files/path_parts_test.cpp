#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "files/path_parts.h"

namespace {

struct SplitCase {
    const char *Path;
    const char *Drive, *Directory, *Name, *Extension;
};

TEST(PathParts, SplitsLikeTheRuntime)
{
    static const SplitCase cases[] = {
        {"C:\\windows\\system32\\driver.dll", "C:", "\\windows\\system32\\", "driver", ".dll"},
        {"C:\\dir\\", "C:", "\\dir\\", "", ""},
        {"C:", "C:", "", "", ""},
        {"C:file.txt", "C:", "", "file", ".txt"},
        {"archive.tar.gz", "", "", "archive.tar", ".gz"},
        {"dir.d\\noext", "", "dir.d\\", "noext", ""},
        {".profile", "", "", "", ".profile"},
        {"name.", "", "", "name", "."},
        {"\\\\server\\share\\file.cab", "", "\\\\server\\share\\", "file", ".cab"},
        {"a/b\\c.x", "", "a/b\\", "c", ".x"},
        {"", "", "", "", ""},
        {"x:\\", "x:", "\\", "", ""},
    };
    for (const SplitCase &c : cases) {
        char drive[PathDriveSize], dir[PathPartSize], name[PathPartSize], ext[PathPartSize];
        SplitPath(c.Path, drive, dir, name, ext);
        EXPECT_STREQ(c.Drive, drive) << c.Path;
        EXPECT_STREQ(c.Directory, dir) << c.Path;
        EXPECT_STREQ(c.Name, name) << c.Path;
        EXPECT_STREQ(c.Extension, ext) << c.Path;
    }
}

TEST(PathParts, PartsLeftOutAreNotWritten)
{
    char dir[PathPartSize] = "untouched";
    char name[PathPartSize];
    SplitPath("C:\\a\\b.c", nullptr, nullptr, name, nullptr);
    EXPECT_STREQ("b", name);
    SplitPath("C:\\a\\b.c", nullptr, dir, nullptr, nullptr);
    EXPECT_STREQ("\\a\\", dir);
}

TEST(PathParts, LongPartsAreCutTo255)
{
    std::string longName(300, 'n');
    std::string path = "C:\\" + std::string(300, 'd') + "\\" + longName + "." + std::string(300, 'e');
    char drive[PathDriveSize], dir[PathPartSize], name[PathPartSize], ext[PathPartSize];
    SplitPath(path.c_str(), drive, dir, name, ext);
    EXPECT_EQ(255u, std::strlen(dir));
    EXPECT_EQ(255u, std::strlen(name));
    EXPECT_EQ(255u, std::strlen(ext));
    EXPECT_EQ('.', ext[0]);
}

// A stand-in for a double-byte code page in which 0x81 opens a character.
int LeadIs81(unsigned char c) { return c == 0x81; }

TEST(PathParts, TrailBytesAreNeverSeparators)
{
    // 0x81 0x5C is one character whose trail byte has the backslash's value.
    const char path[] = "C:\\dir\\na\x81\\me.txt";
    char dir[PathPartSize], name[PathPartSize], ext[PathPartSize];
    SplitPath(path, nullptr, dir, name, ext, LeadIs81);
    EXPECT_STREQ("\\dir\\", dir);
    EXPECT_STREQ("na\x81\\me", name);
    EXPECT_STREQ(".txt", ext);

    SplitPath(path, nullptr, dir, name, ext);
    EXPECT_STREQ("\\dir\\na\x81\\", dir) << "without a code page the byte separates";
    EXPECT_STREQ("me", name);
}

struct MakeCase {
    const char *Drive, *Directory, *Name, *Extension;
    const char *Expected;
};

TEST(PathParts, ComposesLikeTheRuntime)
{
    static const MakeCase cases[] = {
        {"C:", "\\windows\\", "notepad", ".exe", "C:\\windows\\notepad.exe"},
        {"C", "\\windows", "notepad", "exe", "C:\\windows\\notepad.exe"},
        {"", "dir/", "f", "", "dir/f"},
        {"", "", "name", ".", "name."},
        {"D:", "", "", "", "D:"},
        {"", "", "", "", ""},
        {"", "\\\\server\\share\\", "", "", "\\\\server\\share\\"},
        {nullptr, nullptr, "only", nullptr, "only"},
    };
    for (const MakeCase &c : cases) {
        char out[261];
        size_t n = MakePath(out, sizeof out, c.Drive, c.Directory, c.Name, c.Extension);
        EXPECT_STREQ(c.Expected, out);
        EXPECT_EQ(std::strlen(c.Expected), n);
    }
}

TEST(PathParts, ComposingStopsAtTheBuffer)
{
    std::string dir(255, 'd'), name(255, 'n');
    char out[261];
    std::memset(out, 'X', sizeof out);
    size_t n = MakePath(out, sizeof out, "C:", dir.c_str(), name.c_str(), ".ext");
    EXPECT_EQ(260u, n);
    EXPECT_EQ(0, out[260]);
    EXPECT_EQ(std::string("C:") + dir + "\\" + std::string(2, 'n'), out);

    char tiny[4];
    EXPECT_EQ(3u, MakePath(tiny, sizeof tiny, "C:", "\\dir\\", "a", "b"));
    EXPECT_STREQ("C:\\", tiny);
}

TEST(PathParts, IllegalCharactersAreReplaced)
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
        {"", '_', ""},
    };
    for (const auto &c : cases) {
        char text[64];
        std::strcpy(text, c.Text);
        EXPECT_EQ(text, ReplaceIllegalChars(text, c.Substitute));
        EXPECT_STREQ(c.Expected, text) << c.Text;
    }
    EXPECT_EQ(nullptr, ReplaceIllegalChars(nullptr, '_'));
}

TEST(PathParts, TrailingBackslash)
{
    static const struct {
        const char *Text, *Expected;
    } cases[] = {
        {"", "\\"},
        {"C:\\dir", "C:\\dir\\"},
        {"C:\\dir\\", "C:\\dir\\"},
        {"dir/", "dir/\\"},
    };
    for (const auto &c : cases) {
        char text[64];
        std::strcpy(text, c.Text);
        EXPECT_EQ(text, EnsureTrailingBackslash(text));
        EXPECT_STREQ(c.Expected, text) << c.Text;
    }
}

}  // namespace
