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

/// The dialog that lists, makes, changes and deletes suppression filters; one of the three routines prepares
/// it, then it is shown modally.  User-interface thread only; what it is given outlives it.
class frmDropFilters final : public QDialog {
    Q_OBJECT

public:
    frmDropFilters(SuppressionFilters& filters, MessageBoxes& boxes, const Clock& clock,
                   QWidget* parent = nullptr);

    ~frmDropFilters() override;

    /// In no mode yet; a new dialog is so.
    void InitForm();
    void InitFormAsManager();
    /// About to add a filter for what is like this notification, which need not live on.
    void InitFormAsQuickAdd(const AlarmRecord& alarm);

    /// Every way of closing comes through here, and lets the filter table follow the file.
    void done(int result) override;
    /// Escape does what cmdCancel does.
    void reject() override;

protected:
    /// The window's own button closes the dialog in every mode.
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
    int managerHeight_ = 0;  ///< as the user left it, while the list is away
};

}  // namespace tallyhorn
