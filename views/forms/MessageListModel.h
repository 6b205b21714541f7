#pragma once

#include <QAbstractTableModel>
#include <array>
#include <cstddef>

#include "views/messages/MessageList.h"

namespace tallyhorn {

/// Presents one message list as a Qt model.  Announces added rows in one batch when AnnounceNewRows is
/// called, and every other change at once, as a reset.  The list must outlive the model.
class MessageListModel final : public QAbstractTableModel, private ChangeObserver {
    Q_OBJECT

public:
    explicit MessageListModel(MessageList& list, QObject* parent = nullptr);
    ~MessageListModel() override;

    /// Announces the rows added since the last call; returns false if there are none.
    bool AnnounceNewRows();
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
    std::size_t announced_ = 0;
};

}  // namespace tallyhorn
