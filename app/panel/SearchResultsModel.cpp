#include "app/panel/SearchResultsModel.h"

#include "base/FileUri.h"
#include "base/PathText.h"
#include "results/RowText.h"

#include <QCoreApplication>
#include <QMimeData>

#include <algorithm>
#include <memory>
#include <utility>

namespace quillon {

namespace {

constexpr QLatin1String URI_LIST("text/uri-list");
constexpr QLatin1String PLAIN_TEXT("text/plain");

} // namespace

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

void SearchResultsModel::setKept(std::vector<std::string> paths)
{
    if (paths == kept_)
        return;
    kept_ = std::move(paths);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

bool SearchResultsModel::isKept(const SearchBaseResult &result) const
{
    return std::ranges::find(kept_, withoutTrailingSlashes(result.path())) != kept_.end();
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
    // The text is a paragraph, since a path may look like markup.
    if (role == Qt::ToolTipRole)
        return QStringLiteral("<p style='white-space: pre'>%1</p>")
            .arg(displayText(row->path()).toHtmlEscaped());
    if (role == Qt::AccessibleTextRole && !row->awayFolder().empty())
        return QCoreApplication::translate("RowText", "%1, not there now").arg(spokenText(*row));
    if (role == Qt::AccessibleTextRole)
        return isKept(*row)
                   ? QCoreApplication::translate("RowText", "%1, kept on top").arg(spokenText(*row))
                   : spokenText(*row);
    return {};
}

Qt::ItemFlags SearchResultsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractListModel::flags(index);
    return result(index.row()) ? flags | Qt::ItemIsDragEnabled : flags;
}

QStringList SearchResultsModel::mimeTypes() const
{
    return {URI_LIST, PLAIN_TEXT};
}

QMimeData *SearchResultsModel::mimeData(const QModelIndexList &indexes) const
{
    QByteArray uris;
    QByteArray paths;
    for (const QModelIndex &index : indexes) {
        const SearchBaseResultRef row = result(index.row());
        if (!row)
            continue;
        uris += QByteArray::fromStdString(fileUri(row->path())) + "\r\n";
        paths += (paths.isEmpty() ? "" : "\n") + QByteArray::fromStdString(row->path());
    }
    auto data = std::make_unique<QMimeData>();
    // The paths are passed on as bytes, since the toolkit's text would lose what is not UTF-8.
    data->setData(URI_LIST, uris);
    data->setData(PLAIN_TEXT, paths);
    return data.release();
}

Qt::DropActions SearchResultsModel::supportedDragActions() const
{
    return Qt::CopyAction | Qt::LinkAction;
}

} // namespace quillon
