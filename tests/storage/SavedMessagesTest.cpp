#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "storage/SavedMessages.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/Notifications.h"

namespace tallyhorn {
namespace {

using Fault = MemoryFiles::Fault;

/// A message as the user sees it: channel, slot and text.
using Shown = std::tuple<Channel, Slot, std::string>;

/// Small, so that the journal of a test is replaced by snapshots.
constexpr std::uint64_t LargeJournal = 1500;

/// What a console holds: its messages in the order in which they were kept, and the waiting arrivals.
struct Held {
    std::vector<Shown> Messages;
    std::vector<std::string> Arrivals;
    bool operator==(const Held&) const = default;
};

void PrintTo(const Held& held, std::ostream* stream) {
    for (const auto& [channel, slot, text] : held.Messages)
        *stream << (channel == Channel::Syslog ? "syslog " : "mailslot ") << slot << ' '
                << text.substr(text.find("PC"), 6) << '\n';
    *stream << held.Arrivals.size() << " arrivals\n";
}

/// One run of a console without windows.
struct OneRun : MessagesInMemory {
    /// Each run starts a second after the previous one.
    explicit OneRun(std::shared_ptr<MemoryFiles> files)
        : Disk(std::move(files)), Started(Time.Local += ++Starts) {}

    void Load() {
        ASSERT_TRUE(Saved.Load([](auto, auto) {}, [] { return true; }));
        for (const Channel channel : {Channel::NetBios, Channel::Syslog}) {
            for (HeldArrival& arrival : Saved.TakeArrivals(channel))
                Waiting.emplace_back(channel, std::move(arrival));
        }
    }
    void Keep(Channel channel, int number) {
        const Notification notification{.Computer = "PC" + std::to_string(number)};
        if (channel == Channel::Syslog)
            KeepSyslog(RecordOf(notification));
        else
            KeepNetBios(NetBiosText(notification));
    }
    void Hold(Channel channel, int number) {
        const std::string text = std::to_string(number);
        Waiting.emplace_back(channel, HeldArrival{Saved.Arrivals().Hold(channel, text), text});
    }
    void HandleFirst() {
        const auto [channel, arrival] = Waiting.front();
        Waiting.pop_front();
        const HandledArrival handled(Saved.Arrivals(), channel, arrival.Number);
        Keep(channel, std::stoi(arrival.Text));
    }
    /// Deletes the message that was kept first, second and so on among those of the channel.
    void Delete(Channel channel, std::size_t place) {
        MessageChannel& messages = Received.In(channel);
        std::vector<Slot> slots;
        for (const auto& [from, slot, text] : Now().Messages) {
            if (from == channel)
                slots.push_back(slot);
        }
        if (slots.empty())
            return;
        const Slot slot = slots[place % slots.size()];
        if (channel == Channel::Syslog)
            Received.Tree.RemoveLeaves(std::span(&slot, 1));
        for (MessageList& list : messages.Lists)
            list.Remove(std::span(&slot, 1));
        messages.Rows.Remove(slot);
        messages.Messages.Free(slot);
    }
    Held Now() const {
        std::vector<std::pair<std::uint64_t, Shown>> rows;
        for (const Channel id : {Channel::NetBios, Channel::Syslog}) {
            const MessageChannel& channel = Received.In(id);
            std::vector<std::pair<std::uint64_t, Shown>> some;
            for (Slot slot = 0; slot < channel.Rows.SlotBound(); ++slot) {
                if (channel.Rows.Holds(slot))
                    some.emplace_back(channel.Rows[slot].Arrival,
                                      Shown(id, slot, channel.Messages.Text(slot)));
            }
            std::sort(some.begin(), some.end());
            rows.insert(rows.end(), some.begin(), some.end());
        }
        Held held;
        for (auto& [arrival, shown] : rows)
            held.Messages.push_back(shown);
        for (const auto& [channel, arrival] : Waiting)
            held.Arrivals.push_back(arrival.Text);
        std::sort(held.Arrivals.begin(), held.Arrivals.end());
        return held;
    }

