#pragma once

#include <array>
#include <cstdint>

#include "views/messages/MessageColumn.h"

namespace tallyhorn {

/// Lengths of the main window are in twips, 1/1440 of an inch: 15 to a pixel at 96 dots an inch.
using Twips = std::int32_t;

/// The widths of the five sized columns.
using ColumnWidthArray = std::array<Twips, SizedColumnCount>;

struct TwipsSize {
    Twips Width = 0;
    Twips Height = 0;

    bool operator==(const TwipsSize&) const = default;
};

/// Where the main window's parts lie for a given size of its inside.  A plain value; pure functions fill it.
struct ServerLayout {
    /// What tool bar and status bar take of the window's inner height together.
    static constexpr Twips BarsHeight = 795;
    /// Where the first frame begins, below the tab control's top, unless its tabs are taller than that.
    static constexpr Twips FramesTop = 360;

    TwipsSize TabControl;
    TwipsSize Frame;                   ///< each of the three of a page
    std::array<Twips, 3> FrameTops{};  ///< below the tab control's top
    TwipsSize List;                    ///< in its frame
    TwipsSize ConsolidatedFrame;
    TwipsSize Tree;
};

/// `inner` is the room below the menu bar; `tabsHeight` what the tabs themselves take, which pushes the
/// frames down where it is more than FramesTop.  A size that does not fit is negative: the part then stays as
/// it was.
ServerLayout LayOutServer(TwipsSize inner, Twips tabsHeight);

/// The widths of columns for a list: the saved ones, or shares of the list's width where none are saved.
ColumnWidthArray ListColumnWidths(const ColumnWidthArray& saved, Twips listWidth);

}  // namespace tallyhorn
