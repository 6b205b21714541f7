#include <windows.h>

#include <array>
#include <vector>

#include "platform/DatagramQueue.h"
#include "platform/MailslotTransport.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

/// Owns the mailslot and a queue of the texts taken out of it.  GetInfo moves the waiting texts to the queue,
/// so that senders have room, and counts them there, since not every system counts the texts in a mailslot
/// correctly.
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
    /// The limit of texts in the queue.  It is higher than the number that a reader handles at once.  Without
    /// a limit, GetInfo would not return while a fast sender sends.
    static constexpr std::size_t TakenAhead = 40'000;

    /// Moves waiting texts to the queue, up to TakenAhead.  Returns false if the mailslot cannot be queried
    /// or read.
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

    /// Moves one text of `size` bytes to the queue.  No text is longer than the mailslot's maximum: on
    /// Windows, writing a longer one fails, and Wine cuts it.
    bool TakeOne(DWORD size) {
        DWORD read = 0;
        const BOOL done =
            ReadFile(handle_.Get(), buffer_.data(), static_cast<DWORD>(buffer_.size()), &read, nullptr);
        // Wine reads an empty text but reports ERROR_BROKEN_PIPE.
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

/// Owns the handle that writes to one mailslot.  Windows itself refuses texts that are longer than the
/// mailslot's maximum.
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
        // Without this check, CreateFile would open any writable file.
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
