#include "app/widgets/StyleDrawing.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOption>

#include <algorithm>

namespace quillon {

namespace drawing {

namespace {

constexpr double FOCUS_LINE = 1.5;
constexpr double BOX_CORNER = 3;
constexpr double BOX_LINE = 1.2;
constexpr double TICK_LINE = 1.8;
/// The gap between the words beside a box and the ring around them.
constexpr int WORDS_RING = 3;

constexpr int HOVERED_PERCENT = 108;
constexpr int PRESSED_PERCENT = 116;

/// The arrow that shows that a control opens a menu, and its room.
constexpr double MENU_ARROW_WIDTH = 8;
constexpr int BUTTON_ARROW_ROOM = 16;
constexpr int DROP_DOWN_ARROW_ROOM = 24;
/// Letters are placed on whole pixels when they are drawn, which makes a long text wider by some
/// pixels than the font's measures say.
constexpr int ROUNDING = 8;

constexpr int TAB_HEIGHT = 36;
constexpr int TAB_UNDERLINE = 2;

/// Sizes of a rank, without the font's part.
struct Measures
{
    int height;
    /// This much is free above and below a text that needs more height than that.
    int around;
    /// This much is free beside the text.
    int side;
    int narrowest;
    double corner;
    /// The gap between the button and the ring around it that shows the focus; on its edge when
    /// there is none.
    int ring;
};

constexpr Measures IN_A_WINDOW{.height = 36,
                               .around = 12,
                               .side = 20,
                               .narrowest = 96,
                               .corner = metrics::ROW_CORNER,
                               .ring = 3};
constexpr Measures IN_A_FORM{.height = metrics::FORM_CONTROL_HEIGHT,
                             .around = 8,
                             .side = 16,
                             .narrowest = 80,
                             .corner = metrics::FORM_CONTROL_CORNER,
                             .ring = 0};

constexpr const Measures &measures(ButtonRank rank)
{
    return rank == ButtonRank::control ? IN_A_FORM : IN_A_WINDOW;
}

bool is(const QStyleOption &option, QStyle::StateFlag state)
{
    return option.state.testFlag(state);
}

/// Returns the colour of a control that may be pressed or under the pointer: darker on a light
/// background, lighter on a dark one.
QColor touchedTone(const QColor &ground, const QStyleOption &option, bool isDark)
{
    if (!is(option, QStyle::State_Enabled))
        return ground;
    const bool isPressed = is(option, QStyle::State_Sunken);
    if (!isPressed && !is(option, QStyle::State_MouseOver))
        return ground;
    const int percent = isPressed ? PRESSED_PERCENT : HOVERED_PERCENT;
    return isDark ? ground.lighter(percent) : ground.darker(percent);
}

void begin(QPainter &painter, const QStyleOption &option)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(is(option, QStyle::State_Enabled) ? 1.0 : metrics::DISABLED_OPACITY);
    painter.setPen(Qt::NoPen);
}

/// Returns where a part of a control is that is at this place when the layout goes from left to
/// right.
QRectF mirrored(const QStyleOption &option, const QRectF &part)
{
    QRectF place = part;
    if (option.direction == Qt::RightToLeft)
        place.moveRight(2 * QRectF(option.rect).center().x() - part.left());
    return place;
}

/// Draws an arrow, which points down, in the middle of the area, in the painter's pen.
void menuArrow(QPainter &painter, const QRectF &area)
{
    constexpr double HALF = MENU_ARROW_WIDTH / 2;
    const QPointF tip = area.center() + QPointF(0, HALF / 2);
    painter.drawPolyline(QPolygonF{tip + QPointF(-HALF, -HALF), tip, tip + QPointF(HALF, -HALF)});
}

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

int upToGrid(int length)
{
    return (length + 3) / 4 * 4;
}

} // namespace

void focusRing(QPainter &painter, const QRectF &bounds, double corner, const QColor &color)
{
    constexpr double INSIDE = FOCUS_LINE / 2;
    painter.setPen(QPen(color, FOCUS_LINE));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(INSIDE, INSIDE, -INSIDE, -INSIDE), corner - INSIDE,
                            corner - INSIDE);
}

void tick(QPainter &painter, const QRectF &box, const QColor &color)
{
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    painter.setPen(QPen(color, TICK_LINE, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{at(0.22, 0.54), at(0.42, 0.74), at(0.78, 0.28)});
}

void tickBox(QPainter &painter, const QRectF &box, bool isTicked, const QPalette &palette)
{
    const PanelPalette tones = PanelPalette::of(palette);
    constexpr double INSIDE = BOX_LINE / 2;
    const QRectF inside = box.adjusted(INSIDE, INSIDE, -INSIDE, -INSIDE);
    painter.setPen(QPen(isTicked ? tones.accent : tones.quiet, BOX_LINE));
    painter.setBrush(isTicked ? tones.accent : palette.color(QPalette::Active, QPalette::Base));
    painter.drawRoundedRect(inside, BOX_CORNER, BOX_CORNER);
    if (isTicked)
        tick(painter, inside, tones.background);
}

void button(QPainter &painter, const QStyleOptionButton &option, ButtonRank rank)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    const Measures &size = measures(rank);
    const bool isPrimary = rank == ButtonRank::primary;
    const QRectF body = QRectF(option.rect).adjusted(size.ring, size.ring, -size.ring, -size.ring);
    begin(painter, option);
    painter.setBrush(touchedTone(isPrimary ? tones.accent : tones.keyCap, option, tones.isDark()));
    painter.drawRoundedRect(body, size.corner, size.corner);
    if (is(option, QStyle::State_HasFocus))
        focusRing(painter, option.rect, size.corner + size.ring, tones.accent);
    painter.setPen(isPrimary ? tones.background : tones.text);
    QRectF words = body;
    if (option.features.testFlag(QStyleOptionButton::HasMenu)) {
        words.setRight(words.right() - BUTTON_ARROW_ROOM);
        menuArrow(painter, mirrored(option, {body.right() - size.side - MENU_ARROW_WIDTH / 2,
                                             body.top(), MENU_ARROW_WIDTH, body.height()}));
        words = mirrored(option, words);
    }
    painter.drawText(words, Qt::AlignCenter | Qt::TextShowMnemonic, option.text);
}

