#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "platform/TerminationSignals.h"
#include "tests/support/TestMailslot.h"

// Declared here, because only the back ends include windows.h.
extern "C" {
__declspec(dllimport) void* __stdcall FindWindowExW(void* parent, void* after, const wchar_t* kind,
                                                    const wchar_t* title);
__declspec(dllimport) unsigned long __stdcall GetWindowThreadProcessId(void* window, unsigned long* process);
__declspec(dllimport) unsigned long __stdcall GetCurrentProcessId();
__declspec(dllimport) std::intptr_t
    __stdcall SendMessageW(void* window, unsigned message, std::uintptr_t wParam, std::intptr_t lParam);
}

namespace tallyhorn {
namespace {

constexpr unsigned Close = 0x10, QueryEndSession = 0x11, EndSession = 0x16;  // window messages: WM_CLOSE etc.

/// Returns the window of this process.  A console that runs at the same time has such a window too.
void* SessionEndWindow() {
    void* window = nullptr;
    unsigned long process = 0;
    do {
        window = FindWindowExW(nullptr, window, L"TallyhornSessionEnd", nullptr);
        GetWindowThreadProcessId(window, &process);
    } while (window != nullptr && process != GetCurrentProcessId());
    return window;
}

TEST(TerminationSignalsTest, TheEndOfTheSessionWaitsForStop) {
    const auto termination = MakeTerminationSignals();
    for (const bool again : {false, true}) {
        std::atomic<int> ends = 0;
        termination->Start([&ends] { ++ends; });
        void* const window = SessionEndWindow();
        ASSERT_NE(window, nullptr) << again;
        SendMessageW(window, Close, 0, 0);
        EXPECT_EQ(SendMessageW(window, QueryEndSession, 0, 0), 1);
        SendMessageW(window, EndSession, 0, 0);
        EXPECT_EQ(ends, 0) << "another program refused the end of the session";
        EXPECT_EQ(SendMessageW(window, QueryEndSession, 0, 0), 1);
        const std::future<std::intptr_t> answer =
            std::async(std::launch::async, [window] { return SendMessageW(window, EndSession, 1, 0); });
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
