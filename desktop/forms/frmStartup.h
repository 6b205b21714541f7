#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace tallyhorn {

class Clock;
class UserNames;

/// The window with the program's version, the user's and the machine's name; owns nothing else.
/// User-interface thread only.  A click anywhere closes it.
class frmStartup final : public QDialog {
    Q_OBJECT

public:
    enum class Role {
        Splash,   ///< greets: no frame, never the focus, gone after two seconds or before any question
        AboutBox  ///< a dialog as others
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
