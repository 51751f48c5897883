#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/driver_registration.h"
#include "registration/spooler.h"
#include "test_support.h"

namespace {

std::string Text(const char *text) { return text ? text : ""; }

TEST(DriverFileField, AStoredDirectoryStaysAndOnlyTheNameFollows)
{
    const struct {
        const char *Stored, *File, *Expected;  // Expected null: unchanged
    } cases[] = {
        {"drv.dll", "DRV.DLL", nullptr},
        {"old.dll", "new.dll", "new.dll"},
        {nullptr, "new.dll", "new.dll"},
        {nullptr, "", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "DRV.dll", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "new.dll", "C:\\Stored\\Dir\\new.dll"},
        {"\\\\server\\share\\old.dll", "new.dll", "new.dll"},
        {"C:\\Stored\\old.dll", "", "C:\\Stored\\"},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        const char *updated = UpdatedDriverFile(c.Stored, c.File, spec);
        EXPECT_STRCASEEQ(c.Expected, updated) << Text(c.Stored) << " / " << c.File;
    }
}

}  // namespace
