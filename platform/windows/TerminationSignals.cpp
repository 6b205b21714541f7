#include "platform/TerminationSignals.h"

#include <windows.h>

#include <future>
#include <thread>
#include <utility>

#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

constexpr const wchar_t* ClassName = L"TallyhornSessionEnd";
/// The message that ends the thread.  WM_CLOSE is not used for that, since programs such as taskkill send it
/// to every window, and the user may then choose to keep the console open.
constexpr UINT StopListening = WM_APP;

/// Owns a hidden window, and a thread for it, that receives WM_ENDSESSION.  Windows ends the process when all
/// its windows have handled that message; this window finishes handling it only when Stop is called.
class SessionEnd final : public TerminationSignals {
public:
    SessionEnd() = default;
    ~SessionEnd() override { SessionEnd::Stop(); }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    void Start(std::function<void()> ended) override {
        Stop();
        ended_ = std::move(ended);
        ResetEvent(done_.Get());
        std::promise<HWND> made;
        std::future<HWND> window = made.get_future();
        thread_ = std::thread([this, &made] { Listen(made); });
        window_ = window.get();
    }

    void Stop() override {
        if (!thread_.joinable())
            return;
        SetEvent(done_.Get());
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
        // Not a message-only window (HWND_MESSAGE): those do not receive WM_ENDSESSION.
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
        if (message == WM_QUERYENDSESSION)
            return AskForTime(window);
        if (message == WM_ENDSESSION && wParam != 0 && self != nullptr)
            self->End();
        else if (message == WM_ENDSESSION)
            ShutdownBlockReasonDestroy(window);
        else if (message == StopListening)
            DestroyWindow(window);
        else if (message == WM_DESTROY)
            PostQuitMessage(0);
        else if (message != WM_CLOSE)
            return DefWindowProcW(window, message, wParam, lParam);
        return 0;
    }

    /// Agrees to the end of the session.  While there is a block reason, which Windows shows to the user,
    /// Windows waits instead of ending the process.
    static LRESULT AskForTime(HWND window) {
        ShutdownBlockReasonCreate(window, L"Saving messages");
        return TRUE;
    }

    /// Calls `ended_` and waits for Stop.  Meanwhile handles sent messages; otherwise any program, including
    /// this one, that sends a message to all windows would hang.
    void End() {
        ended_();
        const HANDLE done = done_.Get();
        MSG message{};
        while (MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_SENDMESSAGE) == WAIT_OBJECT_0 + 1)
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }

    std::function<void()> ended_;
    const OwnedHandle done_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};  ///< set by Stop
    HWND window_ = nullptr;
    std::thread thread_;
};

}  // namespace

std::unique_ptr<TerminationSignals> MakeTerminationSignals() {
    return std::make_unique<SessionEnd>();
}

}  // namespace tallyhorn
