#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "platform/Hash64.h"
#include "storage/MessageBackup.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FakePendingEvents.h"
#include "tests/support/MemoryFiles.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr const char* Failed =
    "The following error occurred when attempting to save received messages to disk.\r\nError # ";

std::string Record(char letter) {
    return "00020" + std::string(20, letter);
}

/// A store and its backup in memory.
struct BackupInMemory {
    explicit BackupInMemory(MemoryFiles& files) : Disk(files) {}

    void Put(const std::string& text) { Messages.Put(Messages.Grow(), text); }
    Texts Load() {
        Texts texts;
        Loaded =
            Backup.LoadMessageBackup([&texts](std::string_view text) { texts.emplace_back(text); },
                                     [this](auto done, auto total) { Progress.emplace_back(done, total); },
                                     [this] { return GoesOn-- > 0; });
        return texts;
    }
    bool Save() {
        Hash.reset();
        return Backup.SaveMessageBackup([this](std::uint64_t hash) { Hash = hash; });
    }

    MemoryFiles& Disk;
    const fs::path File = fs::path("folder") / "Backup.dat";
    FakeClock Time;
    FakePendingEvents Events;
    FakeMessageBoxes Boxes;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> Progress;  ///< pairs of done and total
    MessageBackup::Loaded Loaded;
    int GoesOn = 1'000'000;             ///< how often the load is permitted to go on
    std::optional<std::uint64_t> Hash;  ///< the new file's hash, set before it replaces the old one
    TimeSlices Slices{Time, Events};
    MessageStore Messages{3};
    MessageBackup Backup{File, Messages, Boxes, Slices, Disk, Time};
};

class MessageBackupTest : public ::testing::Test, protected BackupInMemory {
protected:
    MessageBackupTest() : BackupInMemory(files_) {}

    std::string BytesOf(const fs::path& path) const { return files_.Bytes(path).value_or("no file"); }
    /// Returns the file's bytes after a save that replaces an existing file.
    std::string Saved() {
        files_.Put(File, "the old file");
        Boxes.Shown.clear();
        EXPECT_TRUE(Save());
        EXPECT_EQ(Boxes.Shown, Texts());
        EXPECT_EQ(Hash, Hash64(BytesOf(File)));
        return BytesOf(File);
    }
    std::vector<fs::path> Preserved() { return files_.PathsBeginningWith(File.string() + ".damaged-"); }

    MemoryFiles files_;
};

TEST_F(MessageBackupTest, SavesEachKindOfText) {
    std::string allBytes;
    for (int i = 255; i >= 0; --i)
        allBytes += static_cast<char>(i);
    const std::pair<std::string, std::string> cases[] = {
        {"  a  b  ", "00004a  b"},
        {"", ""},
        {"   ", ""},
        // Blanks are removed before NULs, so that a blank behind a NUL stays.
        {std::string(" \0 a\0b \0 ", 9), "00004 ab "},
        {std::string(3, '\0'), "00000"},
        {" \t\r\n ", "00003\t\r\n"},
        {allBytes, "00255" + allBytes.substr(0, 255)},
        {std::string(99999, 'x'), "99999" + std::string(99999, 'x')},
        {std::string(100000, 'x'), "100000" + std::string(100000, 'x')},
    };
    for (const auto& [text, expected] : cases) {
        Messages.Clear(3);
        Put(text);
        EXPECT_TRUE(Saved() == expected) << expected.substr(0, 20);
    }
}

TEST_F(MessageBackupTest, SavesInTheOrderOfTheSlots) {
    for (const char* const text : {"slot four", "slot five", "slot six"})
        Put(text);
    Messages.Put(1, "slot one");
    Messages.Free(5);
    EXPECT_EQ(Saved(), "00008slot one00009slot four00008slot six");
}

