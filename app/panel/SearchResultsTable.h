#pragma once

#include <QListView>

namespace quillon {

class IconSource;
class SearchResultsModel;

/// The rows of a SearchResultsModel. A row can be dragged out as a file. A press of the mouse below
/// the rows goes to the widget behind the table.
class SearchResultsTable : public QListView
{
    Q_OBJECT

public:
    SearchResultsTable(SearchResultsModel &model, IconSource &icons, QWidget *parent);

Q_SIGNALS:
    void dragBegan();
    /// The dragged row was dropped where it was accepted, or the drag was given up.
    void dragEnded(bool isTaken);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void startDrag(Qt::DropActions actions) override;

private:
    SearchResultsModel &model_;
    IconSource &icons_;
};

} // namespace quillon
