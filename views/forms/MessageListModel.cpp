#include "views/forms/MessageListModel.h"

#include <QIcon>
#include <limits>

#include "ui/AnsiString.h"
#include "ui/Pictures.h"

namespace tallyhorn {

MessageListModel::MessageListModel(MessageList& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list), announced_(list.Size()) {
    list_.SetObserver(this);
}

MessageListModel::~MessageListModel() {
    list_.SetObserver(nullptr);
}

bool MessageListModel::AnnounceNewRows() {
    if (list_.Size() == announced_)
        return false;
    beginInsertRows({}, static_cast<int>(announced_), static_cast<int>(list_.Size()) - 1);
    announced_ = list_.Size();
    endInsertRows();
    // The rows were announced as the last ones, but in a sorted list they are at other positions.
    if (list_.IsSorted()) {
        emit layoutAboutToBeChanged({}, VerticalSortHint);
        MovePersistentIndexes();
        emit layoutChanged({}, VerticalSortHint);
    }
    return true;
}

void MessageListModel::MovePersistentIndexes() {
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex& index : from) {
        const auto slot = static_cast<Slot>(index.internalId());
        const std::optional<std::size_t> position = list_.PositionOf(slot);
        to << (position ? createIndex(static_cast<int>(*position), index.column(), index.internalId())
                        : QModelIndex());
    }
    changePersistentIndexList(from, to);
}

int MessageListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(announced_);
}

int MessageListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : MessageColumnCount;
}

/// The index's internal id is the row's slot, by which MovePersistentIndexes finds the row again.
QModelIndex MessageListModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, static_cast<quintptr>(list_.SlotAt(static_cast<std::size_t>(row))));
}

QVariant MessageListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto position = static_cast<std::size_t>(index.row());
    const auto column = static_cast<MessageColumn>(index.column());
    if (role == Qt::DisplayRole)
        return ToVisibleLine(list_.CellText(position, column));
    if (role == Qt::ToolTipRole)
        return ToToolTip(ToShownLine(list_.CellText(position, column)));
    const EventType type = list_.TypeAt(position);
    if (column != MessageColumn::DateLogged || !HasPicture(type))
        return {};
    if (role == Qt::DecorationRole)
        return EventIcon(type);
    if (role == Qt::AccessibleTextRole)
        return QString(SpokenType(type) + QStringLiteral(", ") +
                       ToVisibleLine(list_.CellText(position, column)));
    return {};
}

QVariant MessageListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= MessageColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return ToQString(MessageColumnHeaders.at(static_cast<std::size_t>(section)));
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    return {};
}

void MessageListModel::AboutToChange() {
    beginResetModel();
}

void MessageListModel::Changed() {
    announced_ = list_.Size();
    endResetModel();
}

}  // namespace tallyhorn
