#pragma once

class QColor;
class QPainter;
class QPalette;
class QPointF;
class QRectF;

namespace quillon {

// The strokes that the controls of a form have in common.

/// Draws a ring along the inner edge of the bounds, which shows that the control inside has the
/// keyboard.
void paintFocusRing(QPainter &painter, const QRectF &bounds, double corner, const QColor &color);

/// Draws a box to tick in the tones of a window's palette.
void paintTickBox(QPainter &painter, const QRectF &box, bool isTicked, const QPalette &palette);

/// The arrow that shows that a control opens a menu.
constexpr double MENU_ARROW_WIDTH = 8;
/// Draws the arrow, which points down to the tip, in the painter's pen.
void paintMenuArrow(QPainter &painter, const QPointF &tip);

/// Return the colour of a control under the pointer, and of one that is pressed down.
QColor hoveredTone(const QColor &ground, bool isDark);
QColor pressedTone(const QColor &ground, bool isDark);

} // namespace quillon
