#pragma once

#include <QGroupBox>
#include <array>
#include <vector>

#include "filters/FilterFields.h"

class QCheckBox;
class QDateTimeEdit;
class QFormLayout;
class QLabel;
class QLineEdit;
class QRadioButton;
class QVBoxLayout;

namespace tallyhorn {

/// The frame `fraFilterProps`, with a control for each property of a filter except its name.
class FilterPropertiesFrame final : public QGroupBox {
    Q_OBJECT

public:
    explicit FilterPropertiesFrame(QWidget* parent = nullptr);

    /// Sets the date that both date boxes show for a filter without a date range.
    void SetPresentDate(AlarmDate date) { presentDate_ = date; }
    /// Enables or disables all controls.  Disabled controls have no access keys, so that the keys act on the
    /// buttons beside the list of filters.
    void SetEditable(bool editable);

    /// Shows the fields of a filter without any test, and disables the date boxes.
    void ClearFilterFields();
    /// Shows all fields except the name.  Disables the date boxes if there is no date range.
    void ShowFields(const FilterFields& fields);
    /// Returns all fields except the name.
    FilterFields Fields() const;
    /// Moves the focus to the event id and selects its text.
    void FocusEventID();

private:
    static constexpr std::size_t EventTypeCount = 5;

    /// A control with an access key in its text or title.
    struct Captioned {
        QWidget* Control;
        const char* Property;
        QString Caption;
    };

    void AddDates(QVBoxLayout* layout);
    void AddTypes(QVBoxLayout* layout);
    void AddTexts(QVBoxLayout* layout);
    QLineEdit* AddText(QFormLayout* form, const QString& name, const QString& caption, std::size_t width);
    void CollectCaptions();
    void UseDateRange(bool use);
    void DateOptionToggled(bool use);

    std::array<QRadioButton*, 2> optFilterByDate{};
    QLabel* lblBeginDate = nullptr;
    QDateTimeEdit* dtBegin = nullptr;
    QLabel* lblEndDate = nullptr;
    QDateTimeEdit* dtEnd = nullptr;
    std::array<QCheckBox*, EventTypeCount> chkType{};
    QLineEdit* txtSource = nullptr;
    QLineEdit* txtCategory = nullptr;
    QLineEdit* txtUser = nullptr;
    QLineEdit* txtComputer = nullptr;
    QLineEdit* txtEventID = nullptr;
    std::vector<Captioned> captioned_;
    AlarmDate presentDate_;
};

}  // namespace tallyhorn