    static inline std::int64_t Starts = 0;
    std::shared_ptr<MemoryFiles> Disk;
    const std::int64_t Started;
    std::deque<std::pair<Channel, HeldArrival>> Waiting;
    SavedMessages Saved{Disk, "folder", Context, LargeJournal};
};

/// Returns what a console shows that finds these files at its start.
Held Restored(const std::shared_ptr<MemoryFiles>& files) {
    OneRun run(files);
    run.Load();
    EXPECT_FALSE(run.Saved.FoundDamage());
    EXPECT_EQ(run.Received.Tree.LeafCount(),
              static_cast<std::size_t>(run.Received.Syslog.Messages.MessageCount()));
    return run.Now();
}

/// Returns what remains after a normal end: the syslog messages in the order of their slots.
Held AfterNormalEnd(const Held& held) {
    std::vector<std::pair<Slot, std::string>> kept;
    for (const auto& [channel, slot, text] : held.Messages) {
        if (channel == Channel::Syslog)
            kept.emplace_back(slot, text);
    }
    std::sort(kept.begin(), kept.end());
    Held after;
    for (const auto& [slot, text] : kept)
        after.Messages.emplace_back(Channel::Syslog, static_cast<Slot>(after.Messages.size()), text);
    return after;
}

/// A story of two runs of a console.  The first ends normally.  The second keeps, deletes, clears and holds,
/// writes a snapshot in the middle, and saves at its end.
class Story {
public:
    explicit Story(unsigned seed) : random_(seed) {}

    /// Tells the story until it ends or the fault ends it, and checks what the next start restores.
    void Tell(Fault kind, int failsAt, int fullFor = 1) {
        auto files = std::make_shared<MemoryFiles>();
        {
            OneRun first(files);
            first.Load();
            for (int i = 0; i < 5; ++i)
                first.Keep(Channel::Syslog, ++number_);
            first.Delete(Channel::Syslog, 1);
            first.Saved.Save();
        }
        files->Kind = kind;
        files->FailsAt = files->Operations + failsAt;
        files->FullFor = fullFor;
        const int before = files->Operations;
        OneRun run(files);
        run.Time.PerLook = std::chrono::milliseconds(5);
        run.Load();
        Note(run);
        // After a full disk, some runs are killed instead of saving.
        const int steps = kind == Fault::DiskFull && failsAt % 2 == 0 ? Steps / 2 + failsAt % 10 : Steps;
        for (int step = 0; step < steps && !files->HasStopped(); ++step)
            Step(run, step);
        const bool saves = !files->HasStopped() && steps == Steps;
        if (saves) {
            while (!run.Waiting.empty()) {
                run.HandleFirst();
                Note(run);
            }
            run.Saved.Save();
        }
        Operations = files->Operations - before;
        const Held ended = AfterNormalEnd(states_.back());
        if (kind == Fault::None) {
            EXPECT_EQ(Restored(files->AfterPowerFailure(0)), ended);
            EXPECT_EQ(files->Count(), 1U) << "only the backup file remains";
            return;
        }
        Expect(files->AfterCrash(), delivered_, saves ? &ended : nullptr);
        for (const double unsynced : {0.0, 0.3, 1.0})
            Expect(files->AfterPowerFailure(unsynced), synced_, saves ? &ended : nullptr);
    }

    int Operations = 0;  ///< the number of operations of the second run

private:
    static constexpr int Steps = 60;

    void Step(OneRun& run, int step) {
        const Channel channel = random_() % 3 == 0 ? Channel::NetBios : Channel::Syslog;
        switch (random_() % 10) {
            case 0:
            case 4:
            case 5:
            case 6:
                run.Delete(channel, random_());
                break;
            case 1:
                run.Hold(channel, ++number_);
                break;
            case 2:
                if (!run.Waiting.empty())
                    run.HandleFirst();
                break;
            default:
                run.Keep(channel, ++number_);
        }
        if (step == Steps / 3 || step == Steps / 2)
            run.Received.Clear(step == Steps / 3 ? run.Received.NetBios : run.Received.Syslog);
        Note(run);
        run.Time.Advance(std::chrono::seconds(1));
        run.Saved.Work();
        if (random_() % 2 == 0) {
            run.Saved.Writer().Deliver();
            if (IsProtected(run))
                delivered_ = states_.size() - 1;
        }
        if (random_() % 5 == 0) {
            run.Saved.Writer().Sync();
            if (IsProtected(run))
                synced_ = delivered_;
        }
    }

