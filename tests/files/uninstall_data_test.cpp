#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registry_support.h"

namespace {

const std::string Root = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";

class UninstallData : public ::testing::Test {
protected:
    void SetUp() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root); }
    void TearDown() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root); }
    // The stored bytes; the platform adds the NUL behind non-empty text on
    // NT, and behind any text on 9x.
    void ExpectStored(const std::string &key, const char *name, const char *text, bool nul)
    {
        CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, key, name);
        EXPECT_EQ(DWORD(REG_SZ), value.Type) << key << " : " << name;
        EXPECT_EQ(std::string(text) + (nul ? std::string(1, '\0') : ""), value.Data) << key << " : " << name;
    }
};

TEST_F(UninstallData, ValuesGoUnderTheModelAndItsSubkeys)
{
    CPrinterInf printer, again;
    printer.Model = CBoundedString("Maker\\Model");
    const struct {
        const char *Subkey, *Name, *Data, *Key;
    } cases[] = {
        {nullptr, "Driver File", "old.dll", ""},
        {"", "Help File", "acme.hlp", ""},
        {nullptr, "PnP ID", "", ""},
        {UninstallFiles, "C:\\windows\\system32\\acme.dll", "1", "\\files"},
        {UninstallUnregister, "acmereg.dll", "C:\\x\\acmereg.dll", "\\unregister"},
        {UninstallServices, "AcmeSvc", "1", "\\services"},
        {UninstallRegistry, "HKLM,Software\\Acme,Path,0,\"%11%\"", "1", "\\registry"},
        {UninstallShortcuts, "\"Acme\",acme.exe,,66004", "1", "\\Shortcuts"},
    };
    for (const auto &c : cases)
        printer.LogUninstall(c.Subkey, c.Name, c.Data);
    // A later write wins; the model name is taken as it is.
    again.Model = CBoundedString("maker\\model");
    again.LogUninstall(nullptr, "Driver File", "new.dll");
    again.LogUninstall(nullptr, "Null Data", nullptr);
    for (const auto &c : cases)
        ExpectStored(Root + "Maker\\Model" + c.Key, c.Name, c.Data == std::string("old.dll") ? "new.dll" : c.Data,
                     *c.Data != 0);
    ExpectStored(Root + "Maker\\Model", "Null Data", "", false);
    EXPECT_EQ(4u, StoredValueNames(HKEY_LOCAL_MACHINE, Root + "Maker\\Model").size());
    // The subkey names keep their case.
    HKEY key;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE, (Root + "Maker\\Model").c_str(), 0, KEY_READ, &key));
    std::vector<std::string> subkeys;
    char name[256];
    for (DWORD i = 0, length = sizeof name; RegEnumKeyExA(key, i, name, &length, NULL, NULL, NULL, NULL) == 0;
         ++i, length = sizeof name)
        subkeys.push_back(name);
    RegCloseKey(key);
    EXPECT_EQ((std::vector<std::string>{"files", "registry", "services", "Shortcuts", "unregister"}), subkeys);
}

TEST_F(UninstallData, APathTooLongForItsBufferIsNotRecorded)
{
    CPrinterInf printer;
    // Exactly at the limit with the subkey: written; one more and the
    // subkey's name would be cut: nothing is written.
    std::string fits(259 - Root.size() - 1 - 5, 'm');
    printer.Model = CBoundedString(fits.c_str());
    printer.LogUninstall(UninstallFiles, "C:\\f", "1");
    EXPECT_EQ(1u, StoredValueNames(HKEY_LOCAL_MACHINE, Root + fits + "\\files").size());
    printer.Model = CBoundedString((fits + "m").c_str());
    printer.LogUninstall(UninstallFiles, "C:\\f", "1");
    printer.LogUninstall(UninstallFiles, std::string(2000, 'n').c_str(), std::string(5000, 'd').c_str());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Root + fits + "m"));
}

TEST_F(UninstallData, Win98StoresTheNulAlways)
{
    CPrinterInf printer;
    printer.Model = CBoundedString("M");
    printer.LogUninstall(nullptr, "PnP ID", "");
    printer.LogUninstall(nullptr, "Driver File", "d.dll");
    ExpectStored(Root + "M", "PnP ID", "", true);
    ExpectStored(Root + "M", "Driver File", "d.dll", true);
}

}  // namespace
