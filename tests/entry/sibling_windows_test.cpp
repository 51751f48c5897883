#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"

namespace {

std::vector<std::pair<std::string, LPARAM>> Closed;
size_t Broadcasts;
UINT QuitMessage;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    char name[64] = {0};
    GetClassNameA(window, name, sizeof name);
    if (message == WM_CLOSE)
        Closed.push_back({name, lParam});  // and refuses to close, as a busy tool may
    else if (message == QuitMessage)
        ++Broadcasts;
    else
        return DefWindowProcA(window, message, wParam, lParam);
    return 0;
}

// One window of each class made, CloseSiblingWindows run and its posted
// broadcast let arrive. Made in reverse so that creation order cannot explain
// the close order; a second notice window is not asked.
TEST(SiblingWindows, ClosesOneWindowOfEachClassInOrderThenBroadcasts)
{
    const char *const order[] = {"QelRemoverFrameClass", "QelMonitorFrameClass", "QelJobStateClass",
                                 "QelSetupHostClass",    "QelLinkFrameClass",    "QelQueueHostClass",
                                 "QelNoticeClass",       "QELCOVERDLGCLASS",     "QELP"};
    const struct {
        std::vector<const char *> Made;
        size_t Closed;
    } cases[] = {
        {{"UnrelatedTool", "QelNoticeClass", "QELP", "QELCOVERDLGCLASS", "QelNoticeClass", "QelQueueHostClass",
          "QelLinkFrameClass", "QelSetupHostClass", "QelJobStateClass", "QelMonitorFrameClass", "QelRemoverFrameClass"},
         9},
        {{"UnrelatedTool"}, 0},
    };
    QuitMessage = RegisterWindowMessageA("QelRemoverQuit");
    const HINSTANCE instance = GetModuleHandleA(NULL);
    for (const auto &c : cases) {
        Closed.clear();
        Broadcasts = 0;
        std::vector<HWND> windows;
        for (const char *name : c.Made) {
            WNDCLASSA wc = {};
            wc.lpfnWndProc = RecordingProc;
            wc.hInstance = instance;
            wc.lpszClassName = name;
            RegisterClassA(&wc);  // fails harmlessly for a class made before
            windows.push_back(CreateWindowA(name, name, WS_OVERLAPPED, 0, 0, 10, 10, NULL, NULL, instance, NULL));
            EXPECT_NE((HWND)NULL, windows.back()) << name;
        }
        CloseSiblingWindows();
        for (MSG msg; PeekMessageA(&msg, NULL, 0, 0, PM_REMOVE);)
            DispatchMessageA(&msg);
        ASSERT_EQ(c.Closed, Closed.size());
        for (size_t i = 0; i < Closed.size(); ++i) {
            EXPECT_EQ(order[i], Closed[i].first);
            EXPECT_EQ(Closed[i].first == "QELP" ? 1 : 0, Closed[i].second) << order[i];
        }
        EXPECT_EQ(c.Made.size(), Broadcasts) << "every top-level window gets the broadcast";
        for (HWND window : windows)
            DestroyWindow(window);
    }
}

}  // namespace