    static bool IsProtected(const OneRun& run) { return run.Saved.IsProtected() && !run.Disk->HasStopped(); }
    void Note(const OneRun& run) { states_.push_back(run.Now()); }

    /// Expects that the files restore a state that is not older than `oldest`, or `ended`.
    void Expect(const std::shared_ptr<MemoryFiles>& files, std::size_t oldest, const Held* ended) {
        const Held restored = Restored(files);
        const auto first = states_.begin() + static_cast<std::ptrdiff_t>(oldest);
        const bool known = std::find(first, states_.end(), restored) != states_.end();
        EXPECT_TRUE(known || (ended != nullptr && restored == *ended))
            << "restored " << ::testing::PrintToString(restored) << "of "
            << ::testing::PrintToString(states_.back());
        // The next start finds the same again and what was kept since.
        OneRun next(files->AfterCrash());
        next.Load();
        EXPECT_FALSE(next.Saved.FoundDamage());
        for (int i = 0; i < 3; ++i)
            next.Keep(i % 2 == 0 ? Channel::Syslog : Channel::NetBios, 1000 + i);
        next.Saved.Writer().Deliver();
        const Held more = next.Now();
        EXPECT_EQ(more.Messages.size(), restored.Messages.size() + 3);
        EXPECT_EQ(Restored(next.Disk->AfterCrash()), more);
    }

    std::mt19937 random_;
    int number_ = 0;
    std::vector<Held> states_;   ///< after each change of the second run
    std::size_t delivered_ = 0;  ///< the index of the last state that the system has
    std::size_t synced_ = 0;     ///< the index of the last state that the disk has
};

TEST(SavedMessages, SurviveAFaultAtAnyOperation) {
    for (const unsigned seed : {3U}) {
        Story whole(seed);
        whole.Tell(Fault::None, 0);
        ASSERT_GT(whole.Operations, 20);
        for (const Fault kind : {Fault::StopBefore, Fault::StopAfter, Fault::StopWithin, Fault::DiskFull}) {
            for (int operation = 0; operation < whole.Operations; ++operation) {
                SCOPED_TRACE("seed " + std::to_string(seed) + ", fault " +
                             std::to_string(static_cast<int>(kind)) + " at operation " +
                             std::to_string(operation));
                Story(seed).Tell(kind, operation, operation % 7 + 1);
                if (::testing::Test::HasFailure())
                    return;
            }
        }
    }
}

/// A console that was killed while it held messages of both channels, some of them from the backup file, and
/// an arrival.
struct Killed {
    Killed() {
        {
            OneRun first(Disk);
            first.Load();
            for (int i = 1; i <= 3; ++i)
                first.Keep(Channel::Syslog, i);
            first.Saved.Save();
        }
        OneRun run(Disk);
        run.Load();
        run.Delete(Channel::Syslog, 0);
        for (int i = 4; i <= 8; ++i)
            run.Keep(i % 2 == 0 ? Channel::Syslog : Channel::NetBios, i);
        run.Hold(Channel::Syslog, 9);
        run.Saved.Writer().Deliver();
        Before = run.Now();
    }

