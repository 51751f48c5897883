#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"

namespace {

std::vector<std::pair<std::string, LPARAM>> Closed;
int Broadcasts;
UINT QuitMessage;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    char name[64] = {0};
    GetClassNameA(window, name, sizeof name);
    if (message == WM_CLOSE) {
        Closed.push_back({name, lParam});
        return 0;  // a tool that refuses to close
    }
    if (message == QuitMessage) {
        ++Broadcasts;
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

const char *const Classes[] = {
    "QelRemoverFrameClass", "QelMonitorFrameClass", "QelJobStateClass", "QelSetupHostClass", "QelLinkFrameClass",
    "QelQueueHostClass",    "QelNoticeClass",       "QELCOVERDLGCLASS", "QELP",              "UnrelatedTool",
};

// Makes one window of each named class, runs CloseSiblingWindows and lets
// the posted broadcast arrive.
void CloseAmong(const std::vector<const char *> &names)
{
    Closed.clear();
    Broadcasts = 0;
    std::vector<HWND> windows;
    for (const char *name : names) {
        windows.push_back(CreateWindowA(name, name, WS_OVERLAPPED, 0, 0, 10, 10, NULL, NULL,
                                         GetModuleHandleA(NULL), NULL));
        EXPECT_NE((HWND)NULL, windows.back()) << name;
    }
    CloseSiblingWindows();
    MSG msg;
    while (PeekMessageA(&msg, NULL, 0, 0, PM_REMOVE))
        DispatchMessageA(&msg);
    for (HWND window : windows)
        DestroyWindow(window);
}

TEST(SiblingWindows, ClosesOneWindowOfEachClassInOrderThenBroadcasts)
{
    QuitMessage = RegisterWindowMessageA("QelRemoverQuit");
    for (const char *name : Classes) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = RecordingProc;
        wc.hInstance = GetModuleHandleA(NULL);
        wc.lpszClassName = name;
        ASSERT_NE(0, RegisterClassA(&wc)) << name;
    }
    // Made in reverse so that creation order cannot explain the close order;
    // a second notice window is not asked.
    CloseAmong({"UnrelatedTool", "QelNoticeClass", "QELP", "QELCOVERDLGCLASS", "QelNoticeClass", "QelQueueHostClass",
                "QelLinkFrameClass", "QelSetupHostClass", "QelJobStateClass", "QelMonitorFrameClass",
                "QelRemoverFrameClass"});
    ASSERT_EQ(9u, Closed.size());
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(Classes[i], Closed[i].first);
        EXPECT_EQ(i == 8 ? 1 : 0, Closed[i].second) << Classes[i];
    }
    EXPECT_EQ(11, Broadcasts) << "every top-level window gets the broadcast";

    CloseAmong({"UnrelatedTool"});
    EXPECT_TRUE(Closed.empty());
    EXPECT_EQ(1, Broadcasts);
}

}  // namespace
