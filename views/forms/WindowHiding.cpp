#include "views/forms/WindowHiding.h"

#include <QApplication>
#include <QWindow>
#include <utility>

namespace tallyhorn {

void WindowHiding::LookAtState() {
    if (hidden_)
        return;
    if (window_.isMinimized())
        Minimized();
    else if (std::exchange(minimized_, false))
        lifetime_.Restored();
}

/// A dialog that stands open keeps the window on the task bar: hiding the dialog would answer it, and alone
/// on the screen it would be a question without the messages that it is about.
void WindowHiding::Minimized() {
    minimized_ = true;
    if (lifetime_.Minimized() && QApplication::activeModalWidget() == nullptr)
        Hide();
}

/// What the window system keeps in front of it: its own windows, and the help window, which is nobody's
/// child.
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
        // A greeting has had its time by when the window comes back.
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

/// Told before the window is shown: a window manager seeks a place of its own choice otherwise.
void WindowHiding::GiveBackPlace() {
    // A window that was moved while maximised has its other place still on the screen that it came from.
    if (maximized_ && screen_ != nullptr && !screen_->geometry().contains(normalGeometry_.center()))
        normalGeometry_.moveCenter(screen_->availableGeometry().center());
    window_.setGeometry(normalGeometry_);
    if (QWindow* const handle = window_.windowHandle(); handle != nullptr && !maximized_)
        handle->setFramePosition(framePosition_);
}

void WindowHiding::BringBack() {
    // Windows itself keeps both for a hidden window; given anew, a maximised one would come back with the
    // contents of the smaller size.
    const bool keepsPlace = QGuiApplication::platformName() == QLatin1String("windows");
    if (std::exchange(hidden_, false) && !keepsPlace) {
        GiveBackPlace();
        // Maximised in a second step: a window manager does not hear of a state that the hidden window had
        // already.
        window_.setWindowState(Qt::WindowNoState);
        window_.show();
    }
    window_.setWindowState(maximized_ ? Qt::WindowMaximized : Qt::WindowNoState);
    window_.show();
    for (const QPointer<QWidget>& companion : std::exchange(companions_, {})) {
        if (companion == nullptr)
            continue;
        // Window managers minimise what belongs to a window with it.
        companion->setWindowState(companion->windowState() & ~Qt::WindowMinimized);
        companion->show();
    }
}

}  // namespace tallyhorn
