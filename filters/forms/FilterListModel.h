#pragma once

#include <QAbstractTableModel>

#include "filters/DropFilterEditor.h"

namespace tallyhorn {

/// Presents the editor's entries as a Qt model with one column.  The editor must outlive the model.
class FilterListModel final : public QAbstractTableModel, private ChangeObserver {
    Q_OBJECT

public:
    explicit FilterListModel(DropFilterEditor& editor) : editor_(editor) { editor_.SetObserver(this); }
    ~FilterListModel() override { editor_.SetObserver(nullptr); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 1; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void AboutToChange() override { beginResetModel(); }
    void Changed() override { endResetModel(); }

    DropFilterEditor& editor_;
};

}  // namespace tallyhorn
