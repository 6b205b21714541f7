#include "filters/forms/FilterPropertiesFrame.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRadioButton>
#include <QVBoxLayout>

#include "filters/forms/AccessKeyFrame.h"
#include "records/AnsiText.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"

namespace tallyhorn {
namespace {

enum DateOption : std::size_t { WithDates, WithoutDates };

/// Converts the date as if it were UTC, because with daylight saving time some hours would be invalid.
QDateTime ToQDateTime(AlarmDate date) {
    return QDateTime::fromSecsSinceEpoch(date.Seconds, Qt::UTC);
}

AlarmDate ToAlarmDate(const QDateTime& moment) {
    return {moment.toSecsSinceEpoch()};
}

QDateTimeEdit* DatePicker(const QString& name, QWidget* parent) {
    auto* const picker = Named(new QDateTimeEdit(parent), name);
    picker->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    picker->setTimeSpec(Qt::UTC);
    picker->setDateTimeRange(ToQDateTime(FirstTypedDate), ToQDateTime(LastTypedDate));
    picker->setDisplayFormat(QStringLiteral("MMMM dd yyyy hh:mm:ss AP"));
    picker->setCalendarPopup(true);
    return picker;
}

}  // namespace

FilterPropertiesFrame::FilterPropertiesFrame(QWidget* parent)
    : QGroupBox(QStringLiteral("Suppression Filter Properties"), parent) {
    setObjectName(QStringLiteral("fraFilterProps"));
    auto* const layout = new QVBoxLayout(this);
    AddDates(layout);
    AddTypes(layout);
    AddTexts(layout);
    CollectCaptions();
    ClearFilterFields();
}

void FilterPropertiesFrame::CollectCaptions() {
    for (QWidget* const control : findChildren<QWidget*>()) {
        for (const char* const property : {"text", "title"}) {
            const QString caption = control->property(property).toString();
            if (caption.contains(QLatin1Char('&')))
                captioned_.push_back({control, property, caption});
        }
    }
}

void FilterPropertiesFrame::SetEditable(bool editable) {
    setEnabled(editable);
    for (const auto& [control, property, caption] : captioned_)
        control->setProperty(property, editable ? caption : WithoutAccessKey(caption));
}

void FilterPropertiesFrame::AddDates(QVBoxLayout* layout) {
    auto* const fraUseDate =
        Named(new QGroupBox(QStringLiteral("Filter By Date"), this), QStringLiteral("fraUseDate"));
    layout->addWidget(fraUseDate);
    const std::array<const char*, 2> captions = {"&Yes", "&No"};
    auto* const grid = new QGridLayout(fraUseDate);
    for (std::size_t i = 0; i < optFilterByDate.size(); ++i) {
        optFilterByDate.at(i) = Named(new QRadioButton(QLatin1String(captions.at(i)), fraUseDate),
                                      QStringLiteral("optFilterByDate%1").arg(i));
        grid->addWidget(optFilterByDate.at(i), static_cast<int>(i), 0);
    }
    connect(optFilterByDate[WithDates], &QRadioButton::toggled, this,
            &FilterPropertiesFrame::DateOptionToggled);
    dtBegin = DatePicker(QStringLiteral("dtBegin"), fraUseDate);
    lblBeginDate = MakeLabelFor(dtBegin, QStringLiteral("&Beginning Date:"), QStringLiteral("lblBeginDate"));
    dtEnd = DatePicker(QStringLiteral("dtEnd"), fraUseDate);
    lblEndDate = MakeLabelFor(dtEnd, QStringLiteral("&Ending Date:"), QStringLiteral("lblEndDate"));
    grid->addWidget(lblBeginDate, 0, 1);
    grid->addWidget(dtBegin, 0, 2);
    grid->addWidget(lblEndDate, 1, 1);
    grid->addWidget(dtEnd, 1, 2);
    grid->setColumnStretch(2, 1);
    grid->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());
}

void FilterPropertiesFrame::AddTypes(QVBoxLayout* layout) {
    auto* const fraTypes =
        Named(new AccessKeyFrame(QStringLiteral("&Type:"), this), QStringLiteral("fraTypes"));
    layout->addWidget(fraTypes);
    const std::array<const char*, EventTypeCount> captions = {"&Information", "&Warning", "Err&or",
                                                              "&Failure Audit", "Success &Audit"};
    auto* const row = new QHBoxLayout(fraTypes);
    for (std::size_t i = 0; i < chkType.size(); ++i) {
        chkType.at(i) =
            Named(new QCheckBox(QLatin1String(captions.at(i)), fraTypes), QStringLiteral("chkType%1").arg(i));
        row->addWidget(chkType.at(i));
    }
    row->addStretch();
    fraTypes->SetFirst(chkType.front());
}

