#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace tallyhorn {

/// Plays one file at a time through the sound server, in its own thread, since a call to a server that hangs
/// blocks for half a minute.  A new request replaces the previous one.  Any thread may call all functions.
class SoundThread {
public:
    /// Creates the object and starts its thread, which shares the ownership of the object until the thread
    /// ends.
    static std::shared_ptr<SoundThread> Start();

    /// Stops the current sound and plays the file from its start, or nothing if the path is empty.
    void Want(const std::filesystem::path& file);
    /// Asks the thread to end and waits up to half a second for it.  If the server hangs, the thread runs on
    /// until the process ends.
    void End();

private:
    void Run();
    void Play(const std::filesystem::path& file);
    /// Waits up to `time` for another request or End, and returns whether there was one.
    bool IsInterrupted(std::chrono::milliseconds time);

    std::mutex mutex_;  ///< guards all members below
    std::condition_variable changed_;
    std::optional<std::filesystem::path> wanted_;  ///< the request that the thread has not yet taken, if any
    bool ending_ = false;
    bool ended_ = false;
};

}  // namespace tallyhorn
