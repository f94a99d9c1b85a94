#pragma once

#include <QStyledItemDelegate>

#include <string>

namespace quillon {

class IconSource;
class SearchBaseResult;
class SearchResultsModel;

/// Draws the rows of a SearchResultsModel: the item's icon, its text with the matches in bold and,
/// for an item of the front file manager window, one that is not there now or one that is kept on
/// top, a small mark on the right. What is not there now is drawn quietly.
class LightningSearchTableRowView : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// The path of a row below the home folder, which is an absolute path, begins with "~".
    LightningSearchTableRowView(const SearchResultsModel &model, IconSource &icons,
                                std::string home, QObject *parent);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintIcon(QPainter &painter, const QRect &area, const std::string &path) const;
    /// Returns the words of the row's mark, which are empty for most rows.
    QString mark(const SearchBaseResult &result) const;
    /// Returns the width that the mark takes from the text.
    static int paintMark(QPainter &painter, const QRect &area, const QStyleOptionViewItem &option,
                         const QString &mark);

    const SearchResultsModel &model_;
    IconSource &icons_;
    const std::string home_;
};

} // namespace quillon
