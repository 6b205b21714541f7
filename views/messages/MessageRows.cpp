#include "views/messages/MessageRows.h"

#include <algorithm>
#include <limits>

namespace tallyhorn {

void MessageRows::SetDateStyle(const DateStyle& style) {
    auto known = std::find(styles_.begin(), styles_.end(), style);
    if (known == styles_.end()) {
        // Styles are added only by changes of the preferences.  If 65,536 of them are in use, the new one
        // replaces the last one, whose rows change their style.
        if (styles_.size() > std::numeric_limits<std::uint16_t>::max())
            styles_.pop_back();
        styles_.push_back(style);
        known = styles_.end() - 1;
    }
    style_ = static_cast<std::uint16_t>(known - styles_.begin());
}

void MessageRows::Add(Slot slot, const AlarmRecord& alarm, EventType type) {
    const auto index = static_cast<std::size_t>(slot);
    rows_.GrowTo(index + 1);
    MessageRow& row = rows_[index];
    row.Date = alarm.DateTime;
    row.Arrival = arrivals_++;
    row.Texts = {texts_.Add(alarm.AlarmName), texts_.Add(alarm.LogType), texts_.Add(alarm.AccountName),
                 texts_.Add(alarm.Computer)};
    row.Style = style_;
    row.Type = type;
    row.Present = true;
}

void MessageRows::Remove(std::span<const Slot> slots) {
    while (!slots.empty()) {
        const std::size_t count = std::min(slots.size(), RemovedTogether);
        RemoveFew(slots.first(count));
        slots = slots.subspan(count);
    }
}

/// Reads all rows before it releases any text: rows are far apart in memory, and in a short loop the
/// processor loads many of them at a time.
void MessageRows::RemoveFew(std::span<const Slot> slots) {
    std::array<TextId, RemovedTogether * MessageRow::TextCount> texts;
    std::size_t count = 0;
    for (const Slot slot : slots) {
        if (!Holds(slot))
            continue;
        MessageRow& row = rows_[static_cast<std::size_t>(slot)];
        row.Present = false;
        for (const TextId text : row.Texts)
            texts[count++] = text;
    }
    for (const TextId text : std::span(texts).first(count))
        texts_.Release(text);
}

void MessageRows::Clear() {
    rows_.Clear();
    texts_ = TextPool();
}

bool MessageRows::Holds(Slot slot) const {
    return slot >= 0 && static_cast<std::size_t>(slot) < rows_.Size() && (*this)[slot].Present;
}

std::string MessageRows::CellText(Slot slot, MessageColumn column) const {
    const MessageRow& row = (*this)[slot];
    if (column == MessageColumn::RecordNum)
        return FormatSortKey(row.Date);
    if (column == MessageColumn::DateLogged) {
        const DateStyle& style = styles_[row.Style];
        return FormatAlarmDate(row.Date, style.Pattern(), style.Separator);
    }
    const std::size_t text =
        static_cast<std::size_t>(column) - static_cast<std::size_t>(MessageColumn::Alarm);
    return std::string(texts_.Text(row.Texts[text]));
}

}  // namespace tallyhorn
