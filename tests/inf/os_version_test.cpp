#include <gtest/gtest.h>

#include "inf/os_version.h"

namespace {

// Each prefix flavour announces a different Windows; the program runs in all three.
void ExpectVersion(int family, int release, DWORD major, DWORD minor)
{
    COsVersion version;
    EXPECT_EQ(family, version.Family);
    EXPECT_EQ(release, version.Release);
    EXPECT_EQ(major, version.Info.dwMajorVersion);
    EXPECT_EQ(minor, version.Info.dwMinorVersion);
}

TEST(OsVersion, WindowsXpIsNtRelease6) { ExpectVersion(3, 6, 5, 1); }
TEST(OsVersionNt40, Nt4IsNtRelease5) { ExpectVersion(3, 5, 4, 0); }
TEST(OsVersionWin98, Windows98IsNineXRelease3) { ExpectVersion(2, 3, 4, 10); }

}  // namespace
