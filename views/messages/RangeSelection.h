#pragma once

#include <cstddef>
#include <optional>

#include "views/messages/MessageList.h"

namespace tallyhorn {

/// Selects rows of a list as the user does with Shift: from an anchor, which is a row that was selected or
/// moved to before, to another row.
class RangeSelection {
public:
    /// `list` must outlive this object.
    explicit RangeSelection(MessageList& list) : list_(list) {}

    /// Selects the rows from `first` to `last` and no others.
    void SelectOnly(std::size_t first, std::size_t last);
    void SetAnchor(std::size_t position) { anchor_ = list_.SlotAt(position); }
    bool HasAnchor() const { return anchor_.has_value(); }
    /// Selects the rows from the anchor to `position`, without deselecting others if `keepOthers` is set.  If
    /// there is no anchor, the row at `position` becomes the anchor.
    void ExtendTo(std::size_t position, bool keepOthers);
    /// Forgets an anchor whose row was removed.  To be called before slots are reused.
    void ForgetLostAnchor();

private:
    MessageList& list_;
    std::optional<Slot> anchor_;
};

}  // namespace tallyhorn
