#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registry_support.h"

namespace {

const std::string Root = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

class UninstallData : public ::testing::Test {
protected:
    void SetUp() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root); }
    void TearDown() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root); }
    std::string Stored(const std::string &key, const char *name)
    {
        CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, key, name);
        EXPECT_TRUE(value.Exists) << key << " : " << name;
        EXPECT_EQ(DWORD(REG_SZ), value.Type) << key << " : " << name;
        return value.Data;
    }
};

TEST_F(UninstallData, ValuesGoUnderTheModelAndItsSubkeys)
{
    CPrinterInf printer;
    printer.Model = CBoundedString("Acme Laser 5");
    const struct {
        const char *Subkey, *Name, *Data, *Key;
    } cases[] = {
        {nullptr, "Driver File", "acme.dll", ""},
        {"", "Help File", "acme.hlp", ""},
        {UninstallFiles, "C:\\windows\\system32\\acme.dll", "1", "\\files"},
        {UninstallUnregister, "acmereg.dll", "C:\\x\\acmereg.dll", "\\unregister"},
        {UninstallServices, "AcmeSvc", "1", "\\services"},
        {UninstallRegistry, "HKLM,Software\\Acme,Path,0,\"%11%\"", "1", "\\registry"},
        {UninstallShortcuts, "\"Acme\",acme.exe,,66004", "1", "\\Shortcuts"},
    };
    for (const auto &c : cases)
        printer.LogUninstall(c.Subkey, c.Name, c.Data);
    for (const auto &c : cases) {
        std::string key = Root + "\\Acme Laser 5" + c.Key;
        // The NT family stores the NUL of a non-empty text by itself.
        EXPECT_EQ(std::string(c.Data) + '\0', Stored(key, c.Name)) << c.Name;
    }
    std::vector<std::string> model = StoredValueNames(HKEY_LOCAL_MACHINE, Root + "\\Acme Laser 5");
    EXPECT_EQ(2u, model.size());
    // The subkey names keep their case.
    HKEY key;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE, (Root + "\\Acme Laser 5").c_str(), 0, KEY_READ, &key));
    std::vector<std::string> subkeys;
    char name[256];
    for (DWORD i = 0, length = sizeof name; RegEnumKeyExA(key, i, name, &length, NULL, NULL, NULL, NULL) == 0;
         ++i, length = sizeof name)
        subkeys.push_back(name);
    RegCloseKey(key);
    EXPECT_EQ((std::vector<std::string>{"files", "registry", "services", "Shortcuts", "unregister"}), subkeys);
}

TEST_F(UninstallData, EmptyDataIsAValueOfSizeZero)
{
    CPrinterInf printer;
    printer.Model = CBoundedString("M");
    printer.LogUninstall(nullptr, "PnP ID", "");
    printer.LogUninstall(nullptr, "Null Data", nullptr);
    EXPECT_EQ("", Stored(Root + "\\M", "PnP ID"));
    EXPECT_EQ("", Stored(Root + "\\M", "Null Data"));
}

TEST_F(UninstallData, ALaterWriteWinsAndTheModelNameIsTakenAsItIs)
{
    CPrinterInf first, second;
    first.Model = CBoundedString("Maker\\Model");
    second.Model = CBoundedString("maker\\model");
    first.LogUninstall(nullptr, "Driver File", "old.dll");
    first.LogUninstall(UninstallFiles, "C:\\a.dll", "1");
    second.LogUninstall(nullptr, "Driver File", "new.dll");
    second.LogUninstall(UninstallFiles, "C:\\a.dll", "1");
    EXPECT_EQ(std::string("new.dll\0", 8), Stored(Root + "\\Maker\\Model", "Driver File"));
    EXPECT_EQ(1u, StoredValueNames(HKEY_LOCAL_MACHINE, Root + "\\Maker\\Model\\files").size());
}

TEST_F(UninstallData, APathTooLongForItsBufferIsNotRecorded)
{
    std::string rootLength = Root + "\\";
    CPrinterInf printer;
    // Exactly at the limit with the subkey: written.
    std::string fits(259 - rootLength.size() - 1 - 5, 'm');
    printer.Model = CBoundedString(fits.c_str());
    printer.LogUninstall(UninstallFiles, "C:\\f", "1");
    EXPECT_EQ(1u, StoredValueNames(HKEY_LOCAL_MACHINE, Root + "\\" + fits + "\\files").size());

    // One more and the subkey's name would be cut: nothing is written.
    std::string over = fits + "m";
    printer.Model = CBoundedString(over.c_str());
    printer.LogUninstall(UninstallFiles, "C:\\f", "1");
    printer.LogUninstall(UninstallFiles, std::string(2000, 'n').c_str(), std::string(5000, 'd').c_str());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Root + "\\" + over));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Root + "\\" + over + "\\fil"));
}

TEST_F(UninstallData, Win98StoresTheNulAlways)
{
    CPrinterInf printer;
    printer.Model = CBoundedString("M");
    printer.LogUninstall(nullptr, "PnP ID", "");
    printer.LogUninstall(nullptr, "Driver File", "d.dll");
    EXPECT_EQ(std::string("\0", 1), Stored(Root + "\\M", "PnP ID"));
    EXPECT_EQ(std::string("d.dll\0", 6), Stored(Root + "\\M", "Driver File"));
}

}  // namespace