    std::shared_ptr<MemoryFiles> Disk = std::make_shared<MemoryFiles>();
    Held Before;
};

TEST(SavedMessages, AreAllThereAfterAMissingBackupAtTheSave) {
    Killed killed;
    {
        OneRun run(killed.Disk);
        run.Load();
        killed.Disk->Remove("folder/Backup.dat");
        run.Saved.Save();
        EXPECT_EQ(run.Boxes.Shown.size(), 1U);
    }
    EXPECT_EQ(Restored(killed.Disk), killed.Before);
}

TEST(SavedMessages, StayInTheFilesIfTheLoadEndsEarly) {
    for (int allowed = 0; allowed < 12; ++allowed) {
        Killed killed;
        {
            OneRun run(killed.Disk);
            int asked = 0;
            run.Saved.Load([](auto, auto) {}, [&] { return ++asked <= allowed; });
            run.Saved.Arrivals().Hold(Channel::NetBios, "99");
            run.Saved.Writer().Deliver();
        }
        OneRun next(killed.Disk);
        next.Load();
        const Held held = next.Now();
        EXPECT_EQ(held.Messages, killed.Before.Messages) << allowed;
        EXPECT_EQ(held.Arrivals, (std::vector<std::string>{"9", "99"})) << allowed;
    }
}

TEST(SavedMessages, FollowThoseOfAnotherBackupFile) {
    Killed killed;
    auto other = std::make_shared<MemoryFiles>();
    {
        OneRun run(other);
        run.Load();
        run.Keep(Channel::Syslog, 77);
        run.Saved.Save();
    }
    killed.Disk->Put("folder/Backup.dat", *other->Bytes("folder/Backup.dat"));
    const Held held = Restored(killed.Disk);
    ASSERT_EQ(held.Messages.size(), 6U)
        << "two by mailslot, one of the other file, three kept since the start";
    EXPECT_NE(std::get<std::string>(held.Messages[2]).find("PC77"), std::string::npos);
    EXPECT_EQ(Restored(killed.Disk->AfterCrash()), held);
}

TEST(SavedMessages, ThatCanBeReadAreRestoredFromADamagedJournal) {
    const std::size_t size = Killed().Disk->Bytes("folder/Journal.dat")->size();
    for (std::size_t offset = 0; offset < size; offset += 7) {
        Killed killed;
        std::string bytes = *killed.Disk->Bytes("folder/Journal.dat");
        bytes[offset] = static_cast<char>(bytes[offset] ^ 0x10);
        killed.Disk->Put("folder/Journal.dat", bytes);
        OneRun run(killed.Disk);
        run.Load();
        EXPECT_TRUE(run.Saved.FoundDamage() || offset > size - 100) << offset;
        const std::size_t kept = run.Now().Messages.size();
        EXPECT_GE(kept, offset < JournalHeaderSize ? 3U : killed.Before.Messages.size() - 1) << offset;
        EXPECT_LE(kept, killed.Before.Messages.size() + 1) << offset;
        EXPECT_EQ(killed.Disk->Count(), run.Saved.FoundDamage() ? 3U : 2U)
            << "the damaged journal is kept aside";
    }
}

TEST(JournalWriter, WritesAndSyncsOnItsThreads) {
    auto files = std::make_shared<MemoryFiles>();
    JournalWriter writer(files, "journal");
    writer.Start();
    writer.Open(0);
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::string bytes = std::to_string(i);
        writer.Append(bytes);
        expected += bytes;
        if (i == 500) {
            writer.BeginNew("new ");
            writer.AppendNew("file ");
            writer.CommitNew();
            expected = "new file ";
        }
    }
    ASSERT_TRUE(writer.Flush(std::chrono::seconds(20)));
    EXPECT_EQ(files->AfterPowerFailure(0)->Bytes("journal"), expected);
    EXPECT_EQ(writer.CurrentState().Committed, 1U);
    EXPECT_FALSE(files->Bytes("journal.new"));
}

TEST(JournalWriter, NeverWaitsForADiskThatDoesNotAnswer) {
    auto files = std::make_shared<MemoryFiles>();
    JournalWriter writer(files, "journal");
    writer.Start();
    writer.Open(0);
    ASSERT_TRUE(writer.Flush(std::chrono::seconds(20)));
    const std::string megabyte(std::size_t{1} << 20U, 'x');
    {
        const auto hanging = files->Hang();
        for (int i = 0; i < 100; ++i)
            writer.Append(megabyte);
        EXPECT_TRUE(writer.CurrentState().Failed) << "more than MostPending bytes wait";
        EXPECT_LE(writer.CurrentState().Pending, JournalWriter::MostPending);
        EXPECT_FALSE(writer.Flush(std::chrono::milliseconds(50)));
    }
    ASSERT_TRUE(writer.Flush(std::chrono::seconds(20)));
    EXPECT_TRUE(writer.CurrentState().Failed) << "bytes are missing in the middle";
    writer.BeginNew("all messages");
    writer.CommitNew();
    ASSERT_TRUE(writer.Flush(std::chrono::seconds(20)));
    EXPECT_FALSE(writer.CurrentState().Failed);
    EXPECT_EQ(files->Bytes("journal"), "all messages");
}

}  // namespace
}  // namespace tallyhorn
