#pragma once

#include "app/widgets/QuillonStyle.h"

class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionTab;

namespace quillon {

/// The strokes and the sizes of the controls, as QuillonStyle asks for them.
namespace drawing {

/// Draws a ring along the inner edge of the bounds, which shows that the control inside has the
/// keyboard.
void focusRing(QPainter &painter, const QRectF &bounds, double corner, const QColor &color);
/// Draws a tick without its box.
void tick(QPainter &painter, const QRectF &box, const QColor &color);
void tickBox(QPainter &painter, const QRectF &box, bool isTicked, const QPalette &palette);

void button(QPainter &painter, const QStyleOptionButton &option, ButtonRank rank);
QSize buttonSize(const QStyleOptionButton &option, ButtonRank rank);

/// Draws the words beside a box to tick, and a ring around them while they have the keyboard.
void tickBoxWords(QPainter &painter, const QStyleOptionButton &option, const QRect &words);

/// Draws a drop-down list that is closed, without its words.
void dropDown(QPainter &painter, const QStyleOptionComboBox &option);
void dropDownWords(QPainter &painter, const QStyleOptionComboBox &option);
QSize dropDownSize(const QSize &standard, const QSize &words);

void tab(QPainter &painter, const QStyleOptionTab &option);
QSize tabSize(const QStyleOptionTab &option);

/// Draws what is behind the entries of a menu, with its frame.
void menuPanel(QPainter &painter, const QStyleOption &option);
/// Draws an entry of a menu or of an open drop-down list.
void menuItem(QPainter &painter, const QStyleOptionMenuItem &option, bool isInDropDown);
QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &words);

void lineEdit(QPainter &painter, const QStyleOption &option);
/// Draws the line around a table or a longer text.
void frame(QPainter &painter, const QStyleOption &option);
void scrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider);
/// Returns where a part of a scroll bar is, which has no arrows.
QRect scrollBarPart(const QStyleOptionSlider &option, QStyle::SubControl part);

} // namespace drawing

} // namespace quillon
