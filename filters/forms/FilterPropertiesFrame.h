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

/// The frame `fraFilterProps`: all that a filter has besides its name, as controls.  User-interface thread
/// only.
class FilterPropertiesFrame final : public QGroupBox {
    Q_OBJECT

public:
    explicit FilterPropertiesFrame(QWidget* parent = nullptr);

    /// Empties and unchecks everything; the dates stay, out of use.
    void ClearFilterFields();
    /// Shows all fields but the name; without a date range the dates stay, out of use.
    void ShowFields(const FilterFields& fields);
    /// All fields but the name.
    FilterFields Fields() const;
    void ShowEventID(const std::string& text);
    /// Where an event id is to be typed anew.
    void FocusEventID();
    void UseDateRange(bool use);
    /// Both ends of the range.
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
