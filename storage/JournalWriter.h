#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>
#include <thread>

#include "platform/Files.h"

namespace tallyhorn {

/// Writes the journal's file on threads of its own, so that a slow disk never blocks the caller: a writer
/// thread hands the bytes to the system every 20 ms, and a sync thread calls AppendFile::Sync at most once a
/// second.  The sync needs its own thread because a disk can take longer for it than the 100 ms after which a
/// message must survive the end of the process.
///
/// Until Start is called there are no threads, and only Deliver, Sync and Flush touch the disk.
///
/// A new journal is written beside the old one and then takes its place:
///
///     writer.BeginNew(header);
///     writer.AppendNew(frames);   // several times; changes meanwhile are appended to both
///     writer.CommitNew();
class JournalWriter {
public:
    /// The most bytes that wait to be written.  If the disk is so slow that more would wait, the journal
    /// counts as failed.
    static constexpr std::size_t MostPending = std::size_t{64} << 20U;

    JournalWriter(std::shared_ptr<Files> files, const std::filesystem::path& file);
    /// Writes what is pending.  A disk that does not answer within five seconds is left to the system; the
    /// writer's threads then end with the process.
    ~JournalWriter();
    JournalWriter(const JournalWriter&) = delete;
    JournalWriter& operator=(const JournalWriter&) = delete;

    void Start();

    /// Requests that the first `kept` bytes of the file stay and later bytes follow them.
    void Open(std::uint64_t kept);
    void Append(std::string_view bytes);
    /// Requests a new file beside the present one, and ends an earlier one that was not committed.
    void BeginNew(std::string_view header);
    void AppendNew(std::string_view bytes);
    /// Requests that the new file, once on the disk, replaces the present one.  Bytes that are appended
    /// afterwards go to the new file.
    void CommitNew();
    /// Requests that the present file is removed.  Nothing is written until Open or CommitNew is called.
    void Remove();

    struct State {
        /// Whether bytes of the present file were lost.  Only a committed new file ends this state.
        bool Failed = false;
        bool NewFailed = false;       ///< whether the most recent new file could not be written
        std::uint32_t Committed = 0;  ///< the number of new files that have replaced the present one
        std::size_t Pending = 0;      ///< the number of bytes that wait to be written
    };
    State CurrentState() const;

    /// Waits until everything requested so far is done and on the disk, at most for `longest`.  Returns
    /// whether it is.
    bool Flush(std::chrono::milliseconds longest);

    /// Does everything requested so far, on the calling thread.  For tests, instead of Start.
    void Deliver();
    /// Syncs the present file if it has new bytes, on the calling thread.  For tests, instead of Start.
    void Sync();

private:
    class Shared;

    const std::shared_ptr<Shared> shared_;
    std::thread writing_;
    std::thread syncing_;
};

}  // namespace tallyhorn
