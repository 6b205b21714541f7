#pragma once

#include <QObject>
#include <array>
#include <functional>

#include "views/messages/Channels.h"

class QTabWidget;
class QWidget;

namespace tallyhorn {

/// Makes one list at a time look active: the selections of the other views are drawn in a pale colour, a
/// third of the way from the background to the highlight.  Calls `touched` when a view gets the focus by
/// keyboard.
class ActiveViewMark final : public QObject {
    Q_OBJECT

public:
    using Views = std::array<QWidget*, ConsolidatedView + 1>;

    /// The widgets must outlive this object.  `touched` is called with the view that got the focus.
    ActiveViewMark(const Views& views, QTabWidget& pages, std::function<void(ViewNumber)> touched);

    /// Draws the selection of `active` normally and the others pale or, if `alone`, not at all.
    void Show(ViewNumber active, bool alone);
    /// Shows the page of `view` and gives the focus to `view`.  Does nothing if that page is in front already
    /// or hidden by the preferences.
    void BringToFront(ViewNumber view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Draw();
    void DrawSelection(QWidget& view, bool active) const;
    void TouchFocused();
    QWidget& View(ViewNumber view) const { return *views_.at(static_cast<std::size_t>(view)); }

    const Views views_;
    QTabWidget& pages_;
    const std::function<void(ViewNumber)> touched_;
    ViewNumber active_ = 0;
    bool alone_ = false;
    bool drawing_ = false;  ///< whether a change of palette was made by this object
};

}  // namespace tallyhorn
