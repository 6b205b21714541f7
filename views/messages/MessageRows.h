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

/// What one row shows, made when the row is added and not changed by later settings: the four texts and the
/// way of the date are held by number.
struct MessageRow {
    static constexpr std::size_t TextCount = 4;

    AlarmDate Date;
    std::uint64_t Arrival = 0;  ///< counts the rows of the channel; orders those that compare equal
    std::array<TextId, TextCount> Texts{};  ///< the columns Alarm to Computer
    std::uint16_t Style = 0;
    EventType Type = EventType::None;
    bool Present = false;  ///< false for a slot that has no row
};

/// The rows of one channel's lists, indexed by slot like the texts in its store, so that a slot leads to its
/// row without a search.  User-interface thread only.
class MessageRows {
public:
    /// The way in which the dates of rows added from now on are shown.
    void SetDateStyle(const DateStyle& style);

    /// Makes the row of `slot` from a record; the slot has none yet.
    void Add(Slot slot, const AlarmRecord& alarm, EventType type);
    /// Passes over slots without a row.  Fastest with RemovedTogether slots or more.
    static constexpr std::size_t RemovedTogether = 64;
    void Remove(std::span<const Slot> slots);
    void Remove(Slot slot) { Remove(std::span(&slot, 1)); }
    void Clear();

    bool Holds(Slot slot) const;
    /// Above every slot that has a row.
    Slot SlotBound() const { return static_cast<Slot>(rows_.Size()); }
    const MessageRow& operator[](Slot slot) const { return rows_[static_cast<std::size_t>(slot)]; }
    /// The order of day and month with which the row was made.
    bool DayFirst(Slot slot) const { return styles_[(*this)[slot].Style].DayFirst; }
    const TextPool& Texts() const { return texts_; }

    /// The text of one cell as it is shown, the sort key for RecordNum.
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
