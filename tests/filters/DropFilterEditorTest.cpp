#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "filters/DropFilterEditor.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FileBytes.h"
#include "tests/support/FilterRecords.h"
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
    /// Returns the entries with their record numbers, and a star before the selected one.
    std::string Listed() const {
        std::string listed;
        for (std::size_t i = 0; i < editor_.Entries().size(); ++i) {
            const DropFilterEditor::Entry& entry = editor_.Entries()[i];
            listed += (i > 0 ? ", " : "") + std::string(editor_.Selected() == i ? "*" : "") +
                      entry.FilterName + " " + std::to_string(entry.RecordNumber);
        }
        return listed;
    }
    Answer Save(const std::string& name, const std::string& source = "", const std::string& eventId = "") {
        FilterFields fields;
        fields.FilterName = name;
        fields.Source = source;
        fields.EventID = eventId;
        return editor_.Save(fields);
    }
    void Add(const std::string& name, const std::string& source = "") {
        editor_.Add();
        EXPECT_EQ(Save(name, source), Answer::Saved);
    }

    const std::string a_ = RecordBytes(FilterOn("A", "a"));
    const std::string b_ = RecordBytes(FilterOn("B", "b"));
    const std::string c_ = RecordBytes(FilterOn("C", "c"));
    const std::string blank_ = RecordBytes(SuppressionFilter());

    TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "SavedFilters.dat";
    SuppressionFilters filters_{path_};
    FakeMessageBoxes boxes_;
    DropFilterEditor editor_{filters_, boxes_};
};

TEST_F(DropFilterEditorTest, ListsTheRecordsThatAreNotBlank) {
    const std::string odd = RecordBytes(FilterOn(std::string(" o\0dd \0", 7), "x"));
    const std::tuple<std::string, const char*, std::int32_t> cases[] = {
        {"", "", 0},
        {a_ + blank_ + b_ + blank_, "*A 1, B 3", 4},
        {blank_ + std::string(448, '\0'), "", 2},
        {odd, "*odd 1", 1},
    };
    for (const auto& [file, listed, filterCount] : cases) {
        Manage(file);
        EXPECT_EQ(Listed(), listed);
        EXPECT_EQ(filters_.FilterCount, filterCount) << listed;
    }
}

TEST_F(DropFilterEditorTest, AddsBehindTheLastRecordEvenIfItListsFewer) {
    constexpr std::int32_t More = SuppressionFilters::MaxRecords + 10;
    std::string file;
    for (std::int32_t i = 0; i < More; ++i)
        file += a_;
    Manage(file);
    EXPECT_EQ(editor_.Entries().size(), std::size_t{SuppressionFilters::MaxRecords});
    EXPECT_EQ(filters_.FilterCount, More);
    Add("new");
    EXPECT_EQ(editor_.Entries().back().RecordNumber, More + 1);
    EXPECT_EQ(std::filesystem::file_size(path_), std::size_t{More + 1} * FilterRecordSize);
}

TEST_F(DropFilterEditorTest, WritesEachChangeAtOnceAndLoadsTheFiltersAtTheEnd) {
    Manage(a_ + blank_ + b_);
    Add("C", "c");
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + b_ + c_) << "added at the end, not over the blank record";
    EXPECT_EQ(Listed(), "A 1, B 3, *C 4");

    editor_.Select(1);
    FilterFields fields = editor_.Edit();
    EXPECT_EQ(fields, ShowRecord(FilterOn("B", "b")));
    fields.FilterName = "D";
    fields.Source = "x";
    EXPECT_EQ(editor_.Save(fields), Answer::Saved);
    // The second edit shows what the first one saved, and may use the filter's earlier name again.
    EXPECT_EQ(editor_.Edit(), ShowRecord(FilterOn("D", "x")));
    EXPECT_EQ(Save("B", "d"), Answer::Saved);
    const std::string b = RecordBytes(FilterOn("B", "d"));
    EXPECT_EQ(ReadBytes(path_), a_ + blank_ + b + c_);
    EXPECT_EQ(Listed(), "A 1, *B 3, C 4");

    editor_.Select(0);
    editor_.Delete();
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + b + c_);
    Add("A", "a");  // the deleted filter's name can be used again; its record cannot
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + b + c_ + a_);
    EXPECT_EQ(Listed(), "B 3, C 4, *A 5");
    editor_.Delete();
    editor_.Select(1);
    editor_.Delete();
    Add("E", "b");
    EXPECT_EQ(Listed(), "B 3, *E 6");
    EXPECT_EQ(SuppressedSources(filters_), "");
    editor_.Unload();
    EXPECT_EQ(SuppressedSources(filters_), "bd");
    EXPECT_EQ(filters_.FilterCount, 2);
    editor_.InitFormAsManager();
    EXPECT_EQ(filters_.FilterCount, 6) << "it counts records while the dialog is open, then filters";
    EXPECT_EQ(Listed(), "*B 3, E 6");
}