TEST_F(MessageBackupTest, ShowsProgressAndLetsEventsRun) {
    std::string bytes;
    for (int i = 0; i < 1234; ++i)
        bytes += "00020" + std::string(20, 'x');
    // A blank text is neither restored nor counted.
    files_.Put(File, bytes + "00020" + std::string(20, ' '));
    // Each look at the clock takes a millisecond, so that every tenth text ends a slice.
    Time.PerLook = std::chrono::milliseconds(1);
    EXPECT_EQ(Load().size(), 1234U);
    EXPECT_GE(Events.Runs, 2 * 1234 / 11);
    ASSERT_EQ(Progress.size(), 14U);
    EXPECT_EQ(Progress[0], std::pair(std::uint64_t{0}, std::uint64_t{1234}));
    EXPECT_EQ(Progress[12], std::pair(std::uint64_t{1200}, std::uint64_t{1234}));
    EXPECT_EQ(Progress[13], std::pair(std::uint64_t{1234}, std::uint64_t{1234}));

    files_.Put(File, std::string(1 << 20, '#'));
    Time.PerLook = std::chrono::milliseconds(10);
    Events.Runs = 0;
    EXPECT_EQ(Load(), Texts());
    EXPECT_GT(Events.Runs, 100) << "events run in a damaged file without texts too";
}

TEST_F(MessageBackupTest, ReportsAFailedSaveAndSavesLater) {
    Put("text");
    EXPECT_FALSE(Save());
    ASSERT_EQ(Boxes.Shown.size(), 1U) << "a save fails if there is no file to delete";
    EXPECT_TRUE(Boxes.Shown[0].starts_with(std::string(Failed) + "2:\t")) << Boxes.Shown[0];
    EXPECT_EQ(files_.Count(), 0U);
    EXPECT_EQ(Load(), Texts());
    EXPECT_EQ(Loaded.Hash, Hash64(""));
    EXPECT_EQ(BytesOf(File), "") << "a load creates the file that a save deletes";
    files_.Kind = MemoryFiles::Fault::DiskFull;
    files_.FailsAt = files_.Operations + 1;
    EXPECT_FALSE(Save() || Hash) << "the file is not replaced";
    EXPECT_EQ(Boxes.Shown.size(), 2U);
    EXPECT_EQ(Saved(), "00004text");
}

TEST_F(MessageBackupTest, AnEndedLoadSaysSo) {
    const std::string bytes = Record('a') + Record('b') + Record('c');
    files_.Put(File, bytes);
    for (const auto& [goesOn, restored] : {std::pair(0, 0U), {2, 0U}, {3, 0U}, {4, 1U}, {6, 3U}}) {
        GoesOn = goesOn;
        EXPECT_EQ(Load().size(), restored) << goesOn;
        EXPECT_EQ(Loaded.Complete, restored == 3) << goesOn;
        EXPECT_FALSE(Loaded.Damaged) << goesOn;
    }
    EXPECT_EQ(Loaded.Hash, Hash64(bytes));
}

TEST_F(MessageBackupTest, WhatCannotBeReadIsKeptAside) {
    const std::tuple<const char*, std::string, std::size_t, bool> cases[] = {
        {"intact", Record('a') + Record('b'), 2, false},
        {"empty", "", 0, false},
        {"a length without a text", "00005" + Record('a'), 1, false},
        {"a short text", "00004text" + Record('a'), 0, true},
        {"no length", Record('a') + "xxxxx" + Record('b'), 2, true},
        {"a negative length", "-0020" + Record('b'), 1, true},
        {"cut in the length", Record('a') + "000", 1, true},
        {"cut behind the length", Record('a') + "00020", 1, true},
        {"cut in the text", Record('a') + Record('b').substr(0, 24), 1, true},
    };
    for (const auto& [what, bytes, restored, damaged] : cases) {
        const std::size_t before = Preserved().size();
        files_.Put(File, bytes);
        for (int start = 0; start < 2; ++start) {  // the second finds the file that the first has preserved
            EXPECT_EQ(Load().size(), restored) << what;
            EXPECT_EQ(Loaded.Damaged, damaged) << what;
            EXPECT_EQ(Preserved().size() - before, damaged ? 1U : 0U) << what;
        }
        EXPECT_EQ(BytesOf(File), bytes) << what;
        Time.Local += 10;
        EXPECT_TRUE(Save()) << what;
    }
    EXPECT_EQ(BytesOf(File.string() + ".damaged-20261014-174710"), "00004text" + Record('a'));
    // Two files in the same second need two names.
    for (const char letter : {'x', 'y'}) {
        files_.Put(File, std::string(1, letter));
        Load();
    }
    EXPECT_EQ(BytesOf(Preserved().back()), "y");
}

