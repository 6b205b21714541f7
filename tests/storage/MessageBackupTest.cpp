#include <gtest/gtest.h>

#include <utility>

#include "storage/MessageBackup.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FakePendingEvents.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class MessageBackupTest : public ::testing::Test {
protected:
    void Put(const std::string& text) { messages_.Put(messages_.Grow(), text); }
    /// Returns the file's bytes after a save that replaces an existing file.
    std::string Saved() {
        WriteBytes(file_, "the old file");
        boxes_.Shown.clear();
        backup_.SaveMessageBackup();
        EXPECT_EQ(boxes_.Shown, Texts());
        return ReadBytes(file_);
    }
    Texts Loaded() {
        Texts texts;
        backup_.LoadMessageBackup([&texts](std::string_view text) { texts.emplace_back(text); },
                                  [this](auto done, auto total) { progress_.emplace_back(done, total); });
        return texts;
    }

    TemporaryFolder folder_;
    const fs::path file_ = folder_.Path() / "Backup.dat";
    FakeClock clock_;
    FakePendingEvents events_;
    FakeMessageBoxes boxes_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> progress_;  ///< pairs of done and total
    TimeSlices slices_{clock_, events_};
    MessageStore messages_{3};
    MessageBackup backup_{file_, messages_, boxes_, slices_};
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
        messages_.Clear(3);
        Put(text);
        EXPECT_TRUE(Saved() == expected) << expected.substr(0, 20);
    }
}

TEST_F(MessageBackupTest, SavesInTheOrderOfTheSlots) {
    for (const char* const text : {"slot four", "slot five", "slot six"})
        Put(text);
    messages_.Put(1, "slot one");
    messages_.Free(5);
    EXPECT_EQ(Saved(), "00008slot one00009slot four00008slot six");
    EXPECT_EQ(CountFiles(folder_.Path()), 1U);
}

TEST_F(MessageBackupTest, ShowsProgressAndLetsEventsRun) {
    std::string bytes;
    for (int i = 0; i < 1234; ++i)
        bytes += "00020" + std::string(20, 'x');
    // A blank text is neither restored nor counted.
    WriteBytes(file_, bytes + "00020" + std::string(20, ' '));
    // Each look at the clock takes a millisecond, so that every tenth text ends a slice.
    clock_.PerLook = std::chrono::milliseconds(1);
    EXPECT_EQ(Loaded().size(), 1234U);
    EXPECT_GE(events_.Runs, 2 * 1234 / 11);
    ASSERT_EQ(progress_.size(), 14U);
    EXPECT_EQ(progress_[0], std::pair(std::uint64_t{0}, std::uint64_t{1234}));
    EXPECT_EQ(progress_[12], std::pair(std::uint64_t{1200}, std::uint64_t{1234}));
    EXPECT_EQ(progress_[13], std::pair(std::uint64_t{1234}, std::uint64_t{1234}));

    WriteBytes(file_, std::string(1 << 20, '#'));
    clock_.PerLook = std::chrono::milliseconds(10);
    events_.Runs = 0;
    EXPECT_EQ(Loaded(), Texts());
    EXPECT_GT(events_.Runs, 100) << "events run in a damaged file without texts too";
}

TEST_F(MessageBackupTest, DoesNotSaveOrLoadDuringALoad) {
    const std::string bytes = "00020" + std::string(20, 'a') + "00020" + std::string(20, 'b');
    WriteBytes(file_, bytes);
    Put("kept");
    int restored = 0;
    const auto restore = [&](std::string_view) {
        ++restored;
        backup_.SaveMessageBackup();
        EXPECT_EQ(Loaded(), Texts());
    };
    backup_.LoadMessageBackup(restore, [](auto, auto) {});
    EXPECT_EQ(restored, 2);
    EXPECT_EQ(ReadBytes(file_), bytes);
    backup_.SaveMessageBackup();
    EXPECT_EQ(ReadBytes(file_), "00004kept") << "a save works again after the load";
    EXPECT_EQ(boxes_.Shown, Texts());
}

TEST_F(MessageBackupTest, ReportsAFailedSaveAndSavesLater) {
    const std::string failed =
        "The following error occurred when attempting to save received messages to disk.\r\nError # ";
    Put("text");
    backup_.SaveMessageBackup();
    ASSERT_EQ(boxes_.Shown.size(), 1U) << "a save fails if there is no file to delete";
    EXPECT_TRUE(boxes_.Shown[0].starts_with(failed + "2:\t")) << boxes_.Shown[0];
    EXPECT_EQ(CountFiles(folder_.Path()), 0U);

    fs::create_directory(file_);
    EXPECT_EQ(Loaded(), Texts()) << "a load that fails says nothing";
    EXPECT_TRUE(progress_.empty());
    backup_.SaveMessageBackup();
    EXPECT_EQ(boxes_.Shown.size(), 2U);
    EXPECT_TRUE(fs::is_directory(file_));

    fs::remove_all(folder_.Path());
    EXPECT_EQ(Loaded(), Texts());
    backup_.SaveMessageBackup();
    EXPECT_EQ(boxes_.Shown.size(), 3U);

    fs::create_directory(folder_.Path());
    EXPECT_EQ(Loaded(), Texts());
    EXPECT_TRUE(fs::is_regular_file(file_)) << "a load creates the file that a save deletes";
    EXPECT_EQ(Saved(), "00004text");
}

}  // namespace
}  // namespace tallyhorn
