#include "app/widgets/FormDrawing.h"

#include <QColor>
#include <QPainter>
#include <QPolygonF>

namespace quillon {

namespace {

constexpr double FOCUS_LINE = 1.5;
constexpr int HOVERED_PERCENT = 108;
constexpr int PRESSED_PERCENT = 116;

/// Returns the colour nearer to the text's: darker on a light background, lighter on a dark one.
QColor nearerToText(const QColor &ground, bool isDark, int percent)
{
    return isDark ? ground.lighter(percent) : ground.darker(percent);
}

} // namespace

void paintFocusRing(QPainter &painter, const QRectF &bounds, double corner, const QColor &color)
{
    constexpr double INSIDE = FOCUS_LINE / 2;
    painter.setPen(QPen(color, FOCUS_LINE));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(INSIDE, INSIDE, -INSIDE, -INSIDE), corner - INSIDE,
                            corner - INSIDE);
}

void paintMenuArrow(QPainter &painter, const QPointF &tip)
{
    constexpr double HALF = MENU_ARROW_WIDTH / 2;
    painter.drawPolyline(QPolygonF{tip + QPointF(-HALF, -HALF), tip, tip + QPointF(HALF, -HALF)});
}

QColor hoveredTone(const QColor &ground, bool isDark)
{
    return nearerToText(ground, isDark, HOVERED_PERCENT);
}

QColor pressedTone(const QColor &ground, bool isDark)
{
    return nearerToText(ground, isDark, PRESSED_PERCENT);
}

} // namespace quillon