TEST_F(MessageBackupTest, AFileThatMayNotBeReadIsNeverReplaced) {
    for (const bool full : {false, true}) {
        files_.Put(File, "secret");
        files_.Unreadable = {File};
        files_.Kind = full ? MemoryFiles::Fault::DiskFull : MemoryFiles::Fault::None;
        files_.FailsAt = files_.Operations;
        files_.FullFor = 2;
        EXPECT_EQ(Load(), Texts());
        EXPECT_TRUE(Loaded.Damaged && Loaded.Complete);
        if (full) {
            EXPECT_FALSE(Save()) << "it cannot be preserved";
            EXPECT_TRUE(Boxes.Shown.back().starts_with(Failed));
            EXPECT_EQ(BytesOf(File), "secret");
        }
        EXPECT_TRUE(Save());
        EXPECT_EQ(BytesOf(File), "");
        ASSERT_EQ(Preserved().size(), 1U);
        EXPECT_EQ(BytesOf(Preserved()[0]), "secret");
        files_.Remove(Preserved()[0]);
    }
}

using Fault = MemoryFiles::Fault;

/// Loads and saves while the fault happens, and returns the number of operations.  Expects that the next
/// start finds the old or the new messages, and the bytes of a damaged file somewhere.
int LoadAndSave(const std::string& old, bool intact, Fault kind, int failsAt) {
    const Texts fresh(5, std::string(90'000, 'n'));
    MemoryFiles files;
    BackupInMemory run(files);
    if (!old.empty())
        files.Put(run.File, old);
    files.Kind = kind;
    files.FailsAt = failsAt;
    const Texts before = run.Load();
    for (const std::string& text : fresh)
        run.Put(text);
    const bool saved = run.Save();
    EXPECT_EQ(saved, run.Boxes.Shown.empty());
    for (const auto& after : {files.AfterCrash(), files.AfterPowerFailure(0), files.AfterPowerFailure(0.5),
                              files.AfterPowerFailure(1)}) {
        BackupInMemory next(*after);
        bool found = intact;
        for (const fs::path& path : after->PathsBeginningWith(run.File))
            found = found || after->Bytes(path) == old;
        EXPECT_TRUE(found) << "the damaged file";
        const Texts restored = next.Load();
        EXPECT_TRUE(restored == fresh || (!saved && restored == before)) << restored.size();
    }
    return files.Operations;
}

TEST(MessageBackupFaults, LoseNoMessage) {
    for (const auto& [old, intact] : {std::pair(Record('a') + Record('b'), true),
                                      {Record('a') + "damage", false},
                                      {std::string(), true}}) {
        const int operations = LoadAndSave(old, intact, Fault::None, 0);
        EXPECT_GT(operations, 3);
        for (const Fault kind : {Fault::StopBefore, Fault::StopAfter, Fault::StopWithin, Fault::DiskFull}) {
            for (int i = 0; i < operations; ++i) {
                SCOPED_TRACE(old + ", fault " + std::to_string(static_cast<int>(kind)) + " at operation " +
                             std::to_string(i));
                LoadAndSave(old, intact, kind, i);
            }
        }
    }
}

}  // namespace
}  // namespace tallyhorn
