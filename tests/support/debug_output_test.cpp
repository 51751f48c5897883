#include <gtest/gtest.h>

#include <windows.h>

#include "debug_output.h"

namespace {

TEST(DebugOutputCapture, SeesEachCallInOrderAndOnlyWhileActive)
{
    OutputDebugStringA("before");
    {
        CDebugOutputCapture capture;
        ASSERT_TRUE(capture.IsActive());
        EXPECT_EQ("", capture.Text());
        OutputDebugStringA("\nfirst,");
        OutputDebugStringA("second");
        OutputDebugStringA("");
        EXPECT_EQ("\nfirst,second", capture.Text());
        capture.Clear();
        OutputDebugStringA("third");
        EXPECT_EQ("third", capture.Text());
    }
    CDebugOutputCapture later;
    OutputDebugStringA("after");
    EXPECT_EQ("after", later.Text()) << "a removed handler no longer records";
}

}  // namespace

namespace {

TEST(DebugOutputCapture, NestedCapturesEachRecordWhileActive)
{
    CDebugOutputCapture outer;
    OutputDebugStringA("a");
    {
        CDebugOutputCapture inner;
        OutputDebugStringA("b");
        EXPECT_EQ("b", inner.Text());
    }
    OutputDebugStringA("c");
    EXPECT_EQ("abc", outer.Text());
    EXPECT_TRUE(outer.IsActive());
}

}  // namespace
