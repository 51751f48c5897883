// Runs only with cabinet.dll disabled in Wine: the install must go on without
// the decoder, extracting nothing.
#include <gtest/gtest.h>

#include <string>

#include "cabinet_maker.h"
#include "files/cabinet.h"
#include "test_support.h"

namespace {

TEST(CabinetDisabled, NothingIsExtractedAndNothingBreaks)
{
    HMODULE library = LoadLibraryA("CABINET");
    ASSERT_EQ(NULL, library) << "this program must run with cabinet.dll disabled";

    const std::string directory = ScratchDirectory();
    const std::string target = directory + "target\\";
    CreateDirectoryA(target.c_str(), NULL);
    CStoredFile file = {"inside.txt", "inside", 0x2A43, 0x2000, 0x20};
    ASSERT_TRUE(WriteStoredCabinet(directory + "one.cab", {file}));

    CCabinetExtractor extractor;
    EXPECT_EQ(0, extractor.Initialised);
    EXPECT_EQ(NULL, extractor.Context);
    extractor.SetDestination(target.c_str());
    CCabinetInfo info;
    EXPECT_EQ(0, extractor.IsCabinet((directory + "one.cab").c_str(), &info));
    EXPECT_EQ(0, extractor.Extract((directory + "one.cab").c_str(), 1));
    EXPECT_EQ(0, extractor.Extract((directory + "one.cab").c_str(), 0));
    EXPECT_FALSE(PathExists(target + "inside.txt"));
    char out[260] = "unchanged";
    EXPECT_EQ(0, extractor.PopExtractedName(out));
    EXPECT_STREQ("unchanged", out);

    // The test helper that makes cabinets through FCI cannot either.
    CCabinetSetPlan plan = {directory, "fci", false, 0, 0};
    EXPECT_TRUE(MakeCabinetSet(plan, {}).empty());
}

}  // namespace
