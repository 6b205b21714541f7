#include "views/messages/TreeLeaves.h"

#include "records/AnsiText.h"
#include "records/DateDisplay.h"

namespace tallyhorn {

bool TreeLeaves::Holds(Slot slot) const {
    return slot >= 0 && static_cast<std::size_t>(slot) < leaves_.Size() && (*this)[slot].Computer != 0;
}

TextId TreeLeaves::AddHead(const AlarmRecord& alarm) {
    const std::string id = std::to_string(alarm.EventID);
    headBuffer_.assign(alarm.LogType).append(" Log  ||  ");
    if (CompareNoCase(alarm.LogType, "security") == 0)
        headBuffer_.append("Event ID: ").append(id).append("  ||  User: ").append(alarm.AccountName);
    else
        headBuffer_.append("Source: ").append(alarm.Source).append("  ||  Event ID: ").append(id);
    headBuffer_.append("  ||  Date Logged: ");
    return heads_.Add(headBuffer_);
}

void TreeLeaves::Add(Slot slot, const TreeLeaf& leaf) {
    leaves_.GrowTo(static_cast<std::size_t>(slot) + 1);
    leaves_[static_cast<std::size_t>(slot)] = leaf;
    ++count_;
}

void TreeLeaves::Remove(Slot slot) {
    TreeLeaf& leaf = leaves_[static_cast<std::size_t>(slot)];
    heads_.Release(leaf.Head);
    leaf = TreeLeaf();
    --count_;
}

void TreeLeaves::Clear() {
    leaves_.Clear();
    count_ = 0;
    heads_ = TextPool();
}

void TreeLeaves::MapNodeIndexes(const RankBitmap::NewIndexes& newIndex) {
    for (std::size_t slot = 0; slot < leaves_.Size(); ++slot) {
        if (leaves_[slot].Computer != 0)
            leaves_[slot].NodeIndex = newIndex(leaves_[slot].NodeIndex);
    }
}

/// Writes the date with "/" instead of the lists' separator, but in the row's order of day and month.
std::string TreeLeaves::Text(Slot slot) const {
    const DateStyle style{rows_.DayFirst(slot), "/"};
    return std::string(heads_.Text((*this)[slot].Head)) +
           FormatAlarmDate(rows_[slot].Date, style.Pattern(), style.Separator);
}

std::string TreeLeaves::Key(Slot slot) const {
    constexpr std::size_t LogTypeText = 1;
    return "FIELDS_" + PadWithZeros(std::to_string(slot), 4) + "_" +
           std::string(rows_.Texts().Text(rows_[slot].Texts[LogTypeText]));
}

RowEntry TreeLeaves::Entry(Slot slot, bool byText) const {
    const MessageRow& row = rows_[slot];
    RowEntry entry = RowEntry::Of(slot);
    entry.Key = byText ? DateTextOrder(row.Date, rows_.DayFirst(slot)) : row.Arrival;
    entry.Text = byText ? (*this)[slot].Head : 0;
    return entry;
}

}  // namespace tallyhorn
