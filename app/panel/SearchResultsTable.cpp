#include "app/panel/SearchResultsTable.h"

#include "app/panel/IconSource.h"
#include "app/panel/SearchResultsModel.h"
#include "app/widgets/PanelMetrics.h"

#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>

namespace quillon {

SearchResultsTable::SearchResultsTable(SearchResultsModel &model, IconSource &icons,
                                       QWidget *parent)
    : QListView(parent), model_(model), icons_(icons)
{
    setModel(&model_);
    setAccessibleName(tr("Folders"));
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Window);
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragDropMode(QAbstractItemView::DragOnly);
    setContextMenuPolicy(Qt::CustomContextMenu);
    viewport()->setAttribute(Qt::WA_Hover);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(metrics::rowHeight(fontMetrics()));
}

void SearchResultsTable::mousePressEvent(QMouseEvent *event)
{
    if (indexAt(event->position().toPoint()).isValid())
        QListView::mousePressEvent(event);
    else
        event->ignore();
}

void SearchResultsTable::startDrag(Qt::DropActions actions)
{
    const SearchBaseResultRef row = model_.result(currentIndex().row());
    if (!row)
        return;
    auto *drag = new QDrag(this); // the toolkit's, which deletes it
    drag->setMimeData(model_.mimeData({currentIndex()}));
    const QSize size(metrics::ICON, metrics::ICON);
    drag->setPixmap(icons_.icon(row->path()).pixmap(size, devicePixelRatioF()));
    // The program continues during the drag, and may end.
    const QPointer<SearchResultsTable> self = this;
    Q_EMIT dragBegan();
    const Qt::DropAction done = drag->exec(actions, Qt::CopyAction);
    if (self)
        Q_EMIT dragEnded(done != Qt::IgnoreAction);
}

} // namespace quillon
