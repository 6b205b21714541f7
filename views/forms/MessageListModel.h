#pragma once

#include <QAbstractTableModel>
#include <array>
#include <cstddef>

#include "views/messages/MessageList.h"

namespace tallyhorn {

/// One message list as Qt's views want it.  Rows that come in are announced when TakeInRows says so, in one
/// batch; all else at once.  User-interface thread only; the list outlives the model.
class MessageListModel final : public QAbstractTableModel, private ChangeObserver {
    Q_OBJECT

public:
    explicit MessageListModel(MessageList& list, QObject* parent = nullptr);
    ~MessageListModel() override;

    /// Announces the rows that came since the last time; false where there are none.
    bool TakeInRows();
    MessageList& List() { return list_; }
    const MessageList& List() const { return list_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void AboutToChange() override;
    void Changed() override;
    void MovePersistentIndexes();

    MessageList& list_;
    std::size_t shown_ = 0;
};

}  // namespace tallyhorn
