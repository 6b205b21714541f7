#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "storage/MessageBackup.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeWindow.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class FakeProgress final : public BackupProgress {
public:
    void Show(std::uint64_t done, std::uint64_t total) override { Shown.emplace_back(done, total); }

    std::vector<std::pair<std::uint64_t, std::uint64_t>> Shown;
};

class MessageBackupTest : public ::testing::Test {
protected:
    void Put(const std::string& text) { messages_.Put(messages_.Grow(), text); }
    /// The file's bytes after a save that a file stood ready for.
    std::string Saved() {
        WriteBytes(file_, "what stood there before");
        backup_.SaveMessageBackup();
        EXPECT_EQ(boxes_.Shown, Texts());
        return ReadBytes(file_);
    }
    Texts Loaded() {
        Texts texts;
        backup_.LoadMessageBackup([&texts](std::string_view text) { texts.emplace_back(text); }, progress_);
        return texts;
    }

    TemporaryFolder folder_;
    const fs::path file_ = folder_.Path() / "Backup.dat";
    FakeClock clock_;
    FakePendingEvents events_;
    FakeMessageBoxes boxes_;
    FakeProgress progress_;
    TimeSlices slices_{clock_, events_};
    MessageStore messages_{3};
    MessageBackup backup_{file_, messages_, boxes_, slices_};
};

TEST_F(MessageBackupTest, SavesEachKindOfText) {
    std::string allBytes;
    for (int i = 255; i >= 0; --i)
        allBytes += static_cast<char>(i);
    const std::pair<std::string, std::string> cases[] = {
        {"abc", "00003abc"},
        {"  a  b  ", "00004a  b"},
        {"", ""},
        {"   ", ""},
        {std::string("a\0b\0", 4), "00002ab"},
        // Blanks go first, so those that a NUL covers stay.
        {std::string(" \0 a \0 ", 7), "00003 a "},
        {std::string(3, '\0'), "00000"},
        {" \t\r\n ", "00003\t\r\n"},
        {allBytes, "00255" + allBytes.substr(0, 255)},
        {std::string(99999, 'x'), "99999" + std::string(99999, 'x')},
        {std::string(100000, 'x'), "100000" + std::string(100000, 'x')},
        {std::string(700000, 'x'), "700000" + std::string(700000, 'x')},
    };
    std::string everything;
    for (const auto& [text, expected] : cases) {
        messages_.Clear(3);
        Put(text);
        EXPECT_TRUE(Saved() == expected) << expected.substr(0, 20);
        everything += expected;
    }
    messages_.Clear(0);
    for (const auto& [text, expected] : cases)
        Put(text);
    EXPECT_TRUE(Saved() == everything);
}

TEST_F(MessageBackupTest, SavesInTheOrderOfTheSlots) {
    for (const char* const text : {"slot four", "slot five", "slot six"})
        Put(text);
    messages_.Put(1, "slot one");
    messages_.Free(5);
    EXPECT_EQ(Saved(), "00008slot one00009slot four00008slot six");
    EXPECT_EQ(CountFiles(folder_.Path()), 1U);
}

TEST_F(MessageBackupTest, LoadsWhatItSaved) {
    Texts texts;
    for (int i = 0; i < 20000; ++i) {
        std::string text = "Date: " + std::to_string(i) + "\r\n";
        for (int j = 0; j < 20 + i % 500; ++j)
            text += static_cast<char>(1 + (i + j) % 255);
        texts.push_back(text + ".");
    }
    for (const std::string& text : texts)
        Put(text);
    const std::string first = Saved();
    EXPECT_TRUE(Loaded() == texts);

    messages_.Clear(3);
    for (const std::string& text : Loaded())
        Put(text);
    EXPECT_TRUE(Saved() == first);
}

TEST_F(MessageBackupTest, AFirstStartMakesTheFileThatTheSaveDeletes) {
    EXPECT_EQ(Loaded(), Texts());
    EXPECT_TRUE(fs::is_regular_file(file_));
    EXPECT_EQ(fs::file_size(file_), 0U);
    backup_.SaveMessageBackup();
    EXPECT_EQ(boxes_.Shown, Texts());
}

TEST_F(MessageBackupTest, TellsTheProgressAndLetsEventsRun) {
    std::string bytes;
    for (int i = 0; i < 1234; ++i)
        bytes += "00020" + std::string(20, 'x');
    // A blank text is neither restored nor counted.
    WriteBytes(file_, bytes + "00020" + std::string(20, ' '));
    // Each look at the clock takes a millisecond, so that every tenth text ends a slice.
    clock_.PerLook = std::chrono::milliseconds(1);
    EXPECT_EQ(Loaded().size(), 1234U);
    EXPECT_GE(events_.Runs, 2 * 1234 / 11);
    EXPECT_EQ(progress_.Shown.front(), std::pair(std::uint64_t{0}, std::uint64_t{1234}));
    EXPECT_EQ(progress_.Shown.at(12), std::pair(std::uint64_t{1200}, std::uint64_t{1234}));
    EXPECT_EQ(progress_.Shown.back(), std::pair(std::uint64_t{1234}, std::uint64_t{1234}));
    EXPECT_EQ(progress_.Shown.size(), 14U);
}

TEST_F(MessageBackupTest, EventsRunWhileRubbishIsRead) {
    WriteBytes(file_, std::string(1 << 20, '#'));
    clock_.PerLook = std::chrono::milliseconds(10);
    EXPECT_EQ(Loaded(), Texts());
    EXPECT_GT(events_.Runs, 100);
}

TEST_F(MessageBackupTest, ASaveInsideALoadLosesNothing) {
    const std::string bytes = "00020" + std::string(20, 'a') + "00020" + std::string(20, 'b');
    WriteBytes(file_, bytes);
    int restored = 0;
    backup_.LoadMessageBackup(
        [&](std::string_view) {
            ++restored;
            backup_.SaveMessageBackup();
        },
        progress_);
    EXPECT_EQ(restored, 2);
    EXPECT_EQ(ReadBytes(file_), bytes);
}

TEST_F(MessageBackupTest, TellsThatThereIsNothingToDelete) {
    Put("text");
    backup_.SaveMessageBackup();
    ASSERT_EQ(boxes_.Shown.size(), 1U);
    EXPECT_TRUE(std::regex_match(
        boxes_.Shown[0],
        std::regex("The following error occurred when attempting to save received messages to disk\\."
                   "\r\nError # 2:\t[^\r\n\t]{6,}")))
        << boxes_.Shown[0];
    EXPECT_EQ(CountFiles(folder_.Path()), 0U) << "an error at the deletion ends the save";
}

TEST_F(MessageBackupTest, WhereNoFileCanBeOnlyTheSaveTellsIt) {
    Put("text");
    for (const bool folderIsThere : {true, false}) {
        if (folderIsThere)
            fs::create_directory(file_);
        else
            fs::remove_all(folder_.Path());
        EXPECT_EQ(Loaded(), Texts());
        EXPECT_EQ(progress_.Shown.size(), 0U);
        EXPECT_EQ(std::exchange(boxes_.Shown, {}), Texts());
        backup_.SaveMessageBackup();
        EXPECT_EQ(std::exchange(boxes_.Shown, {}).size(), 1U);
        EXPECT_EQ(fs::is_directory(file_), folderIsThere);
    }
}

}  // namespace
}  // namespace tallyhorn
