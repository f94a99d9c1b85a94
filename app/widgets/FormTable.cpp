#include "app/widgets/FormTable.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/StyleDrawing.h"

#include <QAbstractTextDocumentLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
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
constexpr int BOX_ABOVE = 6;

/// The runs of a row.
constexpr int RUNS = Qt::UserRole + 1;
/// The words beside the box of a row, which has a check state then.
constexpr int BOX_WORDS = Qt::UserRole + 2;

/// The characters around a text whose direction is that of its first letter.
constexpr QChar FIRST_STRONG(0x2068);
constexpr QChar POP(0x2069);

using Runs = QList<FormTextRun>;

} // namespace

/// Draws a row: the selection as a rounded tint, the text in its runs.
class FormTable::RowView : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const PanelPalette tones = PanelPalette::of(option.palette);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF row = QRectF(option.rect).adjusted(INSET, INSET / 2.0, -INSET, -INSET / 2.0);
        if (option.state.testFlag(QStyle::State_Selected)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(tones.tint);
            painter->drawRoundedRect(row, metrics::ROW_CORNER, metrics::ROW_CORNER);
        }
        if (option.state.testFlag(QStyle::State_HasFocus))
            drawing::focusRing(*painter, row, metrics::ROW_CORNER, tones.accent);
        if (hasBox(index))
            paintBox(*painter, option, index, tones);
        QTextDocument text;
        fill(text, index.data(RUNS).value<Runs>(), option, option.rect.width());
        painter->translate(option.rect.left() + TEXT_SIDE, option.rect.top() + TEXT_ABOVE);
        text.documentLayout()->draw(painter, {});
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto *table = static_cast<const FormTable *>(parent());
        const int width = table->viewport()->width();
        QTextDocument text;
        fill(text, index.data(RUNS).value<Runs>(), option, width);
        const int height = static_cast<int>(std::ceil(text.size().height())) + 2 * TEXT_ABOVE +
                           (hasBox(index) ? BOX_ABOVE + boxLine(option) : 0);
        return {width, std::max((height + 3) / 4 * 4, 36)};
    }

    bool editorEvent(QEvent *event, QAbstractItemModel *, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override
    {
        if (!hasBox(index) || !isToggling(*event, option, index))
            return false;
        Q_EMIT static_cast<FormTable *>(parent())->tickBoxToggled(index.row(), !isTicked(index));
        return true;
    }

    static bool hasBox(const QModelIndex &index) { return index.data(BOX_WORDS).isValid(); }
    static bool isTicked(const QModelIndex &index)
    {
        return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }

private:
    /// Returns the height of the line with the box, which is at the bottom of the row.
    static int boxLine(const QStyleOptionViewItem &option)
    {
        return std::max(metrics::tickBox(option.fontMetrics), option.fontMetrics.height());
    }
    static QRect boxOf(const QStyleOptionViewItem &option)
    {
        const QRect &row = option.rect;
        const int line = boxLine(option);
        const int box = metrics::tickBox(option.fontMetrics);
        return QStyle::visualRect(
            option.direction, row,
            {row.left() + TEXT_SIDE, row.bottom() + 1 - TEXT_ABOVE - (line + box) / 2, box, box});
    }
    static QRect wordsOf(const QStyleOptionViewItem &option, const QString &words)
    {
        const QRect &row = option.rect;
        const int line = boxLine(option);
        return QStyle::visualRect(option.direction, row,
                                  {row.left() + TEXT_SIDE + metrics::tickBox(option.fontMetrics) +
                                       metrics::TICK_BOX_WORDS,
                                   row.bottom() + 1 - TEXT_ABOVE - line,
                                   option.fontMetrics.horizontalAdvance(words), line});
    }
    static bool isToggling(const QEvent &event, const QStyleOptionViewItem &option,
                           const QModelIndex &index)
    {
        if (event.type() == QEvent::KeyPress)
            return static_cast<const QKeyEvent &>(event).key() == Qt::Key_Space;
        if (event.type() != QEvent::MouseButtonRelease)
            return false;
        const auto &click = static_cast<const QMouseEvent &>(event);
        const QRect words = wordsOf(option, index.data(BOX_WORDS).toString());
        return click.button() == Qt::LeftButton &&
               words.united(boxOf(option)).contains(click.position().toPoint());
    }

    static void paintBox(QPainter &painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index, const PanelPalette &tones)
    {
        const QString words = index.data(BOX_WORDS).toString();
        drawing::tickBox(painter, boxOf(option), isTicked(index), option.palette);
        const auto runs = index.data(RUNS).value<Runs>();
        const bool isQuiet = std::ranges::all_of(runs, &FormTextRun::isQuiet);
        painter.setPen(isQuiet ? tones.quiet : tones.text);
        painter.drawText(wordsOf(option, words),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, words);
    }

    static void fill(QTextDocument &text, const Runs &runs, const QStyleOptionViewItem &option,
                     int width)
    {
        const PanelPalette tones = PanelPalette::of(option.palette);
        text.setDefaultFont(option.font);
        text.setDocumentMargin(0);
        QTextOption wrapping;
        // Paths have no blanks to break at.
        wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        wrapping.setTextDirection(option.direction);
        text.setDefaultTextOption(wrapping);
        QTextCursor cursor(&text);
        for (const FormTextRun &run : runs) {
            QTextCharFormat format;
            format.setFontWeight(run.isBold ? QFont::Bold : QFont::Normal);
            format.setForeground(run.isQuiet ? tones.quiet : tones.text);
            // A path or a pattern keeps its own direction within the sentence.
            const bool isIsolated = run.isBold && option.direction == Qt::RightToLeft;
            cursor.insertText(isIsolated ? FIRST_STRONG + run.text + POP : run.text, format);
        }
        text.setTextWidth(width - 2 * TEXT_SIDE);
    }
};

FormTable::FormTable(const QString &rowIdentifier, QWidget *parent)
    : QTableView(parent), rowIdentifier_(rowIdentifier), model_(new QStandardItemModel(0, 1, this))
{
    auto *rowView = new RowView(this);
    rowView->setObjectName(rowIdentifier);
    setModel(model_);
    setItemDelegate(rowView);
    viewport()->setBackgroundRole(QPalette::Window);
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

void FormTable::setTickBox(int row, const QString &words, bool isTicked)
{
    QStandardItem *item = model_->item(row);
    item->setCheckable(true);
    item->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
    item->setData(words, BOX_WORDS);
    item->setData(QString(item->text() + QStringLiteral(". ") + words), Qt::AccessibleTextRole);
    resizeRowToContents(row);
}

std::optional<bool> FormTable::isTicked(int row) const
{
    const QModelIndex index = model_->index(row, 0);
    return RowView::hasBox(index) ? std::optional(RowView::isTicked(index)) : std::nullopt;
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
