#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "filters/DropFilterEditor.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/FilterSlots.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using Answer = DropFilterEditor::Answer;
using Order = DropFilterEditor::Order;
using Rows = std::vector<std::pair<std::string, std::int32_t>>;

class DropFilterEditorTest : public testing::Test {
protected:
    void Manage(const std::string& file) {
        WriteBytes(path_, file);
        editor_.InitFormAsManager();
    }
    Rows Listed() const {
        Rows rows;
        for (const DropFilterEditor::Entry& entry : editor_.Entries())
            rows.emplace_back(entry.FilterName, entry.RecordNumber);
        return rows;
    }
    Answer Save(const std::string& name, const std::string& source = "") {
        FilterFields fields;
        fields.FilterName = name;
        fields.Source = source;
        return editor_.Save(fields);
    }

    const std::string a_ = SlotOf(FilterOn("A", "a"));
    const std::string b_ = SlotOf(FilterOn("B", "b"));
    const std::string c_ = SlotOf(FilterOn("C", "c"));
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
        const char* Name;
        std::string File;
        Rows Listed;
        std::int32_t FilterCount;
    } cases[] = {
        {"empty", "", {}, 0},
        {"a blank slot between", a_ + blank_ + b_, {{"A", 1}, {"B", 3}}, 3},
        {"blank slots at the end", a_ + blank_ + blank_, {{"A", 1}}, 3},
        {"blank slots alone", blank_ + std::string(448, '\0'), {}, 2},
        {"NULs and blanks in a name", odd, {{"odd", 1}}, 1},
        {"a last slot without its rest", b_ + a_.substr(0, 236), {{"B", 1}, {"A", 2}}, 2},
        {"a last slot too short", b_ + a_.substr(0, 235), {{"B", 1}}, 1},
    };
    for (const auto& oneCase : cases) {
        SCOPED_TRACE(oneCase.Name);
        Manage(oneCase.File);
        EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
        EXPECT_EQ(Listed(), oneCase.Listed);
        EXPECT_EQ(filters_.FilterCount, oneCase.FilterCount);
        EXPECT_EQ(editor_.Selected().has_value(), !oneCase.Listed.empty());
        EXPECT_EQ(editor_.Selected().value_or(0), 0U);
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
    EXPECT_EQ(editor_.Mode(), DialogMode::Adding);
    EXPECT_EQ(Save("C", "c"), Answer::Saved);
    EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + b_ + c_) << "after the last slot, not into the blank one";
    EXPECT_EQ(Listed(), (Rows{{"A", 1}, {"B", 3}, {"C", 4}}));
    EXPECT_EQ(editor_.Selected(), 2U);

    editor_.Select(1);
    FilterFields fields = editor_.Edit();
    EXPECT_EQ(editor_.Mode(), DialogMode::Editing);
    EXPECT_EQ(fields, ShowRecord(FilterOn("B", "b")));
    fields.FilterName = "D";
    fields.Source = "d";
    EXPECT_EQ(editor_.Save(fields), Answer::Saved);
    EXPECT_EQ(fields.EventID, "-1");
    EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
    const std::string d = SlotOf(FilterOn("D", "d"));
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + d + c_);
    EXPECT_EQ(Listed(), (Rows{{"A", 1}, {"D", 3}, {"C", 4}}));
    EXPECT_EQ(editor_.Selected(), 1U);

    editor_.Select(0);
    editor_.Delete();
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + d + c_);
    EXPECT_EQ(Listed(), (Rows{{"D", 3}, {"C", 4}}));

    AlarmRecord alarm;
    const auto suppressed = [&](const char* source) {
        alarm.Source = source;
        return filters_.IsSuppressed(alarm);
    };
    EXPECT_TRUE(suppressed("a") && suppressed("b"));
    EXPECT_FALSE(suppressed("c") || suppressed("d"));
    editor_.Unload();
    EXPECT_FALSE(suppressed("a") || suppressed("b"));
    EXPECT_TRUE(suppressed("c") && suppressed("d"));
    EXPECT_EQ(filters_.FilterCount, 2);
    EXPECT_TRUE(boxes_.Shown.empty());
}

