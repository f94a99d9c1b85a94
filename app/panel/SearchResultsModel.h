#pragma once

#include "results/SearchBaseResult.h"

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace quillon {

/// The rows of the panel.
class SearchResultsModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setResults(std::vector<SearchBaseResultRef> results);
    const std::vector<SearchBaseResultRef> &results() const { return results_; }
    /// Returns null when there is no such row.
    SearchBaseResultRef result(int row) const;

    /// Marks the rows with these paths, which have no slash at their end, as kept on top.
    void setKept(std::vector<std::string> paths);
    bool isKept(const SearchBaseResult &result) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    /// Returns the text of a row, for drawing and for assistive technology.
    QVariant data(const QModelIndex &index, int role) const override;

    /// A row is dragged out as its file or folder and as its path, to be copied or linked.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override;

private:
    std::vector<SearchBaseResultRef> results_;
    std::vector<std::string> kept_;
};

} // namespace quillon
