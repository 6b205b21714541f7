#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <future>

#include "platform/TerminationSignals.h"
#include "tests/fakes/TestMailslot.h"

namespace tallyhorn {
namespace {

/// This process's own: a console may be running.
HWND SessionEndWindow() {
    HWND window = nullptr;
    DWORD process = 0;
    do {
        window = FindWindowExW(nullptr, window, L"TallyhornSessionEnd", nullptr);
        GetWindowThreadProcessId(window, &process);
    } while (window != nullptr && process != GetCurrentProcessId());
    return window;
}

TEST(TerminationSignalsTest, TheEndOfTheSessionWaitsForTheProgram) {
    const auto termination = MakeTerminationSignals();
    for (const bool again : {false, true}) {
        std::atomic<int> ends = 0;
        termination->Start([&ends] { ++ends; });
        const HWND window = SessionEndWindow();
        ASSERT_NE(window, nullptr) << again;
        SendMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_EQ(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), TRUE);
        SendMessageW(window, WM_ENDSESSION, FALSE, 0);
        EXPECT_EQ(ends, 0) << "another program has said no";
        EXPECT_EQ(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), TRUE);
        const std::future<LRESULT> answer =
            std::async(std::launch::async, [window] { return SendMessageW(window, WM_ENDSESSION, TRUE, 0); });
        EXPECT_TRUE(Eventually([&ends] { return ends == 1; }));
        EXPECT_EQ(answer.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
        termination->Stop();
        answer.wait();
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(SessionEndWindow(), nullptr);
    }
}

}  // namespace
}  // namespace tallyhorn
