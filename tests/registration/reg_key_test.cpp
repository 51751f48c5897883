#include <gtest/gtest.h>

#include <string>

#include "registration/reg_key.h"
#include "registry_support.h"

namespace {

const char TestRoot[] = "Software\\TovrelTests\\RegKey";

class RegKeyTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree(HKEY_CURRENT_USER, TestRoot);
        Path = std::string(TestRoot) + "\\" + ::testing::UnitTest::GetInstance()->current_test_info()->name();
    }
    void TearDown() override { DeleteKeyTree(HKEY_CURRENT_USER, TestRoot); }
    std::string Path;
};

TEST_F(RegKeyTest, CreateMakesEveryLevelAndOpenFindsIt)
{
    CRegKey key;
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(0, key.Status);
    std::string deep = Path + "\\a\\b\\c";
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, deep.c_str()));
    EXPECT_EQ(ERROR_SUCCESS, key.Status);
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, deep));

    CRegKey again;
    EXPECT_TRUE(again.Open(HKEY_CURRENT_USER, deep.c_str()));
    EXPECT_TRUE(again.Create(HKEY_CURRENT_USER, deep.c_str())) << "an existing key is opened";
}

TEST_F(RegKeyTest, AFailedOpenOrCreateLeavesNoKey)
{
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    EXPECT_FALSE(key.Open(HKEY_CURRENT_USER, (Path + "\\missing").c_str()));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Status);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(NULL, key.Handle());

    // With no key open, reads and writes refuse and keep the last status.
    DWORD type = 0, size = 4;
    BYTE data[4];
    EXPECT_FALSE(key.SetString("v", "text", -1));
    EXPECT_FALSE(key.QueryValue("v", &type, data, &size));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Status);

    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, Path.c_str()));
    EXPECT_FALSE(key.Create(reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x1234)), "x"));
    EXPECT_NE(ERROR_SUCCESS, key.Status);
    EXPECT_FALSE(key.IsOpen());
}

TEST_F(RegKeyTest, SetStringStoresTheTextWithoutCountingItsNul)
{
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    ASSERT_TRUE(key.SetString("whole", "abc", -1));
    ASSERT_TRUE(key.SetString("cut", "abcdef", 3));
    ASSERT_TRUE(key.SetString("empty", "", -1));
    ASSERT_TRUE(key.SetString(nullptr, "default", -1));

    // The NT family adds the NUL itself when the byte after the counted text
    // is one, and stores an empty text with size 0.
    CStoredValue whole = ReadStoredValue(HKEY_CURRENT_USER, Path, "whole");
    EXPECT_EQ(DWORD(REG_SZ), whole.Type);
    EXPECT_EQ(std::string("abc\0", 4), whole.Data);
    EXPECT_EQ(std::string("abc"), ReadStoredValue(HKEY_CURRENT_USER, Path, "cut").Data);
    CStoredValue empty = ReadStoredValue(HKEY_CURRENT_USER, Path, "empty");
    EXPECT_TRUE(empty.Exists);
    EXPECT_EQ(0u, empty.Data.size());
    EXPECT_EQ(std::string("default\0", 8), ReadStoredValue(HKEY_CURRENT_USER, Path, "").Data);

    DWORD type = 0, size = 16;
    char data[16] = {0};
    EXPECT_TRUE(key.QueryValue("whole", &type, reinterpret_cast<BYTE *>(data), &size));
    EXPECT_EQ(DWORD(REG_SZ), type);
    EXPECT_EQ(4u, size);
    EXPECT_STREQ("abc", data);
    size = 2;
    EXPECT_FALSE(key.QueryValue("whole", &type, reinterpret_cast<BYTE *>(data), &size));
    EXPECT_EQ(ERROR_MORE_DATA, key.Status);
    size = 16;
    EXPECT_FALSE(key.QueryValue("absent", &type, reinterpret_cast<BYTE *>(data), &size));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Status);
}

TEST_F(RegKeyTest, EnumValueNamesPacksWhatFits)
{
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    // Created in sorted order: Wine lists values sorted, Windows by creation.
    ASSERT_TRUE(key.SetString("a", "1", -1));
    ASSERT_TRUE(key.SetString("bb", "1", -1));
    ASSERT_TRUE(key.SetString("ccc", "1", -1));

    const struct {
        DWORD Size;
        DWORD Used, Count;
        const char *Names;  // with the closing NUL
        size_t NamesSize;
    } cases[] = {
        {100, 9, 3, "a\0bb\0ccc\0", 10},
        {9, 9, 3, "a\0bb\0ccc\0", 10},
        {8, 5, 2, "a\0bb\0", 6},
        {5, 5, 2, "a\0bb\0", 6},
        {2, 2, 1, "a\0", 3},
        {1, 0, 0, "", 1},  // the first name does not fit: still a success
        {0, 0, 0, "", 1},
    };
    for (const auto &c : cases) {
        char buffer[128];
        memset(buffer, 'x', sizeof buffer);
        DWORD size = c.Size, count = 77;
        EXPECT_TRUE(key.EnumValueNames(buffer, &size, &count)) << c.Size;
        EXPECT_EQ(c.Used, size) << c.Size;
        EXPECT_EQ(c.Count, count) << c.Size;
        EXPECT_EQ(std::string(c.Names, c.NamesSize), std::string(buffer, c.NamesSize)) << c.Size;
        EXPECT_EQ('x', buffer[c.NamesSize]) << "nothing written past the closing NUL, size " << c.Size;
    }
}

TEST_F(RegKeyTest, EnumValueNamesOnAnEmptyOrNoKeyFails)
{
    char buffer[16] = "untouched";
    DWORD size = 10, count = 5;
    CRegKey closed;
    EXPECT_FALSE(closed.EnumValueNames(buffer, &size, &count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(10u, size);

    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    count = 5;
    EXPECT_FALSE(key.EnumValueNames(buffer, &size, &count));
    EXPECT_EQ(ERROR_NO_MORE_ITEMS, key.Status);
    EXPECT_EQ(0u, count);
    EXPECT_EQ(10u, size);
    EXPECT_STREQ("untouched", buffer);

    EXPECT_FALSE(key.EnumValueNames(nullptr, &size, &count));
    EXPECT_FALSE(key.EnumValueNames(buffer, nullptr, &count));
    EXPECT_FALSE(key.EnumValueNames(buffer, &size, nullptr));
}

TEST_F(RegKeyTest, EnumValueNamesStopsAtANameOrDataBeyondItsBuffers)
{
    CRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, Path.c_str()));
    ASSERT_TRUE(key.SetString("a", "1", -1));
    ASSERT_TRUE(key.SetString("b", std::string(300, 'd').c_str(), -1));
    ASSERT_TRUE(key.SetString("c", "1", -1));
    char buffer[64];
    DWORD size = 60, count = 0;
    EXPECT_TRUE(key.EnumValueNames(buffer, &size, &count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(ERROR_MORE_DATA, key.Status);
}

}  // namespace
