#pragma once

#include <QDialog>
#include <array>

#include "config/Preferences.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tallyhorn {

/// The preferences dialog.  Reads the settings file in its constructor, so each opening needs a new object.
/// Closing the dialog hides it; the caller deletes it.
class frmPreferences final : public QDialog {
    Q_OBJECT

public:
    explicit frmPreferences(const Preferences::Parts& parts, QWidget* parent = nullptr);

private:
    QGroupBox* BuildPort();
    QGroupBox* BuildSound();
    QGroupBox* BuildTabs();
    QGroupBox* BuildDates();
    QWidget* BuildButtons();

    void Show(const PreferenceFields& fields);
    PreferenceFields Fields() const;
    void StartAtPort();
    void Ok();
    bool Save(const PreferenceFields& fields);
    void Reset();

    Preferences preferences_;
    PendingEvents& events_;
    bool busy_ = false;  ///< true during a command, so that a click among the events that it runs is ignored

    QLineEdit* txtSyslogUDPPort = nullptr;
    QLabel* lblPortNote = nullptr;
    QCheckBox* chkSound = nullptr;
    std::array<QCheckBox*, 3> chkShowTab{};
    std::array<QRadioButton*, 2> optDateTime{};
    QLineEdit* txtSeperator = nullptr;
    QPushButton* cmdReset = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
};

}  // namespace tallyhorn
