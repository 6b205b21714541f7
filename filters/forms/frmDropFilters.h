#pragma once

#include <QDialog>

#include "filters/DropFilterEditor.h"
#include "filters/forms/FilterListModel.h"
#include "platform/Clock.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace tallyhorn {

class AccessKeyFrame;
class FilterPropertiesFrame;

/// The modal dialog that lists, adds, edits and deletes suppression filters.  Call InitFormAsManager or
/// InitFormAsQuickAdd before showing it.  All arguments of the constructor must outlive the dialog.
class frmDropFilters final : public QDialog {
    Q_OBJECT

public:
    frmDropFilters(SuppressionFilters& filters, MessageBoxes& boxes, const Clock& clock,
                   QWidget* parent = nullptr);

    ~frmDropFilters() override;

    /// Puts the dialog into the mode Plain, which a new dialog has.
    void InitForm();
    void InitFormAsManager();
    /// Shows the fields of a new filter for notifications like `alarm`.
    void InitFormAsQuickAdd(const AlarmRecord& alarm);

    /// Loads the filters again.  Qt calls this whenever the dialog is closed.
    void done(int result) override;
    /// Acts as cmdCancel.  Qt calls this for the Escape key.
    void reject() override;

protected:
    /// Closes the dialog in every mode.  Qt calls this for the close button of the window frame.
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildList();
    void BuildButtons();
    void LayOut();

    void Add();
    void Edit();
    void Delete();
    void SaveFilter();
    void SortList(Qt::SortOrder order);
    void SelectInEditor(const QModelIndex& current);
    void ShowSelection();
    void ShowSelectedFields();

    void ArrangeForMode();
    void UpdateListButtons();
    void FocusFirst();
    void FitHeight();

    DropFilterEditor editor_;
    FilterListModel listModel_{editor_};
    AccessKeyFrame* fraManageFilters;
    QTreeView* lvwManageFilters;
    QPushButton* cmdAdd;
    QPushButton* cmdEdit;
    QPushButton* cmdDelete;
    QLabel* lblInstructions;
    QLineEdit* txtFilterName;
    QLabel* lblFilterName;
    FilterPropertiesFrame* fraFilterProps;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;
    int managerHeight_ = 0;  ///< the height to restore when the list is shown again
};

}  // namespace tallyhorn
