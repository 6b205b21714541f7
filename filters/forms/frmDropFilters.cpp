#include "filters/forms/frmDropFilters.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/help/HelpContexts.h"
#include "filters/forms/AccessKeyFrame.h"
#include "filters/forms/FilterPropertiesFrame.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"

namespace tallyhorn {
namespace {

constexpr int LeastRowsShown = 3;  ///< rows of the list that stay visible on a small screen

}  // namespace

// Controls with the same access key get the focus in turn, in the order of their construction.
frmDropFilters::frmDropFilters(SuppressionFilters& filters, MessageBoxes& boxes, const Clock& clock,
                               QWidget* parent)
    : QDialog(parent),
      editor_(filters, boxes),
      fraManageFilters(new AccessKeyFrame(QStringLiteral("Suppression &Filters"), this)),
      lvwManageFilters(new QTreeView(fraManageFilters)),
      cmdAdd(MakeButton(QStringLiteral("&Add"), QStringLiteral("cmdAdd"), fraManageFilters)),
      cmdEdit(MakeButton(QStringLiteral("&Edit"), QStringLiteral("cmdEdit"), fraManageFilters)),
      cmdDelete(MakeButton(QStringLiteral("&Delete"), QStringLiteral("cmdDelete"), fraManageFilters)),
      lblInstructions(MakeLabel(
          QStringLiteral("Leave all fields blank that should not be used when filtering log records."),
          QStringLiteral("lblInstructions"), this)),
      txtFilterName(Named(new QLineEdit(this), QStringLiteral("txtFilterName"))),
      lblFilterName(MakeLabelFor(txtFilterName, QStringLiteral("Su&ppression Filter Name:"),
                                 QStringLiteral("lblFilterName"))),
      fraFilterProps(new FilterPropertiesFrame(this)),
      cmdOK(MakeButton(QStringLiteral("OK"), QStringLiteral("cmdOK"), this)),
      cmdCancel(MakeButton(QStringLiteral("Cancel"), QStringLiteral("cmdCancel"), this)) {
    setObjectName(QStringLiteral("frmDropFilters"));
    BuildList();
    BuildButtons();
    LayOut();
    fraFilterProps->SetPresentDate(AlarmDate{clock.LocalSeconds()});
    InitForm();
}

frmDropFilters::~frmDropFilters() {
    // listModel_ is destroyed before the view, which would then call slots of this half-destroyed object.
    lvwManageFilters->setModel(nullptr);
}

void frmDropFilters::BuildList() {
    fraManageFilters->setObjectName(QStringLiteral("fraManageFilters"));
    fraManageFilters->SetFirst(lvwManageFilters);
    lvwManageFilters->setObjectName(QStringLiteral("lvwManageFilters"));
    lvwManageFilters->setAccessibleName(WithoutAccessKey(fraManageFilters->title()));
    lvwManageFilters->setRootIsDecorated(false);
    lvwManageFilters->setUniformRowHeights(true);
    lvwManageFilters->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwManageFilters->setModel(&listModel_);
    QHeaderView* const header = lvwManageFilters->header();
    header->setSectionsClickable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->setSortIndicatorShown(true);
    const QFontMetrics metrics = lvwManageFilters->fontMetrics();
    lvwManageFilters->setMinimumHeight(header->sizeHint().height() + LeastRowsShown * (metrics.height() + 2));
    connect(header, &QHeaderView::sortIndicatorChanged, this,
            [this](int, Qt::SortOrder order) { SortList(order); });
    // The lists of the main window have the same key for their first column.
    auto* const sort = new QShortcut(Qt::CTRL | Qt::Key_1, lvwManageFilters);
    connect(sort, &QShortcut::activated, this, [header] {
        const bool isAscending =
            header->sortIndicatorSection() == 0 && header->sortIndicatorOrder() == Qt::AscendingOrder;
        header->setSortIndicator(0, isAscending ? Qt::DescendingOrder : Qt::AscendingOrder);
    });
    const QItemSelectionModel* const selection = lvwManageFilters->selectionModel();
    connect(selection, &QItemSelectionModel::currentChanged, this, &frmDropFilters::SelectInEditor);
    // A click with Ctrl deselects the row.  It is selected again, so that the user sees which filter Delete
    // will delete.
    connect(selection, &QItemSelectionModel::selectionChanged, this, [this, selection] {
        if (!selection->hasSelection())
            ShowSelection();
    });
}

void frmDropFilters::BuildButtons() {
    connect(cmdAdd, &QPushButton::clicked, this, &frmDropFilters::Add);
    connect(cmdEdit, &QPushButton::clicked, this, &frmDropFilters::Edit);
    connect(cmdDelete, &QPushButton::clicked, this, &frmDropFilters::Delete);
    connect(cmdOK, &QPushButton::clicked, this, &frmDropFilters::SaveFilter);
    connect(cmdCancel, &QPushButton::clicked, this, &frmDropFilters::reject);
}

void frmDropFilters::LayOut() {
    auto* const listLayout = new QGridLayout(fraManageFilters);
    listLayout->addWidget(lvwManageFilters, 0, 0, 4, 1);
    listLayout->addWidget(cmdAdd, 0, 1);
    listLayout->addWidget(cmdEdit, 1, 1);
    listLayout->addWidget(cmdDelete, 2, 1);
    listLayout->setRowStretch(3, 1);
    listLayout->setColumnStretch(0, 1);
    auto* const nameLayout = new QHBoxLayout;
    nameLayout->addWidget(lblFilterName);
    nameLayout->addWidget(txtFilterName);
    auto* const buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(cmdCancel, QDialogButtonBox::RejectRole);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(fraManageFilters, 1);
    layout->addWidget(lblInstructions);
    layout->addLayout(nameLayout);
    layout->addWidget(fraFilterProps);
    // Fills the dialog's height while the list is hidden.
    layout->addStretch();
    layout->addWidget(buttons);
}

void frmDropFilters::InitForm() {
    fraFilterProps->ClearFilterFields();
    editor_.InitForm();
    ArrangeForMode();
}

void frmDropFilters::InitFormAsManager() {
    editor_.InitFormAsManager();
    ArrangeForMode();
}

void frmDropFilters::InitFormAsQuickAdd(const AlarmRecord& alarm) {
    const FilterFields proposal = editor_.InitFormAsQuickAdd(alarm);
    txtFilterName->setText(ToQString(proposal.FilterName));
    fraFilterProps->ShowFields(proposal);
    ArrangeForMode();
}

void frmDropFilters::Add() {
    txtFilterName->clear();
    fraFilterProps->ClearFilterFields();
    editor_.Add();
    ArrangeForMode();
}

void frmDropFilters::Edit() {
    const FilterFields fields = editor_.Edit();
    txtFilterName->setText(ToQString(fields.FilterName));
    fraFilterProps->ShowFields(fields);
    ArrangeForMode();
}

void frmDropFilters::Delete() {
    if (!editor_.Delete())
        QApplication::beep();
    UpdateListButtons();
    if (!lvwManageFilters->isEnabled())
        FocusFirst();
}

void frmDropFilters::SaveFilter() {
    FilterFields fields = fraFilterProps->Fields();
    fields.FilterName = FromQString(txtFilterName->text());
    switch (editor_.Save(fields)) {
        case DropFilterEditor::Answer::Saved:
            ArrangeForMode();
            break;
        case DropFilterEditor::Answer::NotWritten:
            QApplication::beep();
            ArrangeForMode();
            break;
        case DropFilterEditor::Answer::NoName:
        case DropFilterEditor::Answer::NameInUse:
            txtFilterName->setFocus();
            break;
        case DropFilterEditor::Answer::NoEventID:
            QApplication::beep();
            fraFilterProps->FocusEventID();
            break;
        case DropFilterEditor::Answer::NameTooLong:
            break;
    }
}

void frmDropFilters::SortList(Qt::SortOrder order) {
    editor_.Sort(order == Qt::AscendingOrder ? DropFilterEditor::Order::Ascending
                                             : DropFilterEditor::Order::Descending);
    ShowSelection();
}

void frmDropFilters::SelectInEditor(const QModelIndex& current) {
    if (current.isValid())
        editor_.Select(static_cast<std::size_t>(current.row()));
    ShowSelectedFields();
}

/// Shows the fields of the selected filter, so that the user sees them before Delete, which asks no question.
void frmDropFilters::ShowSelectedFields() {
    if (editor_.Mode() == DialogMode::Manage)
        fraFilterProps->ShowFields(editor_.SelectedFields());
}

void frmDropFilters::ShowSelection() {
    QItemSelectionModel* const selection = lvwManageFilters->selectionModel();
    if (!editor_.Selected())
        return;
    const QModelIndex selected = listModel_.index(static_cast<int>(*editor_.Selected()), 0);
    if (selection->isSelected(selected) && selection->currentIndex() == selected)
        return;
    selection->setCurrentIndex(selected, QItemSelectionModel::ClearAndSelect);
    lvwManageFilters->scrollTo(selected);
}

void frmDropFilters::ArrangeForMode() {
    const bool manage = editor_.Mode() == DialogMode::Manage;
    if (fraManageFilters->isVisible())
        managerHeight_ = height();
    fraManageFilters->setVisible(manage);
    fraManageFilters->setEnabled(manage);
    fraFilterProps->SetEditable(!manage);
    for (QWidget* const control :
         {static_cast<QWidget*>(lblInstructions), static_cast<QWidget*>(lblFilterName),
          static_cast<QWidget*>(txtFilterName), static_cast<QWidget*>(cmdOK)}) {
        control->setVisible(!manage);
        control->setEnabled(!manage);
    }
    setProperty(HelpContextProperty,
                HelpNumber(manage ? HelpContext::FilterManager : HelpContext::FilterEditor));
    setWindowTitle(manage ? QStringLiteral("Manage Suppression Filters")
                          : QStringLiteral("Create/Edit A Suppression Filter"));
    cmdCancel->setText(manage ? QStringLiteral("&Close") : QStringLiteral("&Cancel"));
    cmdCancel->setAccessibleName(WithoutAccessKey(cmdCancel->text()));
    (manage ? cmdCancel : cmdOK)->setDefault(true);
    UpdateListButtons();
    FitHeight();
    FocusFirst();
}

void frmDropFilters::UpdateListButtons() {
    const bool filled = !editor_.Entries().empty();
    cmdEdit->setEnabled(filled);
    cmdDelete->setEnabled(filled);
    lvwManageFilters->setEnabled(filled);
    lvwManageFilters->viewport()->setBackgroundRole(filled ? QPalette::Base : QPalette::Button);
    ShowSelection();
    ShowSelectedFields();
}

void frmDropFilters::FocusFirst() {
    if (editor_.Mode() != DialogMode::Manage) {
        txtFilterName->setFocus();
        txtFilterName->selectAll();
    } else if (lvwManageFilters->isEnabled()) {
        lvwManageFilters->setFocus();
    } else {
        cmdAdd->setFocus();
    }
}

void frmDropFilters::FitHeight() {
    if (!isVisible() || isMaximized())
        return;
    layout()->activate();
    const bool manage = editor_.Mode() == DialogMode::Manage;
    resize(width(), manage ? std::max(managerHeight_, sizeHint().height()) : sizeHint().height());
}

void frmDropFilters::reject() {
    if (editor_.Cancel())
        QDialog::reject();
    else
        ArrangeForMode();
}

void frmDropFilters::closeEvent(QCloseEvent* event) {
    QDialog::reject();
    event->accept();
}

void frmDropFilters::done(int result) {
    editor_.Unload();
    QDialog::done(result);
}

}  // namespace tallyhorn
