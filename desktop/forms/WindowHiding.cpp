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

/// Looks at the state only once the change is complete, because it may hide the window.
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

/// An open dialog keeps the window on the task bar: hiding the dialog would answer it, and hiding the window
/// alone would leave a question on the screen without the messages that it is about.
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
        // A splash would be out of date when the window is shown again.
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

/// Called before the window is shown; otherwise a window manager would choose another place for it.
void WindowHiding::GiveBackPlace() {
    // A window that was moved to another screen while maximised has its normal geometry on the first screen
    // still.
    if (maximized_ && screen_ != nullptr && !screen_->geometry().contains(normalGeometry_.center()))
        normalGeometry_.moveCenter(screen_->availableGeometry().center());
    window_.setGeometry(normalGeometry_);
    if (QWindow* const handle = window_.windowHandle(); handle != nullptr && !maximized_)
        handle->setFramePosition(framePosition_);
}

void WindowHiding::BringBack() {
    // Windows keeps place and state of a hidden window itself.  If they were set here too, a maximised window
    // would be drawn with the contents of its normal size.
    const bool keepsPlace = QGuiApplication::platformName() == QLatin1String("windows");
    if (std::exchange(hidden_, false) && !keepsPlace) {
        GiveBackPlace();
        // Maximised in a second step below: Qt does not report a state to the window manager that the hidden
        // window had already.
        window_.setWindowState(Qt::WindowNoState);
        window_.show();
    }
    window_.setWindowState(maximized_ ? Qt::WindowMaximized : Qt::WindowNoState);
    window_.show();
    for (const QPointer<QWidget>& companion : std::exchange(companions_, {})) {
        if (companion == nullptr)
            continue;
        // Window managers minimise a window's companions together with it.
        companion->setWindowState(companion->windowState() & ~Qt::WindowMinimized);
        companion->show();
    }
}

}  // namespace tallyhorn
