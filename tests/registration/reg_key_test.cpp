#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registration/reg_key.h"
#include "test_support.h"

namespace {

const std::string Path = "Software\\TovrelTests\\RegKey";

// What the wrapper stores and reads back. The platform adds the NUL behind
// non-empty text on NT, and behind any text on 9x, where it also takes a
// text whole whatever length it is given.
void ExpectStringsWrittenAndRead(bool nineX)
{
    DeleteKeyTree(HKEY_CURRENT_USER, Path);
    CRegKey key;
    EXPECT_FALSE(key.Open(HKEY_CURRENT_USER, Path.c_str()));
    EXPECT_FALSE(key.SetString("v", "text", -1)) << "no key open";
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, (Path + "\\a\\b").c_str())) << "every level is made";
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    const struct {
        const char *Name, *Text;
        int Length;
        std::string Stored;
        DWORD Size;  // of the QueryString buffer
        const char *Read;  // null: refused, and the buffer emptied
    } cases[] = {
        {"whole", "abc", -1, std::string("abc", 4), 4, "abc"},
        {"tight", "abc", -1, std::string("abc", 4), 3, nullptr},
        {"cut", "abcdef", 3, nineX ? std::string("abcdef", 7) : "abc", 4, nineX ? nullptr : "abc"},
        {"unended", "abcdef", 3, nineX ? std::string("abcdef", 7) : "abc", 3, nullptr},  // no NUL in the buffer
        {"empty", "", -1, nineX ? std::string(1, '\0') : "", 4, ""},
        {nullptr, "default", -1, std::string("default", 8), 8, "default"},
    };
    for (const auto &c : cases) {
        ASSERT_TRUE(key.SetString(c.Name, c.Text, c.Length)) << c.Text;
        CStoredValue value = ReadStoredValue(HKEY_CURRENT_USER, Path, c.Name ? c.Name : "");
        EXPECT_EQ(static_cast<DWORD>(REG_SZ), value.Type) << c.Text;
        EXPECT_EQ(c.Stored, value.Data) << c.Text;
        char out[16];
        std::memset(out, 'x', sizeof out);
        EXPECT_EQ(c.Read != nullptr, key.QueryString(c.Name, out, c.Size)) << c.Text;
        EXPECT_STREQ(c.Read ? c.Read : "", out) << c.Text;
    }
    EXPECT_FALSE(key.Create(reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x1234)), "x"));
    EXPECT_FALSE(key.IsOpen()) << "a failed create closes what was open";
}

TEST(RegKey, StringsWrittenAndRead) { ExpectStringsWrittenAndRead(false); }
TEST(RegKeyWin98, StringsWrittenAndRead) { ExpectStringsWrittenAndRead(true); }

TEST(RegKey, EnumValueNamesPacksWhatFits)
{
    DeleteKeyTree(HKEY_CURRENT_USER, Path);
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    char buffer[128] = "untouched";
    DWORD size = 10, count = 5;
    EXPECT_FALSE(key.EnumValueNames(buffer, &size, &count)) << "an empty key";
    EXPECT_EQ(0u, count);
    EXPECT_STREQ("untouched", buffer);
    // Created in sorted order: Wine lists values sorted, Windows by creation.
    for (const char *name : {"a", "bb", "ccc"})
        ASSERT_TRUE(key.SetString(name, "1", -1));
    const struct {
        DWORD Size, Used, Count;
        std::string Names;  // with the closing NUL
    } cases[] = {
        {100, 9, 3, std::string("a\0bb\0ccc\0", 10)},
        {8, 5, 2, std::string("a\0bb\0", 6)},
        {0, 0, 0, std::string("", 1)},  // the first name does not fit: still a success
    };
    for (const auto &c : cases) {
        std::memset(buffer, 'x', sizeof buffer);
        size = c.Size;
        EXPECT_TRUE(key.EnumValueNames(buffer, &size, &count)) << c.Size;
        EXPECT_EQ(c.Used, size) << c.Size;
        EXPECT_EQ(c.Count, count) << c.Size;
        EXPECT_EQ(c.Names + 'x', std::string(buffer, c.Names.size() + 1)) << "nothing past the NUL, " << c.Size;
    }
}

// Exactly at the limit with the subkey the value is written; one more and the
// subkey's name would be cut: nothing is written.
TEST(UninstallData, APathTooLongForItsBufferIsNotRecorded)
{
    const std::string root = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";
    const std::string fits(259 - root.size() - 1 - std::strlen(UninstallFiles), 'm');
    for (const std::string &model : {fits, fits + "m"}) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, root + model);
        CPrinterInf printer;
        printer.Model = CBoundedString(model.c_str());
        printer.LogUninstall(UninstallFiles, "C:\\f", "1");
        printer.LogUninstall(UninstallFiles, std::string(2000, 'n').c_str(), std::string(5000, 'd').c_str());
        EXPECT_EQ(model == fits, KeyExists(HKEY_LOCAL_MACHINE, root + model)) << model.size();
        EXPECT_EQ(model == fits ? 2u : 0u, StoredValueNames(HKEY_LOCAL_MACHINE, root + model + "\\files").size());
        DeleteKeyTree(HKEY_LOCAL_MACHINE, root + model);
    }
}

}  // namespace
