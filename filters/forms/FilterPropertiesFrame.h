#pragma once

#include <QGroupBox>
#include <array>

#include "filters/FilterFields.h"

class QCheckBox;
class QDateTimeEdit;
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

    /// Empties and unchecks all controls; disables the dates, which keep their values.
    void ClearFilterFields();
    /// Shows all fields except the name.  Without a date range, disables the dates, which keep their values.
    void ShowFields(const FilterFields& fields);
    /// Returns all fields except the name.
    FilterFields Fields() const;
    void ShowEventID(const std::string& text);
    /// Moves the focus to the event id and selects its text.
    void FocusEventID();
    void UseDateRange(bool use);
    void SetDates(AlarmDate begin, AlarmDate end);

private:
    static constexpr std::size_t EventTypeCount = 5;

    void AddDates(QVBoxLayout* layout);
    void AddTypes(QVBoxLayout* layout);
    void AddTexts(QVBoxLayout* layout);
    void EnableDates(bool enabled);

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
};

}  // namespace tallyhorn
