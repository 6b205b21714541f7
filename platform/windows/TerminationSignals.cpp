#include "platform/TerminationSignals.h"

#include <windows.h>

#include <future>
#include <thread>
#include <utility>

namespace tallyhorn {
namespace {

constexpr const wchar_t* ClassName = L"TallyhornSessionEnd";
/// Not WM_CLOSE, which programs that end others send to every window: the user may answer No.
constexpr UINT StopListening = WM_APP;

/// Hears of the end of the log-on session in a window of its own, which is never shown, in a thread of its
/// own: the system ends the process as soon as its windows have answered, and this one answers once all is
/// done.
class SessionEnd final : public TerminationSignals {
public:
    SessionEnd() = default;
    ~SessionEnd() override { SessionEnd::Stop(); }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    void Start(std::function<void()> ended) override {
        Stop();
        ended_ = std::move(ended);
        done_ = std::promise<void>();
        isDone_ = done_.get_future();
        std::promise<HWND> made;
        std::future<HWND> window = made.get_future();
        thread_ = std::thread([this, &made] { Listen(made); });
        window_ = window.get();
    }

    void Stop() override {
        if (!thread_.joinable())
            return;
        done_.set_value();
        PostMessageW(window_, StopListening, 0, 0);
        thread_.join();
    }

private:
    void Listen(std::promise<HWND>& made) {
        WNDCLASSW kind{};
        kind.lpfnWndProc = WindowProcedure;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.lpszClassName = ClassName;
        RegisterClassW(&kind);
        // A window that only takes messages would not be told.
        const HWND window = CreateWindowExW(0, ClassName, L"Tallyhorn Listener Console", WS_POPUP, 0, 0, 0, 0,
                                            nullptr, nullptr, kind.hInstance, nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        made.set_value(window);
        MSG message{};
        while (window != nullptr && GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
    }

    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const self = reinterpret_cast<SessionEnd*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_ENDSESSION && wParam != 0 && self != nullptr)
            self->End(window);
        else if (message == StopListening)
            DestroyWindow(window);
        else if (message == WM_DESTROY)
            PostQuitMessage(0);
        else if (message != WM_CLOSE)
            return DefWindowProcW(window, message, wParam, lParam);
        return 0;
    }

    /// The reason keeps the system from ending what takes its time, and is shown to the user.
    void End(HWND window) {
        ShutdownBlockReasonCreate(window, L"Saving messages");
        ended_();
        isDone_.wait();
        ShutdownBlockReasonDestroy(window);
    }

    std::function<void()> ended_;
    std::promise<void> done_;  ///< kept once the program is through
    std::future<void> isDone_;
    HWND window_ = nullptr;
    std::thread thread_;
};

}  // namespace

std::unique_ptr<TerminationSignals> MakeTerminationSignals() {
    return std::make_unique<SessionEnd>();
}

}  // namespace tallyhorn
