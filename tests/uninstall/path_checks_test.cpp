#include <gtest/gtest.h>

#include <string>

#include "uninstall/path_checks.h"

namespace {

// Each record value, and the start of why it is refused ("" when it is not).
TEST(PathChecks, RefusesWhatNoInstallWrites)
{
    static const struct {
        std::string Path;
        const char *Why;
    } cases[] = {
        {"C:\\windows\\system32\\plenver.dll", ""},
        {"c:\\Program Files\\Halvern\\x.y.dll", ""},
        {"C:\\a\\com0", ""},
        {"C:\\" + std::string(256, 'n'), ""},
        {"C:\\" + std::string(257, 'n'), "longer than 259"},
        {"", "not a full path"},
        {"plenver.dll", "not a full path"},
        {"C:plenver.dll", "not a full path"},
        {"\\windows\\x.dll", "not a full path"},
        {"\\\\server\\share\\x.dll", "a share or device"},
        {"\\\\?\\C:\\x.dll", "a share or device"},
        {"\\\\.\\PhysicalDrive0", "a share or device"},
        {"C:\\windows\\..\\win.ini", "climbs out"},
        {"C:\\windows\\.\\win.ini", "a name of dots"},
        {"C:\\windows\\ . \\win.ini", "a name of dots"},
        {"C:\\windows\\\\win.ini", "holds an empty name"},
        {"C:\\windows\\", "names a directory"},
        {"C:\\a\\NUL", "names a device"},
        {"C:\\a\\lpt1.txt", "names a device"},
        {"C:\\a\\Com9 .log", "names a device"},
        {"C:\\a\\conout$", "names a device"},
        {"C:\\a\\con.d\\x.dll", "names a device"},
        {"C:\\a\\b.dll:stream", "holds a character"},
        {"C:\\a\\b*.dll", "holds a character"},
        {"C:\\a/b.dll", "holds a character"},
        {"C:\\a\\b\x01.dll", "holds a character"},
    };
    for (const auto &c : cases) {
        std::string why = RefusalOfPath(c.Path);
        EXPECT_EQ(0u, why.find(c.Why)) << c.Path << ": " << why;
        EXPECT_EQ(std::string(c.Why).empty(), why.empty()) << c.Path << ": " << why;
    }
    EXPECT_EQ("", RefusalOfName("Plenarc Demo"));
    for (const char *name : {"..", "a\\b", "C:", "CON", ""})
        EXPECT_NE("", RefusalOfName(name)) << name;
}

}  // namespace