void FilterPropertiesFrame::AddTexts(QVBoxLayout* layout) {
    auto* const form = new QFormLayout;
    layout->addLayout(form);
    txtSource = AddText(form, QStringLiteral("Source"), QStringLiteral("&Source:"),
                        decltype(SuppressionFilter::Source)::Width);
    txtCategory = AddText(form, QStringLiteral("Category"), QStringLiteral("&Category:"),
                          decltype(SuppressionFilter::Category)::Width);
    txtUser = AddText(form, QStringLiteral("User"), QStringLiteral("&User:"),
                      decltype(SuppressionFilter::AccountName)::Width);
    txtComputer = AddText(form, QStringLiteral("Computer"), QStringLiteral("Com&puter:"),
                          decltype(SuppressionFilter::Computer)::Width);
    txtEventID = Named(new QLineEdit(this), QStringLiteral("txtEventID"));
    form->addRow(MakeLabelFor(txtEventID, QStringLiteral("E&vent ID:"), QStringLiteral("lblEventID")),
                 txtEventID);
    // OK refuses any other text with a beep and no message, so the tip has to say what is valid.
    txtEventID->setToolTip(QStringLiteral("A whole number from -2147483648 to 2147483647"));
}

/// Adds a box that accepts no more characters than its field of a filter has.  While it is full, "begins
/// with" is shown in front of it, since the filter then also matches longer texts.
QLineEdit* FilterPropertiesFrame::AddText(QFormLayout* form, const QString& name, const QString& caption,
                                          std::size_t width) {
    auto* const box = Named(new QLineEdit(this), QStringLiteral("txt") + name);
    box->setMaxLength(static_cast<int>(width));
    QLabel* const beginsWith =
        MakeLabel(QStringLiteral("begins with"), QStringLiteral("lblBeginsWith") + name, this);
    beginsWith->hide();
    connect(box, &QLineEdit::textChanged, beginsWith, [=](const QString& text) {
        const bool isFull = Trim(FromQString(text)).size() == width;
        beginsWith->setVisible(isFull);
        box->setAccessibleDescription(isFull ? beginsWith->text() : QString());
    });
    auto* const row = new QHBoxLayout;
    row->addWidget(beginsWith);
    row->addWidget(box);
    form->addRow(MakeLabelFor(box, caption, QStringLiteral("lbl") + name), row);
    return box;
}

void FilterPropertiesFrame::DateOptionToggled(bool use) {
    for (QWidget* const control : {static_cast<QWidget*>(lblBeginDate), static_cast<QWidget*>(dtBegin),
                                   static_cast<QWidget*>(lblEndDate), static_cast<QWidget*>(dtEnd)})
        control->setEnabled(use);
    // Tab must reach the checked option only; Qt ensures that only after one of them has had the focus.
    optFilterByDate.at(WithDates)->setFocusPolicy(use ? Qt::StrongFocus : Qt::ClickFocus);
    optFilterByDate.at(WithoutDates)->setFocusPolicy(use ? Qt::ClickFocus : Qt::StrongFocus);
}

void FilterPropertiesFrame::UseDateRange(bool use) {
    optFilterByDate.at(use ? WithDates : WithoutDates)->setChecked(true);
    DateOptionToggled(use);
}

void FilterPropertiesFrame::ClearFilterFields() {
    ShowFields({});
}

void FilterPropertiesFrame::ShowFields(const FilterFields& fields) {
    txtSource->setText(ToQString(fields.Source));
    txtCategory->setText(ToQString(fields.Category));
    txtUser->setText(ToQString(fields.AccountName));
    txtComputer->setText(ToQString(fields.Computer));
    txtEventID->setText(ToQString(fields.EventID));
    for (std::size_t i = 0; i < chkType.size(); ++i)
        chkType.at(i)->setChecked((fields.EventTypes & (1 << i)) != 0);
    UseDateRange(fields.UseDateRange);
    dtBegin->setDateTime(ToQDateTime(fields.UseDateRange ? fields.BeginDate : presentDate_));
    dtEnd->setDateTime(ToQDateTime(fields.UseDateRange ? fields.EndDate : presentDate_));
}

FilterFields FilterPropertiesFrame::Fields() const {
    FilterFields fields;
    fields.Source = FromQString(txtSource->text());
    fields.Category = FromQString(txtCategory->text());
    fields.AccountName = FromQString(txtUser->text());
    fields.Computer = FromQString(txtComputer->text());
    fields.EventID = FromQString(txtEventID->text());
    for (std::size_t i = 0; i < chkType.size(); ++i)
        fields.EventTypes |= chkType.at(i)->isChecked() ? 1 << i : 0;
    fields.UseDateRange = optFilterByDate[WithDates]->isChecked();
    fields.BeginDate = ToAlarmDate(dtBegin->dateTime());
    fields.EndDate = ToAlarmDate(dtEnd->dateTime());
    return fields;
}

void FilterPropertiesFrame::FocusEventID() {
    txtEventID->setFocus();
    txtEventID->selectAll();
}

}  // namespace tallyhorn
