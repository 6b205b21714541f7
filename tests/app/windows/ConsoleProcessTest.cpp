#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/DatagramSockets.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/fakes/TestMailslot.h"

namespace tallyhorn {
namespace {

/// The real program, with windows of its own that nobody sees where there is no display.
class ConsoleProcessTest : public ::testing::Test {
protected:
    ConsoleProcessTest() {
        SetEnvironmentVariableA("TALLYHORN_SUMMARY", (folder_ / "summary").c_str());
        WriteBytes(folder_ / "thlisten.ini",
                   "[General]\r\nMessageViews=7\r\nSyslogUDPPort=" + port_ + "\r\n");
    }
    ~ConsoleProcessTest() override {
        TerminateProcess(console_.hProcess, EXIT_FAILURE);
        Release();
    }
    ConsoleProcessTest(const ConsoleProcessTest&) = delete;
    ConsoleProcessTest& operator=(const ConsoleProcessTest&) = delete;

    void Start() {
        std::string command = "\"" TALLYHORN_CONSOLE "\" --folder \"" + folder_.Path().string() + '"';
        STARTUPINFOA start{};
        start.cb = sizeof start;
        ASSERT_NE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                 &start, &console_),
                  0);
        ASSERT_TRUE(Eventually([this] { return MainWindow() != nullptr; }));
    }
    static int Send(const std::string& arguments) {
        // Starts with no quote: the shell removes a first and a last one.
        return std::system(("cd . && \"" TALLYHORN_SEND "\" " + arguments + " >nul").c_str());
    }
    /// This console's, of that kind or title: other tests run at the same time.
    HWND Window(const wchar_t* kind, const wchar_t* title, bool shown) const {
        HWND window = nullptr;
        DWORD process = 0;
        do {
            window = FindWindowExW(nullptr, window, kind, title);
            GetWindowThreadProcessId(window, &process);
        } while (window != nullptr &&
                 (process != console_.dwProcessId || (IsWindowVisible(window) != 0) != shown));
        return window;
    }
    HWND MainWindow() const { return Window(nullptr, L"Tallyhorn Listener Console", true); }
    /// As the system does; no later than its answer is everything kept.
    void EndSession() {
        const HWND window = Window(L"TallyhornSessionEnd", nullptr, false);
        DWORD_PTR answer = 0;
        for (const UINT message : {WM_QUERYENDSESSION, WM_ENDSESSION})
            EXPECT_NE(SendMessageTimeoutW(window, message, TRUE, 0, SMTO_NORMAL, 60'000, &answer), 0);
        summary_ = ReadBytes(folder_ / "summary");
        backup_ = ReadBytes(folder_ / "Backup.dat");
        DWORD status = EXIT_FAILURE;
        EXPECT_EQ(WaitForSingleObject(console_.hProcess, 60'000), WAIT_OBJECT_0);
        EXPECT_NE(GetExitCodeProcess(console_.hProcess, &status), 0);
        EXPECT_EQ(status, DWORD{EXIT_SUCCESS});
        Release();
    }
    void Release() {
        CloseHandle(console_.hThread);
        CloseHandle(console_.hProcess);
        console_ = {};
    }

    const TemporaryFolder folder_;
    /// One that nobody had a moment ago.
    const std::string port_ = std::to_string(MakeDatagramSockets()->Listen(0, [] {})->Port());
    PROCESS_INFORMATION console_{};
    std::string summary_, backup_;
};

TEST_F(ConsoleProcessTest, TheEndOfTheSessionIsTheNormalShutDown) {
    Start();
    EXPECT_EQ(Send("--demo --count 20 --seed 9"), 0);
    EXPECT_EQ(Send("--syslog 127.0.0.1:" + port_ +
                   " \"Event 7 (Disk fault): System Log, 8/21/2008 2:05:09 PM, disk, Error, none, 7, "
                   "acme\\joe, pc, It has a bad block.\""),
              0);
    // Two polls, and a machine that has other things to do.
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EndSession();
    EXPECT_TRUE(summary_.starts_with("NetBIOS 20 received, 20 kept, ")) << summary_;
    EXPECT_NE(summary_.find("Syslog 1 received, 1 kept, "), std::string::npos) << summary_;
    EXPECT_NE(backup_.find("\r\nDescription: \r\nIt has a bad block."), std::string::npos) << backup_;

    // What came back stays, whatever question stands open.
    const std::string backup = backup_;
    Start();
    const HWND main = MainWindow();  // the question's title is the same
    PostMessageW(main, WM_CLOSE, 0, 0);
    EXPECT_TRUE(Eventually([main] { return IsWindowEnabled(main) == 0; }));
    EXPECT_NE(IsWindow(main), 0);
    EndSession();
    EXPECT_NE(summary_.find("Syslog 0 received, 1 kept, "), std::string::npos) << summary_;
    EXPECT_EQ(backup_, backup);
}

}  // namespace
}  // namespace tallyhorn
