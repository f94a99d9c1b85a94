#include "app/widgets/FormDrawing.h"

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>

namespace quillon {

namespace {

constexpr double FOCUS_LINE = 1.5;
constexpr double BOX_CORNER = 3;
constexpr double BOX_LINE = 1.2;
constexpr double TICK_LINE = 1.8;
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

void paintTickBox(QPainter &painter, const QRectF &box, bool isTicked, const QPalette &palette)
{
    const auto tone = [&palette](QPalette::ColorRole role) {
        return palette.color(QPalette::Active, role);
    };
    constexpr double INSIDE = BOX_LINE / 2;
    const QRectF inside = box.adjusted(INSIDE, INSIDE, -INSIDE, -INSIDE);
    painter.setPen(
        QPen(isTicked ? tone(QPalette::Link) : tone(QPalette::PlaceholderText), BOX_LINE));
    painter.setBrush(isTicked ? tone(QPalette::Link) : tone(QPalette::Base));
    painter.drawRoundedRect(inside, BOX_CORNER, BOX_CORNER);
    if (!isTicked)
        return;
    const auto at = [&inside](double x, double y) {
        return QPointF(inside.left() + x * inside.width(), inside.top() + y * inside.height());
    };
    painter.setPen(
        QPen(tone(QPalette::BrightText), TICK_LINE, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{at(0.22, 0.54), at(0.42, 0.74), at(0.78, 0.28)});
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
