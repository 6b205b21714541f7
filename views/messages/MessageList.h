#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "views/messages/ChangeObserver.h"
#include "views/messages/MessageColumn.h"
#include "views/messages/MessageRows.h"
#include "views/messages/RowOrder.h"

namespace tallyhorn {

/// Determines which rows one of the lists shows, their order, and which of them are selected.  A position is
/// a row's place in the order shown, counted from 0.  `rows` must outlive the list.
class MessageList {
public:
    explicit MessageList(const MessageRows& rows) : rows_(rows) {}

    /// Sets the only observer, which must outlive the list unless a call with nullptr removes it.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    std::size_t Size() const { return order_.Size(); }
    Slot SlotAt(std::size_t position) const { return static_cast<Slot>(order_.At(position).Id); }
    /// Returns nothing if this list does not show the row of `slot`.
    std::optional<std::size_t> PositionOf(Slot slot) const;
    /// Returns how many rows sort before the row of `slot`, which this list need not show: the position that
    /// the row has or would have.  Returns nothing if the slot has no row.
    std::optional<std::size_t> CountBefore(Slot slot) const;
    std::string CellText(std::size_t position, MessageColumn column) const;
    EventType TypeAt(std::size_t position) const;
    /// Returns the first row whose first column begins with `text`, ignoring case, searching from `start` to
    /// the end and then from the first row.
    std::optional<std::size_t> FindByDate(std::string_view text, std::size_t start) const;

    /// Adds the row of `slot` at the end or, in a sorted list, at its sorted position.
    void Add(Slot slot);
    /// Returns the position of the most recently added row, or nothing if that row was removed.
    std::optional<std::size_t> NewestPosition() const;

    /// Sorts by the column in the opposite direction to the previous call, even if that call named another
    /// column.  The first call sorts in descending order.
    void SortBy(MessageColumn column);
    bool IsSorted() const { return sortColumn_.has_value(); }
    bool IsDescending() const { return descending_; }

    bool IsSelected(std::size_t position) const { return order_.At(position).Selected != 0; }
    std::size_t SelectedCount() const { return order_.SelectedCount(); }
    void Select(std::size_t first, std::size_t last, bool selected) { order_.Select(first, last, selected); }
    void ClearSelection() { order_.ClearSelection(); }
    /// Returns the slots of the selected rows in list order.
    std::vector<Slot> SelectedSlots() const { return order_.SelectedIds(); }

    /// Removes the selected rows from the list and returns their slots in list order.  The caller frees the
    /// slots.
    std::vector<Slot> RemoveSelected();
    /// Removes the rows of `slots`, which has no duplicates, and returns the removed slots in list order.
    /// Ignores slots that this list does not show.
    std::vector<Slot> Remove(std::span<const Slot> slots);
    /// Removes the rows at `positions`, which must be in ascending order, and returns their slots.
    std::vector<Slot> RemoveAt(std::span<const std::size_t> positions);
    void Clear();

private:
    RowEntry MakeEntry(Slot slot) const;
    RowOrder::Rule Rule() const;
    RowOrder::TieBreak TieBreak() const;

    const MessageRows& rows_;
    RowOrder order_;
    std::optional<MessageColumn> sortColumn_;
    bool descending_ = false;
    Slot newest_ = -1;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
