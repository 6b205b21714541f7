#include "views/messages/RangeSelection.h"

#include <algorithm>

namespace tallyhorn {

void RangeSelection::SelectOnly(std::size_t first, std::size_t last) {
    list_.ClearSelection();
    list_.Select(first, last, true);
}

void RangeSelection::ExtendTo(std::size_t position, bool keepOthers) {
    if (!anchor_)
        SetAnchor(position);
    const std::size_t anchor = list_.PositionOf(*anchor_).value_or(position);
    if (!keepOthers)
        list_.ClearSelection();
    list_.Select(std::min(anchor, position), std::max(anchor, position), true);
}

void RangeSelection::ForgetLostAnchor() {
    if (anchor_ && !list_.PositionOf(*anchor_))
        anchor_.reset();
}

}  // namespace tallyhorn