QSize buttonSize(const QStyleOptionButton &option, ButtonRank rank)
{
    const Measures &size = measures(rank);
    const QString words = withoutMnemonic(option.text);
    const bool hasMenu = option.features.testFlag(QStyleOptionButton::HasMenu);
    const int width = option.fontMetrics.horizontalAdvance(words) + 2 * size.side +
                      (hasMenu ? BUTTON_ARROW_ROOM : 0);
    // A sign alone needs no more than itself.
    const int narrowest = words.size() == 1 ? 0 : size.narrowest;
    return {std::max(width, narrowest) + 2 * size.ring,
            std::max(upToGrid(option.fontMetrics.height() + size.around), size.height) +
                2 * size.ring};
}

void tickBoxWords(QPainter &painter, const QStyleOptionButton &option, const QRect &words)
{
    constexpr int FLAGS = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic;
    const PanelPalette tones = PanelPalette::of(option.palette);
    begin(painter, option);
    painter.setPen(tones.text);
    painter.drawText(words, FLAGS, option.text);
    if (!is(option, QStyle::State_HasFocus))
        return;
    const QRect seen = painter.boundingRect(words, FLAGS, option.text);
    focusRing(painter,
              seen.adjusted(-WORDS_RING, -WORDS_RING, WORDS_RING, WORDS_RING) & option.rect,
              metrics::FORM_CONTROL_CORNER, tones.accent);
}

void dropDown(QPainter &painter, const QStyleOptionComboBox &option)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    constexpr double CORNER = metrics::FORM_CONTROL_CORNER;
    const QRectF area = option.rect;
    begin(painter, option);
    painter.setBrush(touchedTone(tones.keyCap, option, tones.isDark()));
    painter.drawRoundedRect(area, CORNER, CORNER);
    if (is(option, QStyle::State_HasFocus))
        focusRing(painter, area, CORNER, tones.accent);
    painter.setPen(tones.text);
    menuArrow(painter, mirrored(option, {area.right() - metrics::DROP_DOWN_SIDE - MENU_ARROW_WIDTH,
                                         area.top(), MENU_ARROW_WIDTH, area.height()}));
}

void dropDownWords(QPainter &painter, const QStyleOptionComboBox &option)
{
    begin(painter, option);
    painter.setPen(PanelPalette::of(option.palette).text);
    const QRect words = QStyle::visualRect(
        option.direction, option.rect,
        option.rect.adjusted(metrics::DROP_DOWN_SIDE, 0,
                             -metrics::DROP_DOWN_SIDE - DROP_DOWN_ARROW_ROOM, 0));
    painter.drawText(
        words, Qt::AlignLeft | Qt::AlignVCenter,
        option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, words.width()));
}

QSize dropDownSize(const QSize &standard, const QSize &words)
{
    constexpr int BESIDE = 2 * metrics::DROP_DOWN_SIDE + DROP_DOWN_ARROW_ROOM + ROUNDING;
    return {std::max(standard.width(), words.width() + BESIDE),
            std::max(standard.height(), metrics::FORM_CONTROL_HEIGHT)};
}

void tab(QPainter &painter, const QStyleOptionTab &option)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    const bool isInFront = is(option, QStyle::State_Selected);
    const QRect &area = option.rect;
    begin(painter, option);
    if (isInFront && is(option, QStyle::State_HasFocus)) {
        painter.setBrush(tones.tint);
        painter.drawRoundedRect(area.adjusted(0, 4, 0, -4 - TAB_UNDERLINE), metrics::ROW_CORNER,
                                metrics::ROW_CORNER);
    }
    painter.setPen(isInFront ? tones.text : tones.quiet);
    painter.drawText(area, Qt::AlignCenter | Qt::TextShowMnemonic, option.text);
    if (isInFront)
        painter.fillRect(area.left() + metrics::TAB_SIDE, area.bottom() + 1 - TAB_UNDERLINE,
                         area.width() - 2 * metrics::TAB_SIDE, TAB_UNDERLINE, tones.accent);
}

QSize tabSize(const QStyleOptionTab &option)
{
    return {option.fontMetrics.horizontalAdvance(withoutMnemonic(option.text)) +
                2 * metrics::TAB_SIDE,
            std::max(TAB_HEIGHT, option.fontMetrics.height() + 2 * metrics::INSET)};
}

void lineEdit(QPainter &painter, const QStyleOption &option)
{
    const PanelPalette tones = PanelPalette::of(option.palette);
    const QRectF area = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    begin(painter, option);
    painter.setPen(option.palette.color(QPalette::Active, QPalette::Dark));
    painter.setBrush(option.palette.color(QPalette::Active, QPalette::Base));
    painter.drawRoundedRect(area, metrics::FORM_CONTROL_CORNER, metrics::FORM_CONTROL_CORNER);
    if (is(option, QStyle::State_HasFocus))
        focusRing(painter, option.rect, metrics::FORM_CONTROL_CORNER, tones.accent);
}

void frame(QPainter &painter, const QStyleOption &option)
{
    painter.setPen(option.palette.color(QPalette::Active, QPalette::Dark));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace drawing

} // namespace quillon
