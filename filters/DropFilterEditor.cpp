#include "filters/DropFilterEditor.h"

#include <algorithm>
#include <limits>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Replaces control characters, which a proposed name can contain and which would split the message box's
/// line.
std::string OnOneLine(std::string text) {
    constexpr char MiddleDot = '\xB7';
    std::replace_if(
        text.begin(), text.end(), [](unsigned char character) { return character < 0x20; }, MiddleDot);
    return text;
}

/// Used as record number if no entry is selected; no record has this number.
constexpr std::int32_t NoRecord = 0;

}  // namespace

void DropFilterEditor::InitFormAsManager() {
    filters_.OpenFilterFile();
    FillFilterList(NoRecord);
    mode_ = DialogMode::Manage;
}

FilterFields DropFilterEditor::InitFormAsQuickAdd(const AlarmRecord& alarm) {
    filters_.OpenFilterFile();
    FillFilterList(NoRecord);
    mode_ = DialogMode::Adding;
    return ProposeFilter(alarm);
}

void DropFilterEditor::FillFilterList(std::int32_t selectedRecord) {
    const Change change(observer_);
    entries_.clear();
    filters_.FilterCount = filters_.CountRecords();
    const std::int32_t last = std::min(filters_.FilterCount, SuppressionFilters::MaxRecords);
    for (std::int32_t record = 1; record <= last && filters_.ReadFilterRecord(record); ++record) {
        std::string name = StripNulls(filters_.CurrentFilter.FilterName.View());
        if (!name.empty())
            entries_.push_back({std::move(name), record});
    }
    Arrange(selectedRecord);
}

void DropFilterEditor::ReadFileAgain() {
    filters_.OpenFilterFile();
    FillFilterList(SelectedRecord());
}

void DropFilterEditor::Select(std::size_t entry) {
    if (entry < entries_.size())
        selected_ = entry;
}

void DropFilterEditor::Sort(Order order) {
    const Change change(observer_);
    order_ = order;
    Arrange(SelectedRecord());
}

void DropFilterEditor::Arrange(std::int32_t selectedRecord) {
    const auto before = [order = order_](const Entry& a, const Entry& b) {
        const int compared = order == Order::ByRecord     ? 0
                             : order == Order::Descending ? CompareNoCase(b.FilterName, a.FilterName)
                                                          : CompareNoCase(a.FilterName, b.FilterName);
        return compared != 0 ? compared < 0 : a.RecordNumber < b.RecordNumber;
    };
    std::sort(entries_.begin(), entries_.end(), before);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [selectedRecord](const Entry& entry) {
        return entry.RecordNumber == selectedRecord;
    });
    selected_.reset();
    if (!entries_.empty())
        selected_ = found == entries_.end() ? 0 : static_cast<std::size_t>(found - entries_.begin());
}

std::int32_t DropFilterEditor::SelectedRecord() const {
    return selected_ ? entries_[*selected_].RecordNumber : NoRecord;
}

FilterFields DropFilterEditor::Edit() {
    filters_.ReadFilterRecord(SelectedRecord());
    mode_ = DialogMode::Editing;
    return ShowRecord(filters_.CurrentFilter);
}

FilterFields DropFilterEditor::SelectedFields() {
    const std::optional<SuppressionFilter> record = filters_.PeekFilterRecord(SelectedRecord());
    return record ? ShowRecord(*record) : FilterFields();
}

bool DropFilterEditor::Delete() {
    if (!selected_)
        return true;
    filters_.ClearFilterRecord();
    if (!filters_.WriteFilterRecord(SelectedRecord())) {
        ReadFileAgain();
        return false;
    }
    const Change change(observer_);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(*selected_));
    if (entries_.empty())
        selected_.reset();
    else
        selected_ = std::min(*selected_, entries_.size() - 1);
    return true;
}

DropFilterEditor::Answer DropFilterEditor::Save(FilterFields& fields) {
    const std::string& name = fields.FilterName;
    if (name.empty()) {
        boxes_.Warn("You must enter a name for this suppression filter before you can save it.");
        return Answer::NoName;
    }
    // compatibility: the filter that is being edited counts too, so it can be saved only under a new name.
    const bool inUse = std::any_of(entries_.begin(), entries_.end(), [&name](const Entry& entry) {
        return CompareNoCase(entry.FilterName, name) == 0;
    });
    if (inUse) {
        boxes_.Warn("The filter name you have chosen (" + OnOneLine(name) +
                    ") is already in use.  Please enter a different filter name and try again.");
        return Answer::NameInUse;
    }
    if (name.size() > LongestFilterName) {
        boxes_.Warn("A filter name must be 30 characters or less!");
        return Answer::NameTooLong;
    }
    // Only the filter that is edited keeps dates that cannot be typed, not a new one.
    if (mode_ == DialogMode::Adding)
        filters_.CurrentFilter.UseDateRange = FilterFalse;
    if (!StoreFieldsInRecord(fields, filters_.CurrentFilter))
        return Answer::NoEventID;
    const bool written = mode_ == DialogMode::Adding ? AddFilter(name) : UpdateFilter(name);
    mode_ = DialogMode::Manage;
    if (!written)
        ReadFileAgain();
    return written ? Answer::Saved : Answer::NotWritten;
}

bool DropFilterEditor::AddFilter(const std::string& name) {
    if (filters_.FilterCount == std::numeric_limits<std::int32_t>::max())
        return false;  // There is no record number left.
    ++filters_.FilterCount;
    if (!filters_.WriteFilterRecord(filters_.FilterCount))
        return false;
    const Change change(observer_);
    entries_.push_back({name, filters_.FilterCount});
    Arrange(filters_.FilterCount);
    return true;
}

bool DropFilterEditor::UpdateFilter(const std::string& name) {
    if (!filters_.WriteFilterRecord(SelectedRecord()))
        return false;
    const Change change(observer_);
    entries_[*selected_].FilterName = name;
    Arrange(SelectedRecord());
    return true;
}

bool DropFilterEditor::Cancel() {
    if (mode_ == DialogMode::Plain || mode_ == DialogMode::Manage)
        return true;
    mode_ = DialogMode::Manage;
    return false;
}

void DropFilterEditor::Unload() {
    filters_.OpenFilterFile();
    filters_.LoadSuppressionFilters();
}

}  // namespace tallyhorn
