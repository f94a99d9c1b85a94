#include "app/panel/RowLayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextOption>

#include <algorithm>
#include <limits>

namespace quillon {

namespace {

constexpr QChar ELLIPSIS(0x2026);

/// The row without its first characters, an ellipsis in their place.
RowText beheaded(const RowText &row, int from)
{
    RowText rest;
    const int shift = 1 - from;
    rest.text = ELLIPSIS + row.text.mid(from);
    rest.nameStart = row.nameStart > from ? row.nameStart + shift : 0;
    for (const RowText::Span &span : row.matches) {
        const int start = std::max(span.start, from);
        const int end = span.start + span.length;
        if (end > start)
            rest.matches.push_back({start + shift, end - start});
    }
    return rest;
}

/// The place to cut at or after the given one: a "/" before the last component, or else the next
/// whole character.
int cutPosition(const RowText &row, int at)
{
    const auto slash = row.text.indexOf(u'/', at);
    if (slash >= 0 && slash < row.nameStart)
        return static_cast<int>(slash);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, row.text);
    finder.setPosition(at);
    if (!finder.isAtBoundary())
        finder.toNextBoundary();
    return static_cast<int>(finder.position());
}

QTextLayout::FormatRange formatRange(int start, int length, const QColor &color, bool isBold)
{
    QTextLayout::FormatRange range;
    range.start = start;
    range.length = length;
    range.format.setForeground(color);
    if (isBold)
        range.format.setFontWeight(QFont::Bold);
    return range;
}

} // namespace

RowLayout::RowLayout(const RowText &row, const QFont &font, const PanelPalette &palette,
                     qreal width)
{
    layout_.setFont(font);
    layout_.setCacheEnabled(true);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    // A path reads from the root to the end, whatever script its names are in.
    option.setTextDirection(Qt::LeftToRight);
    layout_.setTextOption(option);

    arrange(row, palette);
    if (this->width() <= width || row.text.isEmpty())
        return;
    const qreal excess = this->width() - width + QFontMetricsF(font).horizontalAdvance(ELLIPSIS);
    const QTextLine line = layout_.lineAt(0);
    int at = line.xToCursor(excess, QTextLine::CursorOnCharacter);
    if (line.cursorToX(at) < excess)
        ++at;
    arrange(beheaded(row, cutPosition(row, at)), palette);
}

void RowLayout::arrange(const RowText &row, const PanelPalette &palette)
{
    QList<QTextLayout::FormatRange> formats;
    const auto length = static_cast<int>(row.text.size());
    formats << formatRange(0, row.nameStart, palette.quiet, false)
            << formatRange(row.nameStart, length - row.nameStart, palette.text, false);
    for (const RowText::Span &span : row.matches)
        formats << formatRange(span.start, span.length, palette.text, true);

    layout_.setText(row.text);
    layout_.setFormats(formats);
    layout_.beginLayout();
    QTextLine line = layout_.createLine();
    if (line.isValid())
        line.setLineWidth(std::numeric_limits<int>::max() / 256.0);
    layout_.endLayout();
}

qreal RowLayout::width() const
{
    return layout_.lineCount() == 0 ? 0 : layout_.lineAt(0).naturalTextWidth();
}

void RowLayout::draw(QPainter &painter, const QRectF &area) const
{
    if (layout_.lineCount() == 0)
        return;
    const qreal top = area.top() + (area.height() - layout_.lineAt(0).height()) / 2;
    layout_.draw(&painter, QPointF(area.left(), std::round(top)));
}

} // namespace quillon
