#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"

namespace {

struct Received {
    std::string Class;
    LPARAM Param;
};

std::vector<Received> Closed;
std::vector<UINT> Other;
UINT QuitMessage;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    char name[64] = {0};
    GetClassNameA(window, name, sizeof name);
    if (message == WM_CLOSE) {
        Closed.push_back({name, lParam});
        return 0;  // a tool that refuses to close
    }
    if (QuitMessage && message == QuitMessage) {
        Other.push_back(message);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

const char *const Classes[] = {
    "QelRemoverFrameClass", "QelMonitorFrameClass", "QelJobStateClass",
    "QelSetupHostClass",    "QelLinkFrameClass",    "QelQueueHostClass",
    "QelNoticeClass",       "QELCOVERDLGCLASS",     "QELP",
};

class SiblingWindows : public ::testing::Test {
protected:
    void SetUp() override
    {
        Closed.clear();
        Other.clear();
        QuitMessage = RegisterWindowMessageA("QelRemoverQuit");
        for (const char *name : Classes) {
            WNDCLASSA wc = {};
            wc.lpfnWndProc = RecordingProc;
            wc.hInstance = GetModuleHandleA(NULL);
            wc.lpszClassName = name;
            RegisterClassA(&wc);
        }
    }
    void TearDown() override
    {
        for (HWND window : Windows)
            DestroyWindow(window);
        for (const char *name : Classes)
            UnregisterClassA(name, GetModuleHandleA(NULL));
    }
    HWND Make(const char *name)
    {
        HWND window = CreateWindowA(name, name, WS_OVERLAPPED, 0, 0, 10, 10, NULL, NULL,
                                    GetModuleHandleA(NULL), NULL);
        EXPECT_NE((HWND)NULL, window) << name;
        Windows.push_back(window);
        return window;
    }
    void Pump()
    {
        MSG msg;
        while (PeekMessageA(&msg, NULL, 0, 0, PM_REMOVE))
            DispatchMessageA(&msg);
    }
    std::vector<HWND> Windows;
};

TEST_F(SiblingWindows, ClosesEachClassInOrderWithItsParameter)
{
    // Made in reverse so that creation order cannot explain the close order.
    for (int i = 8; i >= 0; --i)
        Make(Classes[i]);
    CloseSiblingWindows();
    ASSERT_EQ(9u, Closed.size());
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(Classes[i], Closed[i].Class);
        EXPECT_EQ(i == 8 ? 1 : 0, Closed[i].Param) << Classes[i];
    }
    Pump();
    ASSERT_EQ(9u, Other.size()) << "every top-level window gets the broadcast";
}

TEST_F(SiblingWindows, OnlyOneWindowOfAClassIsAsked)
{
    Make("QelNoticeClass");
    Make("QelNoticeClass");
    CloseSiblingWindows();
    ASSERT_EQ(1u, Closed.size());
    EXPECT_EQ("QelNoticeClass", Closed[0].Class);
}

TEST_F(SiblingWindows, WithNoToolRunningOnlyTheBroadcastIsSent)
{
    WNDCLASSA wc = {};
    wc.lpfnWndProc = RecordingProc;
    wc.hInstance = GetModuleHandleA(NULL);
    wc.lpszClassName = "UnrelatedTool";
    RegisterClassA(&wc);
    Make("UnrelatedTool");
    CloseSiblingWindows();
    EXPECT_TRUE(Closed.empty());
    Pump();
    EXPECT_EQ(1u, Other.size());
    DestroyWindow(Windows.back());
    Windows.pop_back();
    UnregisterClassA("UnrelatedTool", GetModuleHandleA(NULL));
}

}  // namespace
