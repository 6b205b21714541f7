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

/// One of the received-message lists: which rows it shows, in which order, and which of them are selected.
/// Positions count from 0 as on the screen.  User-interface thread only; `rows` outlives the list.
class MessageList {
public:
    explicit MessageList(const MessageRows& rows) : rows_(rows) {}

    /// At most one; it outlives the list or is taken away with nullptr.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    std::size_t Size() const { return order_.Size(); }
    Slot SlotAt(std::size_t position) const { return static_cast<Slot>(order_.At(position).Slot); }
    /// Nothing for a slot whose row this list does not show.
    std::optional<std::size_t> PositionOf(Slot slot) const;
    std::string CellText(std::size_t position, MessageColumn column) const;
    EventType TypeAt(std::size_t position) const;
    /// The first row from `start` on, going round once, whose first column begins with `text` in any case.
    std::optional<std::size_t> FindByDate(std::string_view text, std::size_t start) const;

    /// The row of `slot`, made just before, takes its place: the last one, or its sorted one.
    void Add(Slot slot);
    /// What the user sees as the row that came last; nothing in an empty list.
    std::optional<std::size_t> NewestPosition() const;

    /// A click on a header: sorts by the column and turns the direction round, descending at first.
    void SortBy(MessageColumn column);
    bool IsSorted() const { return sortColumn_.has_value(); }
    bool IsDescending() const { return descending_; }

    bool IsSelected(std::size_t position) const { return order_.At(position).Selected != 0; }
    std::size_t SelectedCount() const { return order_.SelectedCount(); }
    void Select(std::size_t first, std::size_t last, bool selected) { order_.Select(first, last, selected); }
    void ClearSelection() { order_.ClearSelection(); }
    /// In list order.
    std::vector<Slot> SelectedSlots() const { return order_.SelectedSlots(); }

    /// Takes the selected rows off the list.  Their slots, given in list order, are the caller's to free.
    std::vector<Slot> RemoveSelected();
    /// The same for the rows of `slots`, each named once, selected or not; passes over those that this list
    /// does not show.
    std::vector<Slot> Remove(std::span<const Slot> slots);
    /// The same for the rows at `positions`, which ascend.
    std::vector<Slot> RemoveAt(std::span<const std::size_t> positions);
    void Clear();

private:
    RowEntry MakeEntry(Slot slot) const;
    RowOrder::Rule Rule() const;
    RowOrder::Arrivals Arrivals() const;

    const MessageRows& rows_;
    RowOrder order_;
    std::optional<MessageColumn> sortColumn_;
    bool descending_ = false;
    Slot newest_ = -1;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