TEST_F(DropFilterEditorTest, RefusesNamesInItsOrder) {
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
    } cases[] = {
        {"", Answer::NoName, {noName}},
        {"   ", Answer::Saved, {}},
        {"my filter", Answer::NameInUse, {inUse("my filter")}},
        {"MY FILTER", Answer::NameInUse, {inUse("MY FILTER")}},
        {"\xE4RGER", Answer::NameInUse, {inUse("\xE4RGER")}},
        {" my filter", Answer::Saved, {}},
        {long31, Answer::NameInUse, {inUse(long31)}},
        {std::string(31, 'm'), Answer::NameTooLong, {tooLong}},
        {std::string(60'000, 'm'), Answer::NameTooLong, {tooLong}},
        {std::string(30, 'm'), Answer::Saved, {}},
        {"<b>%s</b>&\n", Answer::Saved, {}},
    };
    for (const bool adding : {true, false}) {
        for (const auto& oneCase : cases) {
            SCOPED_TRACE((adding ? "adding " : "editing ") + oneCase.Name.substr(0, 40));
            Manage(file);
            const DialogMode mode = adding ? DialogMode::Adding : DialogMode::Editing;
            if (adding)
                editor_.Add();
            else
                editor_.Edit();
            boxes_.Shown.clear();
            EXPECT_EQ(Save(oneCase.Name), oneCase.Answered);
            EXPECT_EQ(boxes_.Shown, oneCase.Shown);
            const bool saved = oneCase.Answered == Answer::Saved;
            EXPECT_EQ(editor_.Mode(), saved ? DialogMode::Manage : mode);
            EXPECT_EQ(ReadBytes(path_) != file, saved);
            EXPECT_EQ(editor_.Entries().size(), saved && adding ? 4U : 3U);
            if (saved) {
                EXPECT_EQ(editor_.Entries()[*editor_.Selected()].FilterName, oneCase.Name);
            }
        }
    }
}

TEST_F(DropFilterEditorTest, StaysSilentlyWhereTheEventIdIsNoNumber) {
    Manage(a_);
    editor_.Add();
    FilterFields fields;
    fields.FilterName = "new";
    fields.EventID = "seven";
    EXPECT_EQ(editor_.Save(fields), Answer::NoEventID);
    EXPECT_EQ(editor_.Mode(), DialogMode::Adding);
    EXPECT_TRUE(boxes_.Shown.empty());
    EXPECT_EQ(ReadBytes(path_), a_);
    EXPECT_EQ(filters_.FilterCount, 1);
    fields.EventID = "7";
    EXPECT_EQ(editor_.Save(fields), Answer::Saved);
    EXPECT_EQ(ReadBytes(path_).size(), 2 * FilterSlotSize);
}

TEST_F(DropFilterEditorTest, KeepsOneEntrySelectedAsLongAsThereIsAny) {
    Manage(a_ + b_ + c_);
    editor_.Select(1);
    editor_.Delete();
    EXPECT_EQ(editor_.Selected(), 1U) << "the next one";
    editor_.Select(7);
    EXPECT_EQ(editor_.Selected(), 1U) << "there is no such entry";
    editor_.Delete();
    EXPECT_EQ(editor_.Selected(), 0U) << "the last one";
    editor_.Delete();
    EXPECT_EQ(editor_.Selected(), std::nullopt);
    const std::string file = ReadBytes(path_);
    EXPECT_EQ(file, blank_ + blank_ + blank_);
    editor_.Delete();
    EXPECT_EQ(ReadBytes(path_), file);
    EXPECT_EQ(filters_.FilterCount, 3);
}

TEST_F(DropFilterEditorTest, EditsTheCurrentRecordWhereNothingIsSelected) {
    Manage("");
    filters_.CurrentFilter = FilterOn("current", "x");
    EXPECT_EQ(editor_.Edit(), ShowRecord(FilterOn("current", "x")));
    EXPECT_EQ(Save("other"), Answer::Saved);
    EXPECT_EQ(ReadBytes(path_), "");
    EXPECT_TRUE(editor_.Entries().empty());
    EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
}

TEST_F(DropFilterEditorTest, SortsByNameWithoutCaseAndKeepsTheSelectedEntry) {
    Manage(SlotOf(FilterOn("beta", "")) + SlotOf(FilterOn("Alpha", "")) + blank_ +
           SlotOf(FilterOn("GAMMA", "")) + SlotOf(FilterOn("BETA", "")));
    editor_.Select(2);
    editor_.Sort(Order::Ascending);
    EXPECT_EQ(Listed(), (Rows{{"Alpha", 2}, {"beta", 1}, {"BETA", 5}, {"GAMMA", 4}}));
    EXPECT_EQ(editor_.Selected(), 3U);
    editor_.Sort(Order::Descending);
    EXPECT_EQ(Listed(), (Rows{{"GAMMA", 4}, {"beta", 1}, {"BETA", 5}, {"Alpha", 2}}));
    EXPECT_EQ(editor_.Selected(), 0U);
    editor_.Add();
    EXPECT_EQ(Save("azure"), Answer::Saved);
    EXPECT_EQ(editor_.Selected(), 3U);
    editor_.Select(0);
    editor_.Edit();
    EXPECT_EQ(Save("aaa"), Answer::Saved);
    EXPECT_EQ(Listed(), (Rows{{"beta", 1}, {"BETA", 5}, {"azure", 6}, {"Alpha", 2}, {"aaa", 4}}));
    EXPECT_EQ(editor_.Selected(), 4U);
    EXPECT_EQ(EncodeFilter(filters_.CurrentFilter)[0], 'a');
    EXPECT_EQ(ReadBytes(path_).substr(3 * FilterSlotSize, 4), "aaa ") << "the record that was selected";
}

TEST_F(DropFilterEditorTest, CancelsByMode) {
    WriteBytes(path_, a_);
    const struct {
        const char* Name;
        std::function<void()> Open;
        bool Closes;
    } cases[] = {
        {"plain", [this] { editor_.InitForm(); }, true},
        {"manage", [this] { editor_.InitFormAsManager(); }, true},
        {"adding", [this] { editor_.InitFormAsManager(), editor_.Add(); }, false},
        {"editing", [this] { editor_.InitFormAsManager(), editor_.Edit(); }, false},
        {"quick add", [this] { editor_.InitFormAsQuickAdd(AlarmRecord()); }, false},
    };
    for (const auto& oneCase : cases) {
        SCOPED_TRACE(oneCase.Name);
        oneCase.Open();
        EXPECT_EQ(editor_.Cancel(), oneCase.Closes);
        if (!oneCase.Closes) {
            EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
            EXPECT_EQ(Listed(), (Rows{{"A", 1}}));
        }
        EXPECT_EQ(ReadBytes(path_), a_);
    }
}

TEST_F(DropFilterEditorTest, GoesOnWhereNoFileCanBe) {
    std::filesystem::create_directory(path_);
    editor_.InitFormAsManager();
    EXPECT_TRUE(editor_.Entries().empty());
    editor_.Add();
    EXPECT_EQ(Save("A"), Answer::Saved);
    EXPECT_EQ(Listed(), (Rows{{"A", 1}}));
    editor_.Delete();
    editor_.Unload();
    EXPECT_TRUE(boxes_.Shown.empty());
    EXPECT_EQ(filters_.Table().size(), 1U);
}

}  // namespace
}  // namespace tallyhorn