TEST_F(DropFilterEditorTest, RefusesInAFixedOrderAndKeepsItsMode) {
    const std::string long31(31, 'n');
    const std::string file = RecordBytes(FilterOn("MY FILTER", "a")) + RecordBytes(FilterOn(long31, "b")) +
                             RecordBytes(FilterOn("\xC4rger", "c"));
    const std::tuple<std::string, const char*, Answer> cases[] = {
        {"", "", Answer::NoName},
        {"   ", "", Answer::Saved},
        {"my filter", "", Answer::NameInUse},
        {"\xE4RGER", "", Answer::NameInUse},
        {" my filter", "", Answer::Saved},
        {long31, "", Answer::NameInUse},
        {std::string(31, 'm'), "x", Answer::NameTooLong},
        {std::string(30, 'm'), "", Answer::Saved},
        {"silently", "seven", Answer::NoEventID},
    };
    for (const bool adding : {true, false}) {
        for (const auto& [name, eventId, answered] : cases) {
            SCOPED_TRACE((adding ? "adding " : "editing ") + name);
            std::map<Answer, std::string> box = {
                {Answer::NoName, "You must enter a name for this suppression filter before you can save it."},
                {Answer::NameTooLong, "A filter name must be 30 characters or less!"},
                {Answer::NameInUse,
                 "The filter name you have chosen (" + name +
                     ") is already in use.  Please enter a different filter name and try again."}};
            Manage(file);
            adding ? editor_.Add() : static_cast<void>(editor_.Edit());
            const DialogMode mode = editor_.Mode();
            boxes_.Shown = {""};
            EXPECT_EQ(Save(name, "", eventId), answered);
            EXPECT_EQ(boxes_.Shown.back(), box[answered]);
            const bool saved = answered == Answer::Saved;
            EXPECT_EQ(editor_.Mode(), saved ? DialogMode::Manage : mode);
            EXPECT_EQ(ReadBytes(path_) != file, saved);
            EXPECT_EQ(editor_.Entries().size(), saved && adding ? 4U : 3U);
        }
    }
}

TEST_F(DropFilterEditorTest, OneEntryIsSelectedUnlessTheListIsEmpty) {
    Manage(a_ + b_ + c_);
    editor_.Select(1);
    editor_.Delete();
    EXPECT_EQ(Listed(), "A 1, *C 3") << "the next entry is selected";
    editor_.Select(7);
    editor_.Delete();
    EXPECT_EQ(Listed(), "*A 1") << "the last entry is selected";
    editor_.Delete();
    editor_.Delete();
    EXPECT_EQ(editor_.Selected(), std::nullopt);
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + blank_);
    // If nothing is selected, Edit returns CurrentFilter's fields, and Save writes nothing.
    filters_.CurrentFilter = FilterOn("current", "x");
    EXPECT_EQ(editor_.Edit(), ShowRecord(FilterOn("current", "x")));
    EXPECT_EQ(Save("other"), Answer::NotWritten);
    EXPECT_EQ(ReadBytes(path_), blank_ + blank_ + blank_);
    EXPECT_EQ(Listed(), "");
}

TEST_F(DropFilterEditorTest, SortsByNameWithoutCaseAndKeepsTheSelection) {
    Manage(RecordBytes(FilterOn("beta", "")) + RecordBytes(FilterOn("Alpha", "")) + blank_ +
           RecordBytes(FilterOn("GAMMA", "")) + RecordBytes(FilterOn("BETA", "")));
    editor_.Select(2);
    editor_.Sort(Order::Ascending);
    EXPECT_EQ(Listed(), "Alpha 2, beta 1, BETA 5, *GAMMA 4");
    editor_.Sort(Order::Descending);
    EXPECT_EQ(Listed(), "*GAMMA 4, beta 1, BETA 5, Alpha 2");
    Add("azure");
    EXPECT_EQ(Listed(), "GAMMA 4, beta 1, BETA 5, *azure 6, Alpha 2");
    editor_.Select(0);
    editor_.Edit();
    EXPECT_EQ(Save("aaa"), Answer::Saved);
    EXPECT_EQ(Listed(), "beta 1, BETA 5, azure 6, Alpha 2, *aaa 4");
    EXPECT_EQ(ReadBytes(path_).substr(3 * FilterRecordSize, 4), "aaa ") << "the edited record is written";
}

TEST_F(DropFilterEditorTest, ShowsWhatTheFileHasAfterAFailedWrite) {
    const std::function<Answer()> changes[] = {
        [this] { return editor_.Add(), Save("C", "c"); },
        [this] { return editor_.Edit(), Save("C", "c"); },
        [this] { return editor_.Delete() ? Answer::Saved : Answer::NotWritten; },
    };
    for (const bool lost : {true, false}) {
        for (const auto& change : changes) {
            Manage(a_ + b_);
            editor_.Select(1);
            // A file that is no longer open cannot be written, but the list is read from its path.
            filters_.CloseFilterFile();
            std::filesystem::remove(path_);
            if (lost)
                std::filesystem::create_directory(path_);
            else
                WriteBytes(path_, a_ + b_ + a_);
            EXPECT_EQ(change(), Answer::NotWritten);
            EXPECT_EQ(editor_.Mode(), DialogMode::Manage);
            EXPECT_EQ(Listed(), lost ? "" : "A 1, *B 2, A 3");
            EXPECT_EQ(editor_.SelectedFields(), lost ? FilterFields() : ShowRecord(FilterOn("B", "b")));
            EXPECT_EQ(filters_.FilterCount, lost ? 0 : 3);
            EXPECT_TRUE(boxes_.Shown.empty());
            filters_.CloseFilterFile();
            std::filesystem::remove(path_);
        }
    }
}

}  // namespace
}  // namespace tallyhorn
