#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "storage/JournalFormat.h"
#include "storage/JournalWriter.h"
#include "views/messages/ArrivalJournal.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/ReceivedMessages.h"

namespace tallyhorn {

/// Records each change of both message stores in the journal, so that a crash loses at most what was kept in
/// the last 100 ms.  Keeps the journal small: when it is larger than 16 MiB and than twice the messages that
/// it restores, a snapshot of these messages takes its place.
///
/// Example: two notifications arrive, the first is deleted.  The journal then contains
///
///     Kept syslog 0 (sequence 0) "Date: ...", Kept syslog 1 (sequence 1) "Date: ...", Freed syslog 0
///
/// The objects that the constructor takes must outlive the journal.
class Journal final : public ArrivalJournal {
public:
    static constexpr std::uint64_t DefaultLargeJournal = std::uint64_t{16} << 20U;

    Journal(JournalWriter& writer, ReceivedMessages& received, const Clock& clock,
            std::uint64_t largeJournal = DefaultLargeJournal);
    ~Journal() override;
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Sets the number of the next message.  Until Begin or Continue is called, messages are only numbered.
    void SetSequence(std::uint64_t next) { nextSequence_ = next; }
    /// Starts an empty journal, which holds what arrived before the call, of the changes to the backup file
    /// with this hash.
    void Begin(std::uint64_t backupHash);
    /// Continues a journal after its first `kept` bytes.
    void Continue(std::uint64_t backupHash, std::uint64_t kept);

    /// Takes over arrivals that an earlier journal holds.
    void TakeOver(Channel channel, const std::vector<HeldArrival>& arrivals);

    std::uint64_t Hold(Channel channel, std::string_view text) override;
    void BeginHandling(Channel channel, std::uint64_t number) override;
    void EndHandling() override;

    /// Does a few milliseconds of outstanding work: advances a snapshot, begins one if the journal has become
    /// too large, or tries again, every ten seconds, if the journal could not be written.  To be called about
    /// ten times a second.
    void Work();
    /// Returns whether messages that are kept now survive a crash.
    bool IsProtected() const { return !writer_.CurrentState().Failed; }

    /// Records that a backup file with this hash is about to replace the old one, and waits until the disk
    /// has the record.
    void NoteSaving(std::uint64_t hash);
    /// Replaces the journal by a snapshot at once.  Returns false if that fails.
    bool WriteSnapshot(std::uint64_t backupHash);
    /// Removes the journal's file, because the backup file contains all that is to be restored.  Changes are
    /// not recorded any more.
    void Remove();

private:
    class Hook final : public StoreObserver {
    public:
        Hook(Journal& journal, Channel channel) : journal_(journal), channel_(channel) {}
        void OnKept(Slot slot, const std::string& text) override { journal_.Keep(channel_, slot, text); }
        void OnFreed(Slot slot, const std::string& text) override { journal_.Free(channel_, slot, text); }
        void OnCleared() override { journal_.Clear(channel_); }

    private:
        Journal& journal_;
        const Channel channel_;
    };

    /// The next message of a snapshot that is being written.
    struct Snapshot {
        std::size_t From = 0;  ///< the channel of the next message
        Slot Next = 0;
        bool Requested = false;  ///< whether all messages are written and the commit is requested
        std::uint32_t CommittedBefore = 0;
    };

    void Keep(Channel channel, Slot slot, const std::string& text);
    void Free(Channel channel, Slot slot, const std::string& text);
    void Clear(Channel channel);
    void Open(std::uint64_t backupHash, std::uint64_t kept);
    void RecordHeld(std::uint64_t first);
    void Record(const JournalRecord& record);
    void WriteFrame();
    void WriteToSnapshot(const JournalRecord& record);
    std::uint64_t& SequenceOf(Channel channel, Slot slot);
    std::uint64_t LiveBytes() const;
    void BeginSnapshot();
    void AdvanceSnapshot(Clock::TimePoint end);
    void EndSnapshot(const JournalWriter::State& state);
    bool SnapshotNextMessage();

    JournalWriter& writer_;
    ReceivedMessages& received_;
    const Clock& clock_;
    const std::uint64_t largeJournal_;
    std::array<Hook, ChannelCount> hooks_;
    std::array<ChunkedArray<std::uint64_t>, ChannelCount> sequences_;  ///< indexed by channel and slot
    std::array<std::uint64_t, ChannelCount> liveBytes_{};              ///< each channel's bytes in a snapshot
    std::array<std::map<std::uint64_t, std::string>, ChannelCount> held_;  ///< the waiting arrivals
    std::uint64_t heldBytes_ = 0;       ///< the sum of the sizes of the waiting arrivals
    const std::uint64_t firstArrival_;  ///< the number of the first arrival of this run
    std::uint64_t nextArrival_;
    std::uint64_t nextSequence_ = 0;
    std::uint64_t backupHash_ = 0;
    std::uint64_t bytes_ = 0;          ///< the size of the journal
    std::uint64_t snapshotBytes_ = 0;  ///< the size of the snapshot that is being written
    bool recording_ = false;
    std::optional<Snapshot> snapshot_;
    Clock::TimePoint nextAttempt_;  ///< when a failed snapshot is tried again
    std::string frame_;             ///< the frame of the most recent record
    std::string snapshotFrame_;
    bool handling_ = false;  ///< whether records are collected in `frame_` until EndHandling
};

}  // namespace tallyhorn
