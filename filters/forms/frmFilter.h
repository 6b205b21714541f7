#pragma once

#include <QDialog>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "filters/ViewFilter.h"
#include "platform/MessageBoxes.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;

namespace tallyhorn {

/// The modal dialog in which the user chooses the texts of the view filter.  Offers the texts that the lists
/// of the channel in front had when the dialog was created.  `filter` and `boxes` must outlive it.
class frmFilter final : public QDialog {
    Q_OBJECT

public:
    frmFilter(ViewFilter& filter, MessageBoxes& boxes, QWidget* parent = nullptr);

private:
    void BuildGroup(std::size_t index, std::vector<std::string> values,
                    const std::optional<std::string>& proposed);
    void BuildButtons();
    void LayOut();
    void EnableCombo(std::size_t index, bool enabled);
    void ShowWholeText(std::size_t index);
    void Apply();
    ViewFilter::Criteria Chosen() const;

    ViewFilter& filter_;
    MessageBoxes& boxes_;

    std::array<QGroupBox*, ViewFilter::CriterionCount> fraGroup{};
    std::array<QCheckBox*, ViewFilter::CriterionCount> chkFilterOn{};
    std::array<QComboBox*, ViewFilter::CriterionCount> cmbFilterText{};
    std::array<int, ViewFilter::CriterionCount> proposedRows_{};
    QPushButton* cmdApply = nullptr;
    QPushButton* cmdCancel = nullptr;
};

}  // namespace tallyhorn
