#include <gtest/gtest.h>

#include <string>

#include "registration/reg_key.h"
#include "registry_support.h"

namespace {

const std::string Path = "Software\\TovrelTests\\RegKey";

TEST(RegKey, OpensCreatesAndRefusesWithTheLastStatus)
{
    DeleteKeyTree(HKEY_CURRENT_USER, Path);
    CRegKey key;
    EXPECT_FALSE(key.Open(HKEY_CURRENT_USER, Path.c_str()));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Status);
    DWORD type = 0, size = 4;
    BYTE data[4];
    EXPECT_FALSE(key.SetString("v", "text", -1)) << "no key open";
    EXPECT_FALSE(key.QueryValue("v", &type, data, &size));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Status);
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, (Path + "\\a\\b").c_str())) << "every level is made";
    EXPECT_TRUE(key.Create(HKEY_CURRENT_USER, (Path + "\\a\\b").c_str())) << "an existing key is opened";
    EXPECT_TRUE(key.Open(HKEY_CURRENT_USER, (Path + "\\a").c_str()));
    EXPECT_FALSE(key.Create(reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x1234)), "x"));
    EXPECT_FALSE(key.IsOpen()) << "a failed create closes what was open";
    EXPECT_EQ((HKEY)NULL, key.Handle());
}

TEST(RegKey, SetStringStoresTheTextAndQueryValueReadsIt)
{
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    // NT adds the NUL itself when the byte after the counted text is one,
    // and stores an empty text with size 0.
    const struct {
        const char *Name, *Text;
        int Length;
        std::string Stored;
    } cases[] = {{"whole", "abc", -1, std::string("abc", 4)},
                 {"cut", "abcdef", 3, "abc"},
                 {"empty", "", -1, ""},
                 {nullptr, "default", -1, std::string("default", 8)}};
    for (const auto &c : cases) {
        ASSERT_TRUE(key.SetString(c.Name, c.Text, c.Length)) << c.Text;
        CStoredValue value = ReadStoredValue(HKEY_CURRENT_USER, Path, c.Name ? c.Name : "");
        EXPECT_EQ(static_cast<DWORD>(REG_SZ), value.Type) << c.Text;
        EXPECT_EQ(c.Stored, value.Data) << c.Text;
    }
    const struct {
        const char *Name;
        DWORD Size;
        bool Read;
        LONG Status;
    } reads[] = {{"whole", 16, true, ERROR_SUCCESS}, {"whole", 2, false, ERROR_MORE_DATA},
                 {"absent", 16, false, ERROR_FILE_NOT_FOUND}};
    for (const auto &r : reads) {
        DWORD type = 0, size = r.Size;
        char data[16] = {0};
        EXPECT_EQ(r.Read, key.QueryValue(r.Name, &type, reinterpret_cast<BYTE *>(data), &size)) << r.Size;
        EXPECT_EQ(r.Status, key.Status) << r.Name << r.Size;
    }
}

TEST(RegKey, EnumValueNamesPacksWhatFits)
{
    DeleteKeyTree(HKEY_CURRENT_USER, Path + "\\Enum");
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, (Path + "\\Enum").c_str()));
    char buffer[128] = "untouched";
    DWORD size = 10, count = 5;
    EXPECT_FALSE(key.EnumValueNames(buffer, &size, &count)) << "an empty key";
    EXPECT_EQ(0u, count);
    EXPECT_EQ(10u, size);
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
        {2, 2, 1, std::string("a\0", 3)},
        {0, 0, 0, std::string("", 1)},  // the first name does not fit: still a success
    };
    for (const auto &c : cases) {
        memset(buffer, 'x', sizeof buffer);
        size = c.Size;
        count = 77;
        EXPECT_TRUE(key.EnumValueNames(buffer, &size, &count)) << c.Size;
        EXPECT_EQ(c.Used, size) << c.Size;
        EXPECT_EQ(c.Count, count) << c.Size;
        EXPECT_EQ(c.Names + 'x', std::string(buffer, c.Names.size() + 1)) << "nothing past the NUL, " << c.Size;
    }
    // Data beyond the reading buffer ends the listing there.
    ASSERT_TRUE(key.SetString("bbb", std::string(300, 'd').c_str(), -1));
    size = 60;
    EXPECT_TRUE(key.EnumValueNames(buffer, &size, &count));
    EXPECT_EQ(2u, count);
    EXPECT_EQ(ERROR_MORE_DATA, key.Status);
}

}  // namespace
