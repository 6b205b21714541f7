#pragma once

#include <QAbstractListModel>
#include <string>
#include <string_view>
#include <vector>

namespace tallyhorn {

/// The texts that a combo box offers.  A text is converted for the screen only when its row is painted, so
/// tens of thousands of texts cost little time.
class FilterValuesModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit FilterValuesModel(std::vector<std::string> values, QObject* parent = nullptr)
        : QAbstractListModel(parent), values_(std::move(values)) {}

    /// Returns the text of a row as its sender wrote it, or an empty text if there is no such row.
    std::string Value(int row) const;

    /// Returns the row of a text, or -1 if no row has it.
    int RowOf(std::string_view value) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const std::vector<std::string> values_;
};

}  // namespace tallyhorn
