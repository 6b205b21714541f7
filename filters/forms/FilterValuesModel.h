#pragma once

#include <QAbstractListModel>
#include <string>
#include <vector>

namespace tallyhorn {

/// The texts that one combo box offers, as they are and as the screen shows them.  User-interface thread
/// only; tens of thousands cost no more than their bytes until they are looked at.
class FilterValuesModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit FilterValuesModel(std::vector<std::string> values, QObject* parent = nullptr)
        : QAbstractListModel(parent), values_(std::move(values)) {}

    /// The bytes of a row; nothing where there is no such row.
    std::string Value(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const std::vector<std::string> values_;
};

}  // namespace tallyhorn
