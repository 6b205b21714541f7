#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QWidget>
#include <vector>

namespace tallyhorn {

class frmTrayIcon;

/// When the user minimises the main window, hides it and the windows that belong to it, if the
/// notification-area icon can bring them back.  Later restores all of them as they were.  Keeps references to
/// both arguments: once one of them is destroyed, no function may be called and no event may run.
class WindowHiding final : public QObject {
public:
    WindowHiding(QWidget& window, frmTrayIcon& tray);

    /// Shows the main window in front of all others, on the screen on which it was last visible.
    void Show(bool maximized);
    /// Restores the hidden main window to its earlier state without giving it the focus.
    void Uncover();
    bool IsHidden() const { return hidden_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void LookAtState();
    void Minimized();
    bool BelongsToIt(const QWidget& other) const;
    void Hide();
    void BringBack();
    void GiveBackPlace();

    QWidget& window_;
    frmTrayIcon& tray_;
    std::vector<QPointer<QWidget>> companions_;  ///< the windows that were hidden with the main window
    QPointer<QScreen> screen_;
    QRect normalGeometry_;
    QPoint framePosition_;  ///< the frame's position when the window is not maximised
    bool maximized_ = false;
    bool minimized_ = false;  ///< whether the window is hidden or on the task bar
    bool hidden_ = false;
};

}  // namespace tallyhorn
