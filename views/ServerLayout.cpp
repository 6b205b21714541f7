#include "views/ServerLayout.h"

#include <algorithm>

namespace tallyhorn {
namespace {

constexpr Twips PageMarginWidth = 270;
constexpr Twips PageMarginHeight = 450;
constexpr Twips FrameMarginWidth = 480;
constexpr Twips FrameMarginHeight = 360;

constexpr std::array<double, SizedColumnCount> ColumnShares = {0.23, 0.22, 0.15, 0.21, 0.15};

}  // namespace

ServerLayout LayOutServer(TwipsSize inner, Twips tabsHeight) {
    const Twips top = std::max(ServerLayout::FramesTop, tabsHeight);
    const Twips pageMargin = PageMarginHeight + top - ServerLayout::FramesTop;
    ServerLayout layout;
    layout.TabControl = {inner.Width, inner.Height - ServerLayout::BarsHeight};
    layout.ConsolidatedFrame = {layout.TabControl.Width - PageMarginWidth,
                                layout.TabControl.Height - pageMargin};
    layout.Tree = {layout.ConsolidatedFrame.Width - FrameMarginWidth,
                   layout.ConsolidatedFrame.Height - FrameMarginHeight};
    layout.Frame = {layout.ConsolidatedFrame.Width, layout.ConsolidatedFrame.Height / 3};
    layout.List = {layout.Frame.Width - FrameMarginWidth, layout.Frame.Height - FrameMarginHeight};
    for (std::size_t i = 0; i < layout.FrameTops.size(); ++i)
        layout.FrameTops[i] = top + static_cast<Twips>(i) * layout.Frame.Height;
    return layout;
}

ColumnWidthArray ListColumnWidths(const ColumnWidthArray& saved, Twips listWidth) {
    if (saved.front() != 0)
        return saved;
    ColumnWidthArray widths{};
    for (std::size_t i = 0; i < widths.size(); ++i)
        widths[i] = static_cast<Twips>(ColumnShares[i] * listWidth);
    return widths;
}

}  // namespace tallyhorn
