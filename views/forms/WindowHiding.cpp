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

void WindowHiding::Hide() {
    hidden_ = true;
    maximized_ = window_.isMaximized();
    normalGeometry_ = maximized_ ? window_.normalGeometry() : window_.geometry();
    framePosition_ = window_.frameGeometry().topLeft();
    companions_.clear();
    for (QObject* const child : window_.children()) {
        auto* const widget = qobject_cast<QWidget*>(child);
        if (widget == nullptr || !widget->isWindow() || !widget->isVisible())
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
    window_.setGeometry(normalGeometry_);
    if (QWindow* const handle = window_.windowHandle(); handle != nullptr && !maximized_)
        handle->setFramePosition(framePosition_);
}

void WindowHiding::BringBack() {
    if (std::exchange(hidden_, false)) {
        GiveBackPlace();
        // Maximised in a second step: a window manager does not hear of a state that the hidden window had
        // already.
        window_.setWindowState(Qt::WindowNoState);
        window_.show();
    }
    window_.setWindowState(maximized_ ? Qt::WindowMaximized : Qt::WindowNoState);
    window_.show();
    for (const QPointer<QWidget>& companion : std::exchange(companions_, {})) {
        if (companion != nullptr)
            companion->show();
    }
}

}  // namespace tallyhorn
