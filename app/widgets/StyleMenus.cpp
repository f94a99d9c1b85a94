#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/StyleDrawing.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace quillon {

namespace drawing {

namespace {

constexpr int ITEM_SIDE = 16;
constexpr int ITEM_ABOVE = 6;
constexpr int ITEM_CORNER = 4;
constexpr int ITEM_TICK = 16;
constexpr int SEPARATOR_SIDE = 12;
constexpr int SEPARATOR_HEIGHT = 9;

constexpr int SCROLL_MARK_WIDTH = 4;
constexpr int SHORTEST_SCROLL_MARK = 24;

/// Returns the room of the ticks in a menu that has any.
int tickRoom(const QStyleOptionMenuItem &option)
{
    return option.menuHasCheckableItems ? ITEM_TICK + ITEM_SIDE / 2 : 0;
}

} // namespace

void menuPanel(QPainter &painter, const QStyleOption &option)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    painter.setPen(tones.hairline);
    painter.setBrush(tones.background);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

void menuItem(QPainter &painter, const QStyleOptionMenuItem &option, bool isInDropDown)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    const QRect &area = option.rect;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(area, tones.background);
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(area.left() + SEPARATOR_SIDE, area.center().y(),
                         area.width() - 2 * SEPARATOR_SIDE, 1, tones.hairline);
        return;
    }
    if (option.state.testFlag(QStyle::State_Selected) &&
        option.state.testFlag(QStyle::State_Enabled)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(tones.tint);
        painter.drawRoundedRect(area, ITEM_CORNER, ITEM_CORNER);
    }
    const QColor color = option.state.testFlag(QStyle::State_Enabled) ? tones.text : tones.quiet;
    const int side = isInDropDown ? metrics::DROP_DOWN_SIDE : ITEM_SIDE;
    QRect words = area.adjusted(side, 0, -side, 0);
    const auto visual = [&option](const QRect &place) {
        return QStyle::visualRect(option.direction, option.rect, place);
    };
    if (!isInDropDown && option.menuHasCheckableItems) {
        const QRect box(words.left(), area.center().y() - ITEM_TICK / 2, ITEM_TICK, ITEM_TICK);
        if (option.checked)
            tick(painter, visual(box), color);
        words.setLeft(words.left() + tickRoom(option));
    }
    constexpr int FLAGS = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic;
    const qsizetype tabulator = option.text.indexOf(u'\t');
    painter.setPen(color);
    painter.setFont(option.font);
    painter.drawText(visual(words), FLAGS | Qt::AlignLeft, option.text.left(tabulator));
    if (tabulator < 0)
        return;
    words.setLeft(words.right() + 1 - option.reservedShortcutWidth);
    // The names of keys read from left to right, whatever the language.
    const bool isMirrored = option.direction == Qt::RightToLeft;
    painter.drawText(visual(words),
                     FLAGS | Qt::TextForceLeftToRight |
                         (isMirrored ? Qt::AlignRight : Qt::AlignLeft),
                     option.text.mid(tabulator + 1));
}

QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &words)
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator)
        return {2 * SEPARATOR_SIDE, SEPARATOR_HEIGHT};
    return {words.width() + 2 * ITEM_SIDE + tickRoom(option), words.height() + 2 * ITEM_ABOVE};
}

void scrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider)
{
    if (option.maximum <= option.minimum)
        return;
    const PanelPalette tones = PanelPalette::of(option.palette);
    constexpr double HALF = SCROLL_MARK_WIDTH / 2.0;
    QRectF mark = slider;
    if (option.orientation == Qt::Vertical)
        mark.setRect(mark.center().x() - HALF, mark.top(), SCROLL_MARK_WIDTH, mark.height());
    else
        mark.setRect(mark.left(), mark.center().y() - HALF, mark.width(), SCROLL_MARK_WIDTH);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool isTouched = option.state.testFlag(QStyle::State_MouseOver) ||
                           option.state.testFlag(QStyle::State_Sunken);
    painter.setBrush(isTouched ? tones.quiet : tones.hairline);
    painter.drawRoundedRect(mark, HALF, HALF);
}

QRect scrollBarPart(const QStyleOptionSlider &option, QStyle::SubControl part)
{
    const bool isVertical = option.orientation == Qt::Vertical;
    const int length = isVertical ? option.rect.height() : option.rect.width();
    const int range = option.maximum - option.minimum;
    int slider = length;
    if (range > 0)
        slider = std::clamp(
            static_cast<int>(qint64{length} * option.pageStep / (qint64{range} + option.pageStep)),
            std::min(SHORTEST_SCROLL_MARK, length), length);
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - slider, option.upsideDown);
    const auto from = [&](int begin, int size) {
        return isVertical ? QRect(0, begin, option.rect.width(), size)
                          : QRect(begin, 0, size, option.rect.height());
    };
    QRect place;
    if (part == QStyle::SC_ScrollBarSubPage)
        place = from(0, start);
    else if (part == QStyle::SC_ScrollBarAddPage)
        place = from(start + slider, length - start - slider);
    else if (part == QStyle::SC_ScrollBarSlider)
        place = from(start, slider);
    else if (part == QStyle::SC_ScrollBarGroove)
        place = from(0, length);
    return QStyle::visualRect(option.direction, option.rect, place);
}

} // namespace drawing

} // namespace quillon
