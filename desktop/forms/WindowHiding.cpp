#include "desktop/forms/WindowHiding.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>
#include <utility>

#include "desktop/forms/frmTrayIcon.h"

namespace tallyhorn {

WindowHiding::WindowHiding(QWidget& window, frmTrayIcon& tray) : window_(window), tray_(tray) {
    window.installEventFilter(this);
}

/// Calls LookAtState after the state has changed completely, because LookAtState may hide the window.
bool WindowHiding::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::WindowUnblocked)
        QMetaObject::invokeMethod(
            this, [this] { LookAtState(); }, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void WindowHiding::LookAtState() {
    if (hidden_)
        return;
    if (window_.isMinimized())
        Minimized();
    else if (std::exchange(minimized_, false))
        tray_.MainWindowRestored();
}

/// Hides the window, but not while a dialog is open: hiding a dialog would cancel it, and hiding only the
/// window would leave a question on the screen without the messages that it concerns.
void WindowHiding::Minimized() {
    minimized_ = true;
    if (tray_.MainWindowMinimized() && QApplication::activeModalWidget() == nullptr)
        Hide();
}

/// Returns whether `other` is visible and belongs to the main window.  Checks the transient parent instead of
/// the parent widget, because the help window is not a child widget of the main window.
bool WindowHiding::BelongsToIt(const QWidget& other) const {
    if (!other.isVisible() || other.windowType() == Qt::Popup || other.windowType() == Qt::ToolTip)
        return false;
    const QWindow* const owner = other.windowHandle()->transientParent();
    return owner != nullptr && owner == window_.windowHandle();
}

void WindowHiding::Hide() {
    hidden_ = true;
    maximized_ = window_.isMaximized();
    normalGeometry_ = maximized_ ? window_.normalGeometry() : window_.geometry();
    framePosition_ = window_.frameGeometry().topLeft();
    screen_ = window_.screen();
    companions_.clear();
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!BelongsToIt(*widget))
            continue;
        // A splash is closed, because it would be out of date when the main window is shown again.
        if (widget->windowType() == Qt::SplashScreen) {
            widget->close();
            continue;
        }
        companions_.emplace_back(widget);
        widget->hide();
    }
    window_.hide();
}

void WindowHiding::Show(bool maximized) {
    maximized_ = maximized || (hidden_ ? maximized_ : window_.isMaximized());
    BringBack();
    window_.raise();
    window_.activateWindow();
    if (QWidget* const dialog = QApplication::activeModalWidget()) {
        dialog->raise();
        dialog->activateWindow();
    }
}

void WindowHiding::Uncover() {
    if (!hidden_)
        return;
    window_.setAttribute(Qt::WA_ShowWithoutActivating);
    BringBack();
    window_.setAttribute(Qt::WA_ShowWithoutActivating, false);
}

/// Restores the position and size of the window.  Must be called before the window is shown; otherwise the
/// window manager would choose another place for it.
void WindowHiding::GiveBackPlace() {
    // If the window was moved to another screen while it was maximised, its normal geometry is still on the
    // old screen.
    if (maximized_ && screen_ != nullptr && !screen_->geometry().contains(normalGeometry_.center()))
        normalGeometry_.moveCenter(screen_->availableGeometry().center());
    window_.setGeometry(normalGeometry_);
    if (QWindow* const handle = window_.windowHandle(); handle != nullptr && !maximized_)
        handle->setFramePosition(framePosition_);
}

void WindowHiding::BringBack() {
    // Windows itself keeps the place and state of a hidden window.  If they were also set here, a maximised
    // window would be drawn with the contents of its normal size.
    const bool keepsPlace = QGuiApplication::platformName() == QLatin1String("windows");
    if (std::exchange(hidden_, false) && !keepsPlace) {
        GiveBackPlace();
        // The window is maximised in a second step, below: Qt does not tell the window manager about a state
        // that the window already had while it was hidden.
        window_.setWindowState(Qt::WindowNoState);
        window_.show();
    }
    window_.setWindowState(maximized_ ? Qt::WindowMaximized : Qt::WindowNoState);
    window_.show();
    for (const QPointer<QWidget>& companion : std::exchange(companions_, {})) {
        if (companion == nullptr)
            continue;
        // The window manager minimised the companions together with the main window.
        companion->setWindowState(companion->windowState() & ~Qt::WindowMinimized);
        companion->show();
    }
}

}  // namespace tallyhorn
