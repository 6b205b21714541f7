#include <windows.h>

#include <array>
#include <vector>

#include "platform/DatagramQueue.h"
#include "platform/MailslotTransport.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

/// Owns the mailslot and the texts that it has taken out of it.  They are taken whenever somebody asks how
/// many wait, and counted here: a count that holds on every system, and a sender that finds room again.
/// Called from the user-interface thread.
class WindowsMailslotServer final : public MailslotServer {
public:
    WindowsMailslotServer(HANDLE handle, std::size_t maximumSize)
        : handle_(handle), maximumSize_(maximumSize), buffer_(maximumSize) {}

    std::int32_t Handle() const override { return handle_.Number(); }

    bool GetInfo(MailslotInfo& info) override {
        if (!TakeAll())
            return false;
        info = {.MaximumSize = maximumSize_, .NextSize = queue_.NextSize(), .Waiting = queue_.Count()};
        return true;
    }

    bool Read(std::span<char> buffer, std::size_t& read) override { return queue_.Read(buffer, read); }

private:
    /// More than a reader counts at once.  Without an end, a sender that keeps pace would hold the reader
    /// here.
    static constexpr std::size_t TakenAhead = 40'000;

    /// Moves what the system holds into the queue, as far as that goes; false where the mailslot does not
    /// answer.
    bool TakeAll() {
        while (queue_.Count() < TakenAhead && queue_.HasRoom()) {
            DWORD next = MAILSLOT_NO_MESSAGE;
            if (!GetMailslotInfo(handle_.Get(), nullptr, &next, nullptr, nullptr))
                return false;
            if (next == MAILSLOT_NO_MESSAGE)
                return true;
            if (!TakeOne(next))
                return false;
        }
        return true;
    }

    /// `size` is at most the mailslot's own: longer texts are refused to the sender (and cut by Wine).
    bool TakeOne(DWORD size) {
        DWORD read = 0;
        const BOOL done =
            ReadFile(handle_.Get(), buffer_.data(), static_cast<DWORD>(buffer_.size()), &read, nullptr);
        // Wine's answer to a text of no bytes, which it has then taken.
        if (!done && (size != 0 || GetLastError() != ERROR_BROKEN_PIPE))
            return false;
        const std::array<std::string_view, 1> text{std::string_view(buffer_.data(), read)};
        queue_.Append(text);
        return true;
    }

    const OwnedHandle handle_;
    const std::size_t maximumSize_;
    std::vector<char> buffer_;
    DatagramQueue queue_;
};

/// Owns one connection to a mailslot; the system itself refuses what is too long for it.
/// Any one thread may call it.
class WindowsMailslotClient final : public MailslotClient {
public:
    explicit WindowsMailslotClient(HANDLE handle) : handle_(handle) {}

    std::int32_t Handle() const override { return handle_.Number(); }

    bool Write(std::string_view text) override {
        DWORD written = 0;
        return WriteFile(handle_.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
               written == text.size();
    }

private:
    const OwnedHandle handle_;
};

/// The system's own mailslots; owns nothing.
/// Any one thread may call it.
class WindowsMailslotTransport final : public MailslotTransport {
public:
    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override {
        if (!MailslotNameFromPath(path) || maximumSize == 0 || maximumSize > LargestSize)
            return nullptr;
        HANDLE handle = CreateMailslotA(std::string(path).c_str(), static_cast<DWORD>(maximumSize),
                                        MAILSLOT_WAIT_FOREVER, nullptr);
        if (handle == INVALID_HANDLE_VALUE)
            return nullptr;
        return std::make_unique<WindowsMailslotServer>(handle, maximumSize);
    }

    std::unique_ptr<MailslotClient> Open(std::string_view path) override {
        // Without the check any file that can be written would do.
        if (!MailslotNameFromPath(path))
            return nullptr;
        HANDLE handle = CreateFileA(std::string(path).c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
        if (handle == INVALID_HANDLE_VALUE)
            return nullptr;
        return std::make_unique<WindowsMailslotClient>(handle);
    }
};

}  // namespace

std::unique_ptr<MailslotTransport> MakeMailslotTransport(const std::string& /*folder*/) {
    return std::make_unique<WindowsMailslotTransport>();
}

}  // namespace tallyhorn
