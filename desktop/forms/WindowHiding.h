#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QWidget>
#include <vector>

namespace tallyhorn {

class frmTrayIcon;

/// Hides the main window and the windows that belong to it when the user minimises it and the
/// notification-area icon can bring it back; then restores all of them as they were.  Watches the events of
/// the main window, which it must outlive.
class WindowHiding final : public QObject {
public:
    WindowHiding(QWidget& window, frmTrayIcon& tray);

    /// Shows the window in front of all others, on the screen on which it was last shown.
    void Show(bool maximized);
    /// Restores a hidden window to its earlier state without giving it the focus.
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
    std::vector<QPointer<QWidget>> companions_;  ///< the windows that were hidden with it
    QPointer<QScreen> screen_;
    QRect normalGeometry_;
    QPoint framePosition_;  ///< the frame's position when the window is not maximised
    bool maximized_ = false;
    bool minimized_ = false;  ///< hidden or on the task bar
    bool hidden_ = false;
};

}  // namespace tallyhorn
