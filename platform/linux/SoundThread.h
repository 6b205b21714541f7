#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace tallyhorn {

/// Plays one file at a time through the sound server in a thread of its own, since a server that hangs keeps
/// whoever asks it for half a minute.  Any thread may call it; what was wanted last counts, and no wish waits
/// behind another.
class SoundThread {
public:
    /// Runs until `End`, and keeps itself until then.
    static std::shared_ptr<SoundThread> Start();

    /// Plays the file from its start in place of what is playing; silence where the path is empty.
    void Want(const std::filesystem::path& file);
    /// Ends the thread, and waits for that for half a second: where the server hangs it is left to the end of
    /// the process.
    void End();

private:
    void Run();
    void Play(const std::filesystem::path& file);
    /// Waits so long for another wish; false where none comes.
    bool IsInterrupted(std::chrono::milliseconds time);

    std::mutex mutex_;  ///< guards what follows
    std::condition_variable changed_;
    std::optional<std::filesystem::path> wanted_;  ///< until the thread takes it
    bool ending_ = false;
    bool ended_ = false;
};

}  // namespace tallyhorn
