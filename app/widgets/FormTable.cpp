#include "app/widgets/FormTable.h"

#include "app/widgets/PanelMetrics.h"

#include <QAbstractTextDocumentLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace quillon {

namespace {

constexpr int INSET = 4;
constexpr int TEXT_SIDE = 12;
constexpr int TEXT_ABOVE = 8;

/// The runs of a row.
constexpr int RUNS = Qt::UserRole + 1;

using Runs = QList<FormTextRun>;

} // namespace

/// Draws a row: the selection as a rounded tint, the text in its runs.
class FormTable::RowView : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setPanelPalette(const PanelPalette &palette) { palette_ = palette; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF row = QRectF(option.rect).adjusted(INSET, INSET / 2.0, -INSET, -INSET / 2.0);
        if (option.state.testFlag(QStyle::State_Selected)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(palette_.tint);
            painter->drawRoundedRect(row, metrics::ROW_CORNER, metrics::ROW_CORNER);
        }
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            painter->setPen(QPen(palette_.accent, 1.5));
            painter->setBrush(Qt::NoBrush);
            painter->drawRoundedRect(row.adjusted(0.75, 0.75, -0.75, -0.75), metrics::ROW_CORNER,
                                     metrics::ROW_CORNER);
        }
        QTextDocument text;
        fill(text, index.data(RUNS).value<Runs>(), option.font, option.rect.width());
        painter->translate(option.rect.left() + TEXT_SIDE, option.rect.top() + TEXT_ABOVE);
        text.documentLayout()->draw(painter, {});
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto *table = static_cast<const FormTable *>(parent());
        const int width = table->viewport()->width();
        QTextDocument text;
        fill(text, index.data(RUNS).value<Runs>(), option.font, width);
        const int height = static_cast<int>(std::ceil(text.size().height())) + 2 * TEXT_ABOVE;
        return {width, std::max((height + 3) / 4 * 4, 36)};
    }

private:
    void fill(QTextDocument &text, const Runs &runs, const QFont &font, int width) const
    {
        text.setDefaultFont(font);
        text.setDocumentMargin(0);
        QTextOption wrapping;
        // Paths have no blanks to break at.
        wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        text.setDefaultTextOption(wrapping);
        QTextCursor cursor(&text);
        for (const FormTextRun &run : runs) {
            QTextCharFormat format;
            format.setFontWeight(run.isBold ? QFont::Bold : QFont::Normal);
            format.setForeground(run.isQuiet ? palette_.quiet : palette_.text);
            cursor.insertText(run.text, format);
        }
        text.setTextWidth(width - 2 * TEXT_SIDE);
    }

    PanelPalette palette_ = PanelPalette::light();
};

FormTable::FormTable(const QString &rowIdentifier, QWidget *parent)
    : QTableView(parent),
      rowIdentifier_(rowIdentifier),
      model_(new QStandardItemModel(0, 1, this)),
      rowView_(new RowView(this))
{
    rowView_->setObjectName(rowIdentifier);
    setModel(model_);
    setItemDelegate(rowView_);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    horizontalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FormTable::selectedRowChanged);
}

void FormTable::setRows(const QList<QList<FormTextRun>> &rows)
{
    const std::optional<int> selected = selectedRow();
    model_->removeRows(0, model_->rowCount());
    for (const QList<FormTextRun> &runs : rows) {
        QString text;
        for (const FormTextRun &run : runs)
            text += run.text;
        auto *item = new QStandardItem(text);
        item->setData(QVariant::fromValue(runs), RUNS);
        model_->appendRow(item);
    }
    if (selected && !rows.isEmpty())
        selectRow(std::min(*selected, static_cast<int>(rows.size()) - 1));
    viewport()->update();
}

int FormTable::rowCount() const
{
    return model_->rowCount();
}

QString FormTable::rowText(int row) const
{
    return model_->index(row, 0).data().toString();
}

std::optional<int> FormTable::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedRows();
    return selected.isEmpty() ? std::nullopt : std::optional(selected.first().row());
}

void FormTable::showRow(int row)
{
    selectRow(row);
    scrollTo(model_->index(row, 0));
}

void FormTable::setPanelPalette(const PanelPalette &palette)
{
    rowView_->setPanelPalette(palette);
    // The rows draw their selection themselves.
    QPalette tones;
    tones.setColor(QPalette::Base, palette.background);
    tones.setColor(QPalette::Highlight, palette.background);
    setPalette(tones);
    viewport()->update();
}

void FormTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (model_->rowCount() > 0 || placeholder_.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(TEXT_SIDE, 0, -TEXT_SIDE, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, placeholder_);
}

void FormTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    resizeRowsToContents();
}

/// In one column the way to its ends is up and down.
QModelIndex FormTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action == MoveHome)
        return model_->index(0, 0);
    if (action == MoveEnd)
        return model_->index(model_->rowCount() - 1, 0);
    return QTableView::moveCursor(action, modifiers);
}

void FormTable::keyPressEvent(QKeyEvent *event)
{
    // Where the keyboard enters there is a current row already, which the keys would leave behind.
    if (!selectedRow())
        setCurrentIndex({});
    if (event->key() == Qt::Key_Delete && selectedRow())
        Q_EMIT removalRequested();
    else
        QTableView::keyPressEvent(event);
}

} // namespace quillon
