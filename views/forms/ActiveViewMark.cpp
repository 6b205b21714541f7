#include "views/forms/ActiveViewMark.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPalette>
#include <QTabBar>
#include <QTabWidget>
#include <algorithm>
#include <utility>

namespace tallyhorn {
namespace {

/// Returns `base` with a third of `highlight` mixed in.
QColor Pale(const QColor& highlight, const QColor& base) {
    const auto mix = [](int strong, int weak) { return (strong + 2 * weak) / 3; };
    return {mix(highlight.red(), base.red()), mix(highlight.green(), base.green()),
            mix(highlight.blue(), base.blue())};
}

bool IsByKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

}  // namespace

ActiveViewMark::ActiveViewMark(const Views& views, QTabWidget& pages, std::function<void(ViewNumber)> touched)
    : QObject(&pages), views_(views), pages_(pages), touched_(std::move(touched)) {
    for (QWidget* const view : views_)
        view->installEventFilter(this);
    pages_.installEventFilter(this);
    pages_.tabBar()->installEventFilter(this);
    Draw();
}

void ActiveViewMark::Show(ViewNumber active, bool alone) {
    if (active == active_ && alone == alone_)
        return;
    active_ = active;
    alone_ = alone;
    Draw();
}

/// Gives the view the focus, because Qt would give the focus to the first list of the new page, and the next
/// Delete key would act on that list.
void ActiveViewMark::BringToFront(ViewNumber view) {
    const int page = static_cast<int>(PageOfView(view));
    if (!pages_.isTabVisible(page) || pages_.currentIndex() == page)
        return;
    pages_.setCurrentIndex(page);
    View(view).setFocus();
}

/// Alt+S and Ctrl+Tab change the page and move the focus to a list of the new page, but Qt then gives another
/// reason of the focus than the keyboard.  So TouchFocused checks after each key which view has the focus.
bool ActiveViewMark::eventFilter(QObject* watched, QEvent* event) {
    const auto view = std::find(views_.begin(), views_.end(), watched);
    const bool isView = view != views_.end();
    if (!isView && (event->type() == QEvent::KeyPress || event->type() == QEvent::Shortcut))
        QMetaObject::invokeMethod(this, &ActiveViewMark::TouchFocused, Qt::QueuedConnection);
    if (isView && event->type() == QEvent::FocusIn &&
        IsByKeyboard(static_cast<QFocusEvent*>(event)->reason()))
        touched_(static_cast<ViewNumber>(view - views_.begin()));
    if (isView && event->type() == QEvent::PaletteChange && !drawing_)
        Draw();
    return QObject::eventFilter(watched, event);
}

void ActiveViewMark::TouchFocused() {
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view) {
        if (View(view).hasFocus())
            return touched_(view);
    }
}

void ActiveViewMark::Draw() {
    drawing_ = true;
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view)
        DrawSelection(View(view), view == active_);
    drawing_ = false;
}

/// Changes the view's palette only, so the views need no code for this.  An empty palette takes all colours
/// from the desktop.
void ActiveViewMark::DrawSelection(QWidget& view, bool active) const {
    QPalette own;
    const QPalette desktop = QApplication::palette(&view);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        if (active)
            break;
        const QColor base = desktop.color(group, QPalette::Base);
        own.setColor(group, QPalette::Highlight,
                     alone_ ? base : Pale(desktop.color(group, QPalette::Highlight), base));
        own.setColor(group, QPalette::HighlightedText, desktop.color(group, QPalette::Text));
    }
    view.setPalette(own);
}

}  // namespace tallyhorn
