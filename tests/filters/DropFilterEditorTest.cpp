#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "filters/DropFilterEditor.h"
#include "tests/support/FakeWindow.h"
#include "tests/support/FileBytes.h"
#include "tests/support/FilterSlots.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using Answer = DropFilterEditor::Answer;
using Order = DropFilterEditor::Order;

class DropFilterEditorTest : public testing::Test {
protected:
    void Manage(const std::string& file) {
        WriteBytes(path_, file);
        editor_.InitFormAsManager();
    }
    /// The entries with their records' numbers, a star before the selected one.
    std::string Listed() const {
        std::string listed;
        for (std::size_t i = 0; i < editor_.Entries().size(); ++i) {
            const DropFilterEditor::Entry& entry = editor_.Entries()[i];
            listed += (i > 0 ? ", " : "") + std::string(editor_.Selected() == i ? "*" : "") +
                      entry.FilterName + " " + std::to_string(entry.RecordNumber);
        }
        return listed;
    }
    Answer Save(const std::string& name, const std::string& eventId = "") {
        FilterFields fields;
        fields.FilterName = name;
        fields.EventID = eventId;
        return editor_.Save(fields);
    }

    const std::string a_ = SlotOf(FilterOn("A", "a"));
    const std::string b_ = SlotOf(FilterOn("B", "b"));
    const std::string c_ = SlotOf(FilterOn("C", ""));
    const std::string blank_ = SlotOf(SuppressionFilter());

    TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "SavedFilters.dat";
    SuppressionFilters filters_{path_};
    FakeMessageBoxes boxes_;
    DropFilterEditor editor_{filters_, boxes_};
};

TEST_F(DropFilterEditorTest, ListsTheRecordsThatAreNotBlankWithTheirNumbers) {
    const std::string odd = SlotOf(FilterOn(std::string(" o\0dd \0", 7), "x"));
    const struct {
        std::string File;
        const char* Listed;
        std::int32_t FilterCount;
    } cases[] = {
        {"", "", 0},
        {a_ + blank_ + b_ + blank_, "*A 1, B 3", 4},
        {blank_ + std::string(448, '\0'), "", 2},
        {odd, "*odd 1", 1},
        {b_ + a_.substr(0, 236), "*B 1, A 2", 2},
        {b_ + a_.substr(0, 235), "*B 1", 1},
    };
    for (const auto& [file, listed, filterCount] : cases) {
        Manage(file);
        EXPECT_EQ(Listed(), listed);
        EXPECT_EQ(filters_.FilterCount, filterCount) << listed;
    }
}

TEST_F(DropFilterEditorTest, CountsSlotsBeyondThoseItLists) {
    constexpr std::int32_t More = SuppressionFilters::MaxRecords + 10;
    std::string file;
    for (std::int32_t i = 0; i < More; ++i)
        file += a_;
    Manage(file);
    EXPECT_EQ(editor_.Entries().size(), std::size_t{SuppressionFilters::MaxRecords});
    EXPECT_EQ(filters_.FilterCount, More);
    editor_.Add();
    EXPECT_EQ(Save("new"), Answer::Saved);
    EXPECT_EQ(editor_.Entries().back().RecordNumber, More + 1);
    EXPECT_EQ(std::filesystem::file_size(path_), std::size_t{More + 1} * FilterSlotSize);
}

TEST_F(DropFilterEditorTest, WritesEachChangeToTheFileAtOnceAndTheTableFollowsAtTheEnd) {
    Manage(a_ + blank_ + b_);
    editor_.Unload();
    editor_.InitFormAsManager();

    editor_.Add();
    EXPECT_EQ(Save("C"), Answer::Saved);
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + b_ + c_) << "after the last slot, not into the blank one";
    EXPECT_EQ(Listed(), "A 1, B 3, *C 4");

    editor_.Select(1);
    FilterFields fields = editor_.Edit();
    EXPECT_EQ(fields, ShowRecord(FilterOn("B", "b")));
    fields.FilterName = "D";
    fields.Source = "d";
    EXPECT_EQ(editor_.Save(fields), Answer::Saved);
    EXPECT_EQ(fields.EventID, "-1");
    const std::string d = SlotOf(FilterOn("D", "d"));
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + d + c_);
    EXPECT_EQ(Listed(), "A 1, *D 3, C 4");

    editor_.Select(0);
    editor_.Delete();
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + d + c_);
    const auto suppressed = [this] {
        std::string sources;
        AlarmRecord alarm;
        for (const char* const source : {"a", "b", "d"}) {
            alarm.Source = source;
            sources += filters_.IsSuppressed(alarm) ? source : "";
        }
        return sources;
    };
    EXPECT_EQ(suppressed(), "ab");
    editor_.Unload();
    EXPECT_EQ(suppressed(), "d");
    EXPECT_EQ(filters_.FilterCount, 2);
}

