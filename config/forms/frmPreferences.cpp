#include "config/forms/frmPreferences.h"

#include <QApplication>
#include <QCheckBox>
#include <QCursor>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include "desktop/help/HelpContexts.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"

namespace tallyhorn {
namespace {

/// The widths of the text boxes, in characters of average width.
constexpr int PortCharacters = 10;
constexpr int SeparatorCharacters = 5;

class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(QCursor(Qt::WaitCursor)); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

/// Returns a text box that does not accept line ends, for example in pasted text, because each would start
/// another line in the settings file.
QLineEdit* MakeTextBox(const QString& name, int characters, QWidget* parent) {
    static const QRegularExpression OneLine(QStringLiteral("[^\\r\\n\\0]*"));
    auto* const box = Named(new QLineEdit(parent), name);
    box->setValidator(new QRegularExpressionValidator(OneLine, box));
    box->setFixedWidth(box->fontMetrics().averageCharWidth() * characters + box->sizeHint().height());
    return box;
}

/// Returns a layout with the caption to the left of the text box.
QHBoxLayout* MakeLine(const QString& caption, const QString& name, QLineEdit* box) {
    auto* const line = new QHBoxLayout;
    line->addWidget(MakeLabelFor(box, caption, name));
    line->addWidget(box);
    line->addStretch();
    return line;
}

}  // namespace

frmPreferences::frmPreferences(const Preferences::Parts& parts, QWidget* parent)
    : QDialog(parent,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      preferences_(parts),
      events_(parts.Events) {
    setObjectName(QStringLiteral("frmPreferences"));
    setWindowTitle(QStringLiteral("Tallyhorn Listener Console Preferences"));
    setProperty(HelpContextProperty, HelpNumber(HelpContext::Preferences));
    auto* const layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    // Leaves room for the whole title, which may be bold, and for the icon and the buttons of the title bar.
    layout->addStrut(fontMetrics().horizontalAdvance(windowTitle()) + 12 * fontMetrics().height());
    // Tab visits the controls in the order in which they are created.
    layout->addWidget(BuildPort());
    layout->addWidget(BuildSound());
    layout->addWidget(BuildTabs());
    layout->addWidget(BuildDates());
    layout->addWidget(BuildButtons());
    connect(cmdReset, &QPushButton::clicked, this, &frmPreferences::Reset);
    connect(cmdOK, &QPushButton::clicked, this, &frmPreferences::Ok);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Show(preferences_.Load());
    StartAtPort();
}

QGroupBox* frmPreferences::BuildPort() {
    auto* const fraPort =
        Named(new QGroupBox(tr("UDP Port That Receives Syslog Messages"), this), QStringLiteral("fraPort"));
    txtSyslogUDPPort = MakeTextBox(QStringLiteral("txtSyslogUDPPort"), PortCharacters, fraPort);
    auto* const layout = new QVBoxLayout(fraPort);
    layout->addLayout(MakeLine(tr("&Port Number:"), QStringLiteral("lblSyslogUDPPort"), txtSyslogUDPPort));
    lblPortNote = MakeLabel(QString(), QStringLiteral("lblPortNote"), fraPort);
    // The empty line has a height too, so that the dialog keeps its size.
    lblPortNote->setMinimumHeight(lblPortNote->fontMetrics().height());
    layout->addWidget(lblPortNote);
    connect(txtSyslogUDPPort, &QLineEdit::textChanged, this, [this](const QString& text) {
        lblPortNote->setText(ToQString(preferences_.NoteAbout(FromQString(text))));
        txtSyslogUDPPort->setAccessibleDescription(lblPortNote->text());
    });
    return fraPort;
}

QGroupBox* frmPreferences::BuildSound() {
    auto* const fraSound = Named(new QGroupBox(tr("Audible Alerts"), this), QStringLiteral("fraSound"));
    chkSound = Named(new QCheckBox(tr("&Sound an alert when notifications arrive."), fraSound),
                     QStringLiteral("chkSound"));
    (new QVBoxLayout(fraSound))->addWidget(chkSound);
    return fraSound;
}

QGroupBox* frmPreferences::BuildTabs() {
    auto* const fraTabs = Named(new QGroupBox(tr("Message Views"), this), QStringLiteral("fraTabs"));
    auto* const layout = new QVBoxLayout(fraTabs);
    const std::array<QString, 3> captions = {tr("S&how Received NetBIOS Messages Tab"),
                                             tr("Sho&w Received Syslog Messages Tab"),
                                             tr("Show &Consolidated Syslog Messages Tab")};
    for (std::size_t i = 0; i < chkShowTab.size(); ++i) {
        chkShowTab.at(i) =
            Named(new QCheckBox(captions.at(i), fraTabs), QStringLiteral("chkShowTab%1").arg(i));
        layout->addWidget(chkShowTab.at(i));
    }
    return fraTabs;
}

QGroupBox* frmPreferences::BuildDates() {
    auto* const fraDates = Named(new QGroupBox(tr("Display Dates As"), this), QStringLiteral("fraDates"));
    auto* const layout = new QVBoxLayout(fraDates);
    auto* const orders = new QHBoxLayout;
    const std::array<QString, 2> captions = {tr("&MM/DD/YYYY"), tr("&DD/MM/YYYY")};
    for (std::size_t i = 0; i < optDateTime.size(); ++i) {
        optDateTime.at(i) =
            Named(new QRadioButton(captions.at(i), fraDates), QStringLiteral("optDateTime%1").arg(i));
        orders->addWidget(optDateTime.at(i));
    }
    orders->addStretch();
    layout->addLayout(orders);
    txtSeperator = MakeTextBox(QStringLiteral("txtSeperator"), SeparatorCharacters, fraDates);
    layout->addLayout(
        MakeLine(tr("D&ate Separator (e.g. / . - ):"), QStringLiteral("lblSeperator"), txtSeperator));
    return fraDates;
}

QWidget* frmPreferences::BuildButtons() {
    auto* const buttons = new QWidget(this);
    cmdReset = MakeButton(tr("&Reset Main Window Dimensions and Column Widths"), QStringLiteral("cmdReset"),
                          buttons);
    cmdOK = MakeButton(tr("OK"), QStringLiteral("cmdOK"), buttons);
    cmdOK->setDefault(true);
    cmdCancel = MakeButton(tr("Cancel"), QStringLiteral("cmdCancel"), buttons);
    auto* const answers = new QHBoxLayout;
    answers->addStretch();
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    auto* const layout = new QVBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdReset);
    layout->addLayout(answers);
    return buttons;
}

void frmPreferences::Show(const PreferenceFields& fields) {
    txtSyslogUDPPort->setText(ToQString(fields.Port));
    txtSeperator->setText(ToQString(fields.Seperator));
    for (std::size_t i = 0; i < chkShowTab.size(); ++i)
        chkShowTab.at(i)->setChecked(fields.ShowTab.at(i));
    chkSound->setChecked(fields.Sound);
    optDateTime.at(fields.DayFirst ? 1 : 0)->setChecked(true);
    // The Tab key must reach only the checked radio button.  Qt itself ensures that only after one of the
    // buttons has had the focus.
    optDateTime.at(fields.DayFirst ? 0 : 1)->setFocusPolicy(Qt::ClickFocus);
}

PreferenceFields frmPreferences::Fields() const {
    PreferenceFields fields{.Port = FromQString(txtSyslogUDPPort->text()),
                            .Seperator = FromQString(txtSeperator->text()),
                            .ShowTab = {},
                            .Sound = chkSound->isChecked(),
                            .DayFirst = !optDateTime[0]->isChecked()};
    for (std::size_t i = 0; i < chkShowTab.size(); ++i)
        fields.ShowTab.at(i) = chkShowTab.at(i)->isChecked();
    return fields;
}

void frmPreferences::StartAtPort() {
    txtSyslogUDPPort->setFocus();
    txtSyslogUDPPort->selectAll();
}

/// Saves the fields as they were when the button was pressed, without what the user types while events run.
/// Saves them even if the end of the log-on session closes the dialog meanwhile.
void frmPreferences::Ok() {
    if (busy_)
        return;
    const PreferenceFields fields = Fields();
    if (!preferences_.Validate(fields)) {
        StartAtPort();
    } else if (Save(fields) && isVisible()) {
        accept();
    }
}

bool frmPreferences::Save(const PreferenceFields& fields) {
    const QScopedValueRollback busy(busy_, true);
    const BusyCursor cursor;
    events_.Run();
    return preferences_.Save(fields);
}

void frmPreferences::Reset() {
    if (busy_)
        return;
    const QScopedValueRollback busy(busy_, true);
    preferences_.Reset();
}

}  // namespace tallyhorn
