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
    ASSERT_EQ(NULL, LoadLibraryA("CABINET")) << "this program must run with cabinet.dll disabled";
    const std::string directory = ScratchDirectory();
    ASSERT_TRUE(WriteStoredCabinet(directory + "one.cab", {CStoredFile{"inside.txt", "inside", 0x2A43, 0x2000, 0x20}}));

    CCabinetExtractor extractor;
    EXPECT_EQ(0, extractor.Initialised);
    extractor.SetDestination(directory.c_str());
    EXPECT_EQ(0, extractor.IsCabinet((directory + "one.cab").c_str(), NULL));
    for (int followSet : {0, 1})
        EXPECT_EQ(0, extractor.Extract((directory + "one.cab").c_str(), followSet));
    EXPECT_FALSE(PathExists(directory + "inside.txt"));
    char out[260];
    EXPECT_EQ(0, extractor.PopExtractedName(out));
}

}  // namespace
