#pragma once

#include <array>
#include <cstdint>

#include "views/messages/MessageColumn.h"

namespace tallyhorn {

/// A length in the main window: 1/1440 of an inch, which is 1/15 of a pixel at 96 dots an inch.
using Twips = std::int32_t;

/// The widths of the five sized columns.
using ColumnWidthArray = std::array<Twips, SizedColumnCount>;

struct TwipsSize {
    Twips Width = 0;
    Twips Height = 0;

    bool operator==(const TwipsSize&) const = default;
};

/// The sizes and positions of the main window's parts.
struct ServerLayout {
    /// The height of tool bar and status bar together.
    static constexpr Twips BarsHeight = 795;
    /// The distance from the tab control's top to the first frame, unless the tabs are taller than that.
    static constexpr Twips FramesTop = 360;

    TwipsSize TabControl;
    TwipsSize Frame;                   ///< the size of each of the three frames of a page
    std::array<Twips, 3> FrameTops{};  ///< the distances from the tab control's top
    TwipsSize List;                    ///< the size of the list in each frame
    TwipsSize ConsolidatedFrame;
    TwipsSize Tree;
};

/// Returns the layout for `inner`, the size of the window below its menu bar.  `tabsHeight` is the height of
/// the tabs; if it is greater than FramesTop, the frames begin at that distance from the top and are smaller.
/// If the window is too small for a frame or list, the returned size is negative, and the caller must not
/// apply it.
ServerLayout LayOutServer(TwipsSize inner, Twips tabsHeight);

/// Returns the saved widths of a list's columns, or fixed shares of the list's width if the first saved width
/// is 0, which means that none are saved.
ColumnWidthArray ListColumnWidths(const ColumnWidthArray& saved, Twips listWidth);

}  // namespace tallyhorn
