#include "filters/forms/frmFilter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <string_view>
#include <utility>

#include "desktop/help/HelpContexts.h"
#include "filters/forms/AccessKeyFrame.h"
#include "filters/forms/FilterValuesModel.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"

namespace tallyhorn {
namespace {

constexpr std::array<const char*, ViewFilter::CriterionCount> GroupCaptions = {
    "&Alarm Name", "&Log Type", "Acc&ount Name", "&Computer Name"};
constexpr std::string_view NothingCheckedText = "You must select at least one item to filter by.";
/// The least width of the combo boxes, in average characters.  Longer texts end in an ellipsis.
constexpr int LettersInView = 32;
constexpr int RowsInView = 16;

/// Gives every line the same size without measuring its text, which would take long for tens of thousands of
/// texts. The view cuts long texts off with an ellipsis.
class LineDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override {
        return {1, option.fontMetrics.height() + option.fontMetrics.height() / 3};
    }
};

/// A combo box that shows a long current text with an ellipsis, like its list.
class LineComboBox final : public QComboBox {
public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStylePainter painter(this);
        QStyleOptionComboBox option;
        initStyleOption(&option);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        const QRect room =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        constexpr int Padding = 4;
        option.currentText =
            fontMetrics().elidedText(option.currentText, Qt::ElideRight, room.width() - Padding);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }
};

}  // namespace

frmFilter::frmFilter(ViewFilter& filter, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), filter_(filter), boxes_(boxes) {
    setObjectName(QStringLiteral("frmFilter"));
    setWindowTitle(QStringLiteral("Filter Settings"));
    setProperty(HelpContextProperty, HelpNumber(HelpContext::ViewFilter));
    ViewFilter::Values values = filter_.ValuesOnShow();
    const ViewFilter::Criteria selected = filter_.SelectedTexts();
    for (std::size_t i = 0; i < values.size(); ++i)
        BuildGroup(i, std::move(values.at(i)), selected.at(i));
    BuildButtons();
    LayOut();
    chkFilterOn.front()->setFocus();
}

void frmFilter::BuildGroup(std::size_t index, std::vector<std::string> values,
                           const std::optional<std::string>& proposed) {
    const QString caption = QString::fromLatin1(GroupCaptions.at(index));
    const QString name = WithoutAccessKey(caption);
    // The names of the controls count from 1.
    const QString number = QString::number(index + 1);
    auto* const group = Named(new AccessKeyFrame(caption, this), QStringLiteral("fraGroup") + number);
    auto* const check = Named(new QCheckBox(QStringLiteral("Filter by this field:"), group),
                              QStringLiteral("chkFilterOn") + number);
    check->setAccessibleName(QStringLiteral("Filter by ") + name);
    group->SetFirst(check);
    QComboBox* const combo = Named(new LineComboBox(group), QStringLiteral("cmbFilterText") + number);
    combo->setAccessibleName(name);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(LettersInView);
    combo->setMaxVisibleItems(RowsInView);
    // Opens the list below the box.  Otherwise, some styles show the list as a menu as high as the screen.
    combo->setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"));
    auto* const view = new QListView(combo);
    view->setUniformItemSizes(true);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    combo->setView(view);
    combo->setItemDelegate(new LineDelegate(combo));
    auto* const model = new FilterValuesModel(std::move(values), combo);
    combo->setModel(model);
    proposedRows_.at(index) = proposed ? std::max(model->RowOf(*proposed), 0) : 0;
    combo->setCurrentIndex(-1);
    combo->setEnabled(false);

    auto* const layout = new QHBoxLayout(group);
    layout->addWidget(check);
    layout->addWidget(combo, 1);
    connect(check, &QCheckBox::toggled, this, [this, index](bool on) { EnableCombo(index, on); });
    connect(combo, &QComboBox::currentIndexChanged, this, [this, index] { ShowWholeText(index); });
    fraGroup.at(index) = group;
    chkFilterOn.at(index) = check;
    cmbFilterText.at(index) = combo;
}

void frmFilter::BuildButtons() {
    cmdApply = MakeButton(QStringLiteral("Apply"), QStringLiteral("cmdApply"), this);
    cmdApply->setDefault(true);
    cmdCancel = MakeButton(QStringLiteral("Cancel"), QStringLiteral("cmdCancel"), this);
    connect(cmdApply, &QPushButton::clicked, this, &frmFilter::Apply);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFilter::reject);
}

void frmFilter::LayOut() {
    QLabel* const lblInstructions =
        MakeLabel(QStringLiteral(
                      "To apply a filter, check one or more field names, and select a discrete value to find "
                      "in that field.  Then press the 'Apply' button."),
                  QStringLiteral("lblInstructions"), this);
    lblInstructions->setWordWrap(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(lblInstructions);
    for (QGroupBox* const group : fraGroup)
        layout->addWidget(group);
    layout->addStretch(1);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
}

/// Enables or disables a combo box.  If no text is selected in an enabled box, selects the text of the row
/// that was selected when the dialog opened, or else the first text, so that the filter never lacks a text.
void frmFilter::EnableCombo(std::size_t index, bool enabled) {
    QComboBox* const combo = cmbFilterText.at(index);
    combo->setEnabled(enabled);
    if (!enabled)
        return;
    if (combo->currentIndex() < 0 && combo->count() > 0)
        combo->setCurrentIndex(proposedRows_.at(index));
    combo->setFocus();
}

void frmFilter::ShowWholeText(std::size_t index) {
    QComboBox* const combo = cmbFilterText.at(index);
    combo->setToolTip(combo->currentData(Qt::ToolTipRole).toString());
}

void frmFilter::Apply() {
    if (std::none_of(chkFilterOn.begin(), chkFilterOn.end(),
                     [](const auto* box) { return box->isChecked(); })) {
        boxes_.Inform(NothingCheckedText);
        return;
    }
    // Apply lets pending events run; the user must not press Apply again meanwhile.
    setEnabled(false);
    filter_.Apply(Chosen());
    accept();
}

/// Leaves out a checked field that has no text to choose, because the page in front has no messages: an empty
/// text would hide nearly every arrival.
ViewFilter::Criteria frmFilter::Chosen() const {
    ViewFilter::Criteria criteria;
    for (std::size_t i = 0; i < criteria.size(); ++i) {
        if (!chkFilterOn.at(i)->isChecked() || cmbFilterText.at(i)->currentIndex() < 0)
            continue;
        const auto* const values = static_cast<const FilterValuesModel*>(cmbFilterText.at(i)->model());
        criteria.at(i) = values->Value(cmbFilterText.at(i)->currentIndex());
    }
    return criteria;
}

}  // namespace tallyhorn
