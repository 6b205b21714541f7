#include "filters/forms/FilterValuesModel.h"

#include <algorithm>
#include <string_view>

#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

/// A longer text may be cut off on its line, so a tool tip shows all of it.
constexpr qsizetype LongestWithoutTip = 30;

}  // namespace

std::string FilterValuesModel::Value(int row) const {
    return row < 0 || row >= rowCount() ? std::string() : values_[static_cast<std::size_t>(row)];
}

int FilterValuesModel::RowOf(std::string_view value) const {
    const auto found = std::find(values_.begin(), values_.end(), value);
    return found == values_.end() ? -1 : static_cast<int>(found - values_.begin());
}

int FilterValuesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(values_.size());
}

QVariant FilterValuesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const std::string_view value = values_[static_cast<std::size_t>(index.row())];
    const QString text = ToShownLine(value);
    if (role == Qt::DisplayRole)
        return text;
    return text.size() > LongestWithoutTip ? ToToolTip(text) : QVariant();
}

}  // namespace tallyhorn
