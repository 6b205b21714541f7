#pragma once

#include <QTabWidget>

namespace tallyhorn {

/// The pages of the main window, with tabs that are low enough for the first frame of a page to begin at its
/// place in the layout.
class PageTabs final : public QTabWidget {
public:
    /// `frameTop` is the distance in pixels from the top of the tabs to the first frame.
    PageTabs(int frameTop, QWidget* parent);
};

}  // namespace tallyhorn
