#pragma once

class QColor;
class QPainter;
class QPointF;
class QRectF;

namespace quillon {

// The strokes that the controls of a form have in common.

/// A ring along the inner edge of the bounds: the control inside has the keyboard.
void paintFocusRing(QPainter &painter, const QRectF &bounds, double corner, const QColor &color);

/// Says that a menu comes down.
constexpr double MENU_ARROW_WIDTH = 8;
/// Pointing down to the tip, in the painter's pen.
void paintMenuArrow(QPainter &painter, const QPointF &tip);

/// Under the pointer, and pressed down.
QColor hoveredTone(const QColor &ground, bool isDark);
QColor pressedTone(const QColor &ground, bool isDark);

} // namespace quillon
