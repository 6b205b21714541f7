#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace tallyhorn {

class Clock;
class UserNames;

/// The window that shows the program's version, the user's name and the machine's name.  A click anywhere in
/// it closes it.
class frmStartup final : public QDialog {
    Q_OBJECT

public:
    enum class Role {
        /// A window without frame and focus, shown when the program starts.  It closes itself after two
        /// seconds, or when a modal dialog or message box opens.  Its parent deletes it.
        Splash,
        AboutBox  ///< a modal dialog with a frame
    };

    frmStartup(Role role, const UserNames& names, const Clock& time, QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void BuildLabels(const UserNames& names, const Clock& time);
    void LayOut();
    void BecomeSplash();

    QLabel* lblTitle;
    QLabel* lblVersion;
    QLabel* lblStartupInfo[2];
    QLabel* lblCopyright;
    QPushButton* cmdClose;
};

}  // namespace tallyhorn