TEST_F(DropFilterEditorTest, RefusesInItsOrderAndKeepsItsMode) {
    const std::string long31(31, 'n');
    const std::string noName = "You must enter a name for this suppression filter before you can save it.";
    const std::string tooLong = "A filter name must be 30 characters or less!";
    const auto inUse = [](const std::string& name) {
        return "The filter name you have chosen (" + name +
               ") is already in use.  Please enter a different filter name and try again.";
    };
    const std::string file = SlotOf(FilterOn("MY FILTER", "a")) + SlotOf(FilterOn(long31, "b")) +
                             SlotOf(FilterOn("\xC4rger", "c"));
    const struct {
        std::string Name;
        Answer Answered;
        std::vector<std::string> Shown;
        const char* EventID = "";
    } cases[] = {
        {"", Answer::NoName, {noName}},
        {"   ", Answer::Saved, {}},
        {"my filter", Answer::NameInUse, {inUse("my filter")}},
        {"MY FILTER", Answer::NameInUse, {inUse("MY FILTER")}},
        {"\xE4RGER", Answer::NameInUse, {inUse("\xE4RGER")}},
        {" my filter", Answer::Saved, {}},
        {long31, Answer::NameInUse, {inUse(long31)}},
        {std::string(31, 'm'), Answer::NameTooLong, {tooLong}, "x"},
        {std::string(60'000, 'm'), Answer::NameTooLong, {tooLong}},
        {std::string(30, 'm'), Answer::Saved, {}},
        {"<b>%s</b>&\n", Answer::Saved, {}},
        {"silently", Answer::NoEventID, {}, "seven"},
    };
    for (const bool adding : {true, false}) {
        for (const auto& [name, answered, shown, eventId] : cases) {
            SCOPED_TRACE((adding ? "adding " : "editing ") + name.substr(0, 40));
            Manage(file);
            adding ? editor_.Add() : static_cast<void>(editor_.Edit());
            const DialogMode mode = editor_.Mode();
            boxes_.Shown.clear();
            EXPECT_EQ(Save(name, eventId), answered);
            EXPECT_EQ(boxes_.Shown, shown);
            const bool saved = answered == Answer::Saved;
            EXPECT_EQ(editor_.Mode(), saved ? DialogMode::Manage : mode);
            EXPECT_EQ(ReadBytes(path_) != file, saved);
            EXPECT_EQ(editor_.Entries().size(), saved && adding ? 4U : 3U);
        }
    }
}

TEST_F(DropFilterEditorTest, KeepsOneEntrySelectedAsLongAsThereIsAny) {
    Manage(a_ + b_ + c_);
    editor_.Select(1);
    editor_.Delete();
    EXPECT_EQ(Listed(), "A 1, *C 3") << "the next one";
    editor_.Select(7);
    editor_.Delete();
    EXPECT_EQ(Listed(), "*A 1") << "the last one";
    editor_.Delete();
    editor_.Delete();
    EXPECT_EQ(editor_.Selected(), std::nullopt);
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + blank_);
}

TEST_F(DropFilterEditorTest, EditsTheCurrentRecordWhereNothingIsSelected) {
    Manage("");
    filters_.CurrentFilter = FilterOn("current", "x");
    EXPECT_EQ(editor_.Edit(), ShowRecord(FilterOn("current", "x")));
    EXPECT_EQ(Save("other"), Answer::Saved);
    EXPECT_EQ(ReadBytes(path_), "");
    EXPECT_EQ(Listed(), "");
}

TEST_F(DropFilterEditorTest, SortsByNameWithoutCaseAndKeepsTheSelectedEntry) {
    Manage(SlotOf(FilterOn("beta", "")) + SlotOf(FilterOn("Alpha", "")) + blank_ +
           SlotOf(FilterOn("GAMMA", "")) + SlotOf(FilterOn("BETA", "")));
    editor_.Select(2);
    editor_.Sort(Order::Ascending);
    EXPECT_EQ(Listed(), "Alpha 2, beta 1, BETA 5, *GAMMA 4");
    editor_.Sort(Order::Descending);
    EXPECT_EQ(Listed(), "*GAMMA 4, beta 1, BETA 5, Alpha 2");
    editor_.Add();
    EXPECT_EQ(Save("azure"), Answer::Saved);
    EXPECT_EQ(Listed(), "GAMMA 4, beta 1, BETA 5, *azure 6, Alpha 2");
    editor_.Select(0);
    editor_.Edit();
    EXPECT_EQ(Save("aaa"), Answer::Saved);
    EXPECT_EQ(Listed(), "beta 1, BETA 5, azure 6, Alpha 2, *aaa 4");
    EXPECT_EQ(ReadBytes(path_).substr(3 * FilterSlotSize, 4), "aaa ") << "the record that was selected";
}

TEST_F(DropFilterEditorTest, GoesOnWhereNoFileCanBe) {
    std::filesystem::create_directory(path_);
    editor_.InitFormAsManager();
    editor_.Add();
    EXPECT_EQ(Save("A"), Answer::Saved);
    EXPECT_EQ(Listed(), "*A 1");
    editor_.Delete();
    editor_.Unload();
    EXPECT_TRUE(boxes_.Shown.empty());
}

}  // namespace
}  // namespace tallyhorn
