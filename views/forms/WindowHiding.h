#pragma once

#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QWidget>
#include <vector>

#include "views/forms/ServerHost.h"

namespace tallyhorn {

/// Takes the minimised main window off the screen, with the windows that belong to it, and brings all of them
/// back as they were.  User-interface thread only; the window outlives it.
class WindowHiding {
public:
    WindowHiding(QWidget& window, ServerLifetime& lifetime) : window_(window), lifetime_(lifetime) {}

    /// The window's state has changed, or no dialog stands in front of it any more.
    void LookAtState();
    /// In front of all, on the screen where it was.
    void Show(bool maximized);
    /// As it was, but without asking for the keyboard.
    void Uncover();
    bool IsHidden() const { return hidden_; }

private:
    void Minimized();
    bool BelongsToIt(const QWidget& other) const;
    void Hide();
    void BringBack();
    void GiveBackPlace();

    QWidget& window_;
    ServerLifetime& lifetime_;
    std::vector<QPointer<QWidget>> companions_;  ///< what was hidden with it
    QPointer<QScreen> screen_;
    QRect normalGeometry_;
    QPoint framePosition_;  ///< of the window that is not maximised
    bool maximized_ = false;
    bool minimized_ = false;  ///< hidden or on the task bar
    bool hidden_ = false;
};

}  // namespace tallyhorn
