#include "storage/Journal.h"

namespace tallyhorn {
namespace {

constexpr std::size_t MostSnapshotPending = std::size_t{4} << 20U;
constexpr std::chrono::milliseconds WorkLength{4};
constexpr std::chrono::seconds AttemptInterval{10};
constexpr std::chrono::seconds LongestSync{10};
constexpr std::chrono::seconds LongestSnapshot{60};
/// The clock is read only after so many slots of a snapshot.
constexpr int SlotsPerLook = 4;

using Type = JournalRecord::Type;

/// Returns a number for the first arrival that earlier runs have not used, because the journal may still hold
/// their arrivals: the time at which the console started, in units of 64 nanoseconds.
std::uint64_t FirstArrival(const Clock& clock) {
    constexpr std::uint64_t NanosecondsPerUnit = 64;
    constexpr std::uint64_t UnitsPerSecond = 1'000'000'000 / NanosecondsPerUnit;
    const std::chrono::nanoseconds within = clock.Now().time_since_epoch() % std::chrono::seconds(1);
    return static_cast<std::uint64_t>(clock.LocalSeconds()) * UnitsPerSecond +
           static_cast<std::uint64_t>(within.count()) / NanosecondsPerUnit;
}

std::uint64_t FrameBytes(const JournalRecord& record) {
    return JournalFrameOverhead + EncodedSize(record);
}

}  // namespace

Journal::Journal(JournalWriter& writer, ReceivedMessages& received, const Clock& clock,
                 std::uint64_t largeJournal)
    : writer_(writer),
      received_(received),
      clock_(clock),
      largeJournal_(largeJournal),
      hooks_{Hook(*this, Channel::NetBios), Hook(*this, Channel::Syslog)},
      firstArrival_(FirstArrival(clock)),
      nextArrival_(firstArrival_) {
    for (std::size_t channel = 0; channel < ChannelCount; ++channel)
        received_.In(static_cast<Channel>(channel)).Messages.SetObserver(&hooks_.at(channel));
}

Journal::~Journal() {
    for (std::size_t channel = 0; channel < ChannelCount; ++channel)
        received_.In(static_cast<Channel>(channel)).Messages.SetObserver(nullptr);
}

void Journal::Begin(std::uint64_t backupHash) {
    const std::string header = EncodeHeader({.Complete = false, .BackupHash = backupHash});
    Open(backupHash, 0);
    bytes_ = header.size();
    writer_.Append(header);
    RecordHeld(0);
}

void Journal::Continue(std::uint64_t backupHash, std::uint64_t kept) {
    Open(backupHash, kept);
    RecordHeld(firstArrival_);
}

void Journal::Open(std::uint64_t backupHash, std::uint64_t kept) {
    backupHash_ = backupHash;
    bytes_ = kept;
    recording_ = true;
    writer_.Open(kept);
}

/// Records the waiting arrivals with the number `first` and above.
void Journal::RecordHeld(std::uint64_t first) {
    for (std::size_t channel = 0; channel < ChannelCount; ++channel) {
        for (auto held = held_.at(channel).lower_bound(first); held != held_.at(channel).end(); ++held)
            Record({.Kind = Type::ArrivalHeld,
                    .From = static_cast<Channel>(channel),
                    .Sequence = held->first,
                    .Text = held->second});
    }
}

// ---- changes

void Journal::Keep(Channel channel, Slot slot, const std::string& text) {
    const JournalRecord record{.From = channel, .Place = slot, .Sequence = nextSequence_++, .Text = text};
    SequenceOf(channel, slot) = record.Sequence;
    liveBytes_.at(static_cast<std::size_t>(channel)) += FrameBytes(record);
    Record(record);
}

void Journal::Free(Channel channel, Slot slot, const std::string& text) {
    liveBytes_.at(static_cast<std::size_t>(channel)) -= FrameBytes({.Text = text});
    Record({.Kind = Type::Freed, .From = channel, .Place = slot});
}

void Journal::Clear(Channel channel) {
    liveBytes_.at(static_cast<std::size_t>(channel)) = 0;
    sequences_.at(static_cast<std::size_t>(channel)).Clear();
    Record({.Kind = Type::Cleared, .From = channel});
}

void Journal::Record(const JournalRecord& record) {
    if (!recording_)
        return;
    if (!handling_)
        BeginFrame(frame_);
    EncodeRecord(record, frame_);
    if (!handling_)
        WriteFrame();
}

/// Writes the frame that contains the records since the most recent BeginFrame.
void Journal::WriteFrame() {
    EndFrame(frame_);
    writer_.Append(frame_);
    bytes_ += frame_.size();
    if (snapshot_ && !snapshot_->Requested) {
        writer_.AppendNew(frame_);
        snapshotBytes_ += frame_.size();
    }
}

std::uint64_t Journal::Hold(Channel channel, std::string_view text) {
    const std::uint64_t number = nextArrival_++;
    held_.at(static_cast<std::size_t>(channel)).emplace(number, text);
    heldBytes_ += text.size();
    Record({.Kind = Type::ArrivalHeld, .From = channel, .Sequence = number, .Text = text});
    return number;
}

void Journal::TakeOver(Channel channel, const std::vector<HeldArrival>& arrivals) {
    for (const HeldArrival& arrival : arrivals) {
        held_.at(static_cast<std::size_t>(channel)).emplace(arrival.Number, arrival.Text);
        heldBytes_ += arrival.Text.size();
    }
}

void Journal::BeginHandling(Channel channel, std::uint64_t number) {
    auto& held = held_.at(static_cast<std::size_t>(channel));
    if (const auto found = held.find(number); found != held.end()) {
        heldBytes_ -= found->second.size();
        held.erase(found);
    }
    handling_ = true;
    BeginFrame(frame_);
    Record({.Kind = Type::ArrivalHandled, .From = channel, .Sequence = number});
}

void Journal::EndHandling() {
    handling_ = false;
    if (recording_)
        WriteFrame();
}

std::uint64_t& Journal::SequenceOf(Channel channel, Slot slot) {
    ChunkedArray<std::uint64_t>& numbers = sequences_.at(static_cast<std::size_t>(channel));
    const auto index = static_cast<std::size_t>(slot);
    numbers.GrowTo(index + 1);
    return numbers[index];
}

std::uint64_t Journal::LiveBytes() const {
    std::uint64_t sum = heldBytes_;
    for (const std::uint64_t bytes : liveBytes_)
        sum += bytes;
    return sum;
}

// ---- snapshots

void Journal::Work() {
    if (!recording_)
        return;
    const Clock::TimePoint now = clock_.Now();
    const JournalWriter::State state = writer_.CurrentState();
    if (snapshot_) {
        if (snapshot_->Requested || state.NewFailed)
            EndSnapshot(state);
        else if (state.Pending < MostSnapshotPending)
            AdvanceSnapshot(now + WorkLength);
        return;
    }
    const bool tooLarge = bytes_ > largeJournal_ && bytes_ > 2 * LiveBytes();
    if ((state.Failed || tooLarge) && now >= nextAttempt_)
        BeginSnapshot();
}

void Journal::BeginSnapshot() {
    const std::string header = EncodeHeader({.Complete = true, .BackupHash = backupHash_});
    nextAttempt_ = clock_.Now() + AttemptInterval;
    snapshotBytes_ = header.size();
    snapshot_ = Snapshot{.CommittedBefore = writer_.CurrentState().Committed};
    writer_.BeginNew(header);
    for (std::size_t channel = 0; channel < ChannelCount; ++channel) {
        for (const auto& [number, text] : held_.at(channel))
            WriteToSnapshot({.Kind = Type::ArrivalHeld,
                             .From = static_cast<Channel>(channel),
                             .Sequence = number,
                             .Text = text});
    }
}

/// Writes messages to the snapshot until `end`; requests its commit after the last one.
void Journal::AdvanceSnapshot(Clock::TimePoint end) {
    do {
        for (int i = 0; i < SlotsPerLook; ++i) {
            if (SnapshotNextMessage())
                continue;
            writer_.CommitNew();
            snapshot_->Requested = true;
            bytes_ = snapshotBytes_;
            return;
        }
    } while (clock_.Now() < end);
}

/// Writes the message in the next slot, if there is one, and goes on to the slot after it.  Returns false
/// after the last slot of the last channel.
bool Journal::SnapshotNextMessage() {
    if (snapshot_->From == ChannelCount)
        return false;
    const auto channel = static_cast<Channel>(snapshot_->From);
    const MessageStore& messages = received_.In(channel).Messages;
    if (snapshot_->Next >= static_cast<Slot>(sequences_.at(snapshot_->From).Size())) {
        ++snapshot_->From;
        snapshot_->Next = 0;
        return true;
    }
    const Slot slot = snapshot_->Next++;
    const std::string& text = messages.Text(slot);
    if (text.empty())
        return true;
    WriteToSnapshot({.From = channel, .Place = slot, .Sequence = SequenceOf(channel, slot), .Text = text});
    return true;
}

void Journal::WriteToSnapshot(const JournalRecord& record) {
    BeginFrame(snapshotFrame_);
    EncodeRecord(record, snapshotFrame_);
    EndFrame(snapshotFrame_);
    writer_.AppendNew(snapshotFrame_);
    snapshotBytes_ += snapshotFrame_.size();
}

void Journal::EndSnapshot(const JournalWriter::State& state) {
    if (state.NewFailed || state.Committed != snapshot_->CommittedBefore)
        snapshot_.reset();
}

bool Journal::WriteSnapshot(std::uint64_t backupHash) {
    backupHash_ = backupHash;
    recording_ = true;
    BeginSnapshot();
    const std::uint32_t before = snapshot_->CommittedBefore;
    while (!snapshot_->Requested && !writer_.CurrentState().NewFailed) {
        AdvanceSnapshot(clock_.Now() + WorkLength);
        if (writer_.CurrentState().Pending >= MostSnapshotPending && !writer_.Flush(LongestSync))
            break;
    }
    const bool done = snapshot_->Requested && writer_.Flush(LongestSnapshot);
    snapshot_.reset();
    return done && writer_.CurrentState().Committed != before;
}

// ---- the save of the backup file

void Journal::NoteSaving(std::uint64_t hash) {
    Record({.Kind = Type::Saving, .Hash = hash});
    writer_.Flush(LongestSync);
}

void Journal::Remove() {
    recording_ = false;
    snapshot_.reset();
    writer_.Remove();
    writer_.Flush(LongestSync);
}

}  // namespace tallyhorn
