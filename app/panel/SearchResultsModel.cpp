#include "app/panel/SearchResultsModel.h"

#include "app/panel/RowText.h"

#include <utility>

namespace quillon {

void SearchResultsModel::setResults(std::vector<SearchBaseResultRef> results)
{
    beginResetModel();
    results_ = std::move(results);
    endResetModel();
}

SearchBaseResultRef SearchResultsModel::result(int row) const
{
    return row >= 0 && row < rowCount() ? results_[static_cast<std::size_t>(row)] : nullptr;
}

int SearchResultsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(results_.size());
}

QVariant SearchResultsModel::data(const QModelIndex &index, int role) const
{
    const SearchBaseResultRef row = result(index.row());
    if (!row)
        return {};
    if (role == Qt::DisplayRole)
        return displayText(row->text());
    if (role == Qt::AccessibleTextRole)
        return spokenText(*row);
    return {};
}

} // namespace quillon
