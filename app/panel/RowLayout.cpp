#include "app/panel/RowLayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextOption>

#include <algorithm>
#include <limits>
#include <vector>

namespace quillon {

namespace {

constexpr QChar ELLIPSIS(0x2026);
/// No panel is wide enough for so many characters. Of a longer row only the end is laid out.
constexpr int MOST_CHARACTERS = 600;

/// An ellipsis may be set so much closer to its neighbours, or further away, than the letters were
/// whose place it takes.
constexpr qreal CLOSER = 1;

/// Returns the row with an ellipsis in place of the characters from one position to another.
RowText shortened(const RowText &row, int from, int to)
{
    const auto moved = [from, to](int position) {
        return position < to ? std::min(position, from) : position - to + from + 1;
    };
    RowText rest;
    rest.text = row.text.left(from) + ELLIPSIS + row.text.mid(to);
    rest.nameStart = row.nameStart >= to ? moved(row.nameStart) : 0;
    for (const RowText::Span &span : row.matches) {
        const int start = std::max(moved(span.start), span.start < to ? from + 1 : 0);
        const int end = moved(span.start + span.length);
        if (span.start + span.length <= from)
            rest.matches.push_back(span);
        else if (end > start)
            rest.matches.push_back({start, end - start});
    }
    return rest;
}

/// Returns the row without the beginning of a text that is much too long.
RowText endOf(const RowText &row)
{
    if (row.text.size() <= MOST_CHARACTERS)
        return row;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, row.text);
    finder.setPosition(row.text.size() - MOST_CHARACTERS);
    if (!finder.isAtBoundary())
        finder.toNextBoundary();
    return shortened(row, 0, static_cast<int>(finder.position()));
}

/// Returns the first run of characters from the position on that hold no match and belong to the
/// parents. The run is empty when there is none.
RowText::Span gapAfter(const RowText &row, int position)
{
    for (const RowText::Span &span : row.matches) {
        if (span.start > position)
            return {position, std::min(span.start, row.nameStart) - position};
        position = std::max(position, span.start + span.length);
    }
    return {position, row.nameStart - position};
}

/// Returns a path whose components follow each other from left to right: a mark after each slash
/// keeps names of other scripts from joining.
RowText withMarks(RowText row)
{
    constexpr QChar MARK(0x200e);
    const auto isMirrored = [](QChar letter) {
        return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
    };
    if (std::ranges::none_of(row.text, isMirrored))
        return row;
    for (int at = static_cast<int>(row.text.size()) - 1; at >= 0; --at) {
        if (row.text.at(at) != u'/')
            continue;
        row.text.insert(at + 1, MARK);
        row.nameStart += row.nameStart > at ? 1 : 0;
        for (RowText::Span &span : row.matches) {
            if (span.start > at)
                ++span.start;
            else if (span.start + span.length > at + 1)
                ++span.length;
        }
    }
    return row;
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

    const RowText shown = withMarks(endOf(row));
    arrange(shown, palette);
    fit(shown, QFontMetricsF(font).horizontalAdvance(ELLIPSIS), palette, width);
}

void RowLayout::fit(RowText row, qreal ellipsis, const PanelPalette &palette, qreal room)
{
    // The characters between matches are cut first, beginning on the left.
    std::vector<RowText::Span> cuts;
    qreal excess = width() - room;
    for (int from = 0; excess > 0;) {
        const RowText::Span gap = gapAfter(row, from);
        if (gap.length <= 0)
            break;
        from = gap.start + gap.length;
        const int to = cutPosition(row, gap.start, from, ellipsis, excess);
        if (to == gap.start)
            continue;
        cuts.push_back({gap.start, to - gap.start});
        excess -= widthOf(gap.start, to) - ellipsis - CLOSER;
    }
    std::ranges::reverse(cuts);
    for (const RowText::Span &cut : cuts)
        row = shortened(row, cut.start, cut.start + cut.length);
    if (!cuts.empty())
        arrange(row, palette);
    // If that is not enough, the beginning is cut, matched or not.
    if (width() > room && !row.text.isEmpty()) {
        const auto length = static_cast<int>(row.text.size());
        const int to = cutPosition(row, 0, length, ellipsis, width() - room);
        arrange(shortened(row, 0, to), palette);
    }
}

/// Returns the end of the piece that must be cut for the rest to fit, or of the whole range when
/// that is not enough. Returns the beginning of the range when an ellipsis would be as wide as the
/// piece.
int RowLayout::cutPosition(const RowText &row, int from, int to, qreal ellipsis, qreal excess) const
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, row.text);
    finder.setPosition(from);
    int at = from;
    while (at < to && widthOf(from, at) < excess + ellipsis + CLOSER)
        at = std::min(static_cast<int>(finder.toNextBoundary()), to);
    return widthOf(from, at) > ellipsis ? at : from;
}

/// Returns the width of the characters from one position to another.
qreal RowLayout::widthOf(int from, int to) const
{
    const QTextLine line = layout_.lineAt(0);
    return line.cursorToX(to) - line.cursorToX(from);
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
