#include "views/messages/MessageList.h"

#include <algorithm>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Returns the date as an unsigned key that sorts in the same order.
std::uint64_t DateKey(AlarmDate date) {
    constexpr std::uint64_t SignBit = std::uint64_t{1} << 63U;
    return static_cast<std::uint64_t>(date.Seconds) ^ SignBit;
}

bool SortsByDate(MessageColumn column) {
    return column == MessageColumn::DateLogged || column == MessageColumn::RecordNum;
}

bool BeginsWith(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && CompareNoCase(text.substr(0, start.size()), start) == 0;
}

}  // namespace

std::optional<std::size_t> MessageList::PositionOf(Slot slot) const {
    if (!rows_.Holds(slot))
        return std::nullopt;
    return order_.PositionOf(MakeEntry(slot), Rule(), TieBreak());
}

std::optional<std::size_t> MessageList::CountBefore(Slot slot) const {
    if (!rows_.Holds(slot))
        return std::nullopt;
    return order_.CountBefore(MakeEntry(slot), Rule(), TieBreak());
}

std::string MessageList::CellText(std::size_t position, MessageColumn column) const {
    return rows_.CellText(SlotAt(position), column);
}

EventType MessageList::TypeAt(std::size_t position) const {
    return rows_[SlotAt(position)].Type;
}

/// Finds a row by the beginning of the text of its date.  A `text` that ends before the time matches all
/// rows of a day or none.  If one row fails, the other rows of its day are therefore skipped without being
/// formatted.
std::optional<std::size_t> MessageList::FindByDate(std::string_view text, std::size_t start) const {
    std::int64_t lastDay = 0;
    std::uint16_t lastStyle = 0;
    bool lastDecides = false;
    for (std::size_t i = 0; i < Size(); ++i) {
        const std::size_t position = (start + i) % Size();
        const MessageRow& row = rows_[SlotAt(position)];
        const std::int64_t day = row.Date.Day();
        if (lastDecides && day == lastDay && row.Style == lastStyle)
            continue;
        const std::string shown = CellText(position, MessageColumn::DateLogged);
        if (BeginsWith(shown, text))
            return position;
        lastDay = day;
        lastStyle = row.Style;
        lastDecides = text.size() <= shown.find(' ');
    }
    return std::nullopt;
}

void MessageList::Add(Slot slot) {
    if (sortColumn_)
        order_.Insert(MakeEntry(slot), Rule());
    else
        order_.Append(MakeEntry(slot));
    newest_ = slot;
}

std::optional<std::size_t> MessageList::NewestPosition() const {
    return PositionOf(newest_);
}

void MessageList::SortBy(MessageColumn column) {
    const Change change(observer_);
    sortColumn_ = column;
    descending_ = !descending_;
    order_.Resort([this](Slot slot) { return MakeEntry(slot); }, Rule(), TieBreak());
}

std::vector<Slot> MessageList::RemoveSelected() {
    const Change change(observer_);
    return order_.RemoveSelected();
}

std::vector<Slot> MessageList::Remove(std::span<const Slot> slots) {
    std::vector<std::size_t> positions;
    for (const Slot slot : slots) {
        if (const std::optional<std::size_t> position = PositionOf(slot))
            positions.push_back(*position);
    }
    std::sort(positions.begin(), positions.end());
    return RemoveAt(positions);
}

std::vector<Slot> MessageList::RemoveAt(std::span<const std::size_t> positions) {
    if (positions.empty())
        return {};
    const Change change(observer_);
    return order_.RemoveAt(positions);
}

void MessageList::Clear() {
    const Change change(observer_);
    order_.Clear();
}

RowEntry MessageList::MakeEntry(Slot slot) const {
    const MessageRow& row = rows_[slot];
    RowEntry entry = RowEntry::Of(slot);
    if (!sortColumn_) {
        entry.Key = row.Arrival;
    } else if (SortsByDate(*sortColumn_)) {
        entry.Key = DateKey(row.Date);
    } else {
        const int column = static_cast<int>(*sortColumn_) - static_cast<int>(MessageColumn::Alarm);
        entry.Text = row.Texts[static_cast<std::size_t>(column)];
        entry.Key = rows_.Texts().SortPrefix(entry.Text);
    }
    return entry;
}

RowOrder::TieBreak MessageList::TieBreak() const {
    return [this](Slot slot) { return rows_[slot].Arrival; };
}

RowOrder::Rule MessageList::Rule() const {
    const bool byText = sortColumn_ && !SortsByDate(*sortColumn_);
    return {byText ? &rows_.Texts() : nullptr, descending_};
}

}  // namespace tallyhorn
