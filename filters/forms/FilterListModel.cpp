#include "filters/forms/FilterListModel.h"

#include "ui/AnsiString.h"

namespace tallyhorn {

int FilterListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(editor_.Entries().size());
}

QVariant FilterListModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return ToVisibleLine(editor_.Entries()[static_cast<std::size_t>(index.row())].FilterName);
}

QVariant FilterListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (section != 0 || orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return QStringLiteral("Suppression Filter Name");
    if (role == Qt::TextAlignmentRole)
        return int{Qt::AlignLeft | Qt::AlignVCenter};
    return {};
}

}  // namespace tallyhorn
