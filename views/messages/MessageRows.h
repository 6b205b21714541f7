#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "records/AlarmRecord.h"
#include "records/DateDisplay.h"
#include "records/EventTypes.h"
#include "views/messages/ChunkedArray.h"
#include "views/messages/MessageColumn.h"
#include "views/messages/MessageStore.h"
#include "views/messages/TextPool.h"

namespace tallyhorn {

/// What one row shows.  It is fixed when the row is added: later settings do not change it.  Texts and date
/// style are stored as numbers.
struct MessageRow {
    static constexpr std::size_t TextCount = 4;

    AlarmDate Date;
    std::uint64_t Arrival = 0;  ///< grows with each row of the channel; orders rows that compare equal
    std::array<TextId, TextCount> Texts{};  ///< the columns Alarm to Computer
    std::uint16_t Style = 0;
    EventType Type = EventType::None;
    bool Present = false;  ///< false for a slot that has no row
};

/// Owns the rows of one channel's lists, indexed by slot, and the texts of their cells.
class MessageRows {
public:
    /// Sets the date style of rows that are added later.
    void SetDateStyle(const DateStyle& style);

    /// Adds a row for `slot`, which must not have one yet, from a record.
    void Add(Slot slot, const AlarmRecord& alarm, EventType type);
    /// Removes rows; ignores slots without one.  Fastest with RemovedTogether slots or more in one call.
    static constexpr std::size_t RemovedTogether = 64;
    void Remove(std::span<const Slot> slots);
    void Remove(Slot slot) { Remove(std::span(&slot, 1)); }
    void Clear();

    bool Holds(Slot slot) const;
    /// Returns a number greater than every slot that has a row.
    Slot SlotBound() const { return static_cast<Slot>(rows_.Size()); }
    const MessageRow& operator[](Slot slot) const { return rows_[static_cast<std::size_t>(slot)]; }
    /// Returns whether the row's date is shown with the day before the month.
    bool DayFirst(Slot slot) const { return styles_[(*this)[slot].Style].DayFirst; }
    const TextPool& Texts() const { return texts_; }

    /// Returns the text of one cell; for RecordNum, which is never shown, the date as a sort key.
    std::string CellText(Slot slot, MessageColumn column) const;

private:
    void RemoveFew(std::span<const Slot> slots);

    ChunkedArray<MessageRow> rows_;
    TextPool texts_;
    std::vector<DateStyle> styles_{DateStyle()};
    std::uint16_t style_ = 0;
    std::uint64_t arrivals_ = 0;
};

}  // namespace tallyhorn
