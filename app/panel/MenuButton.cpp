#include "app/panel/MenuButton.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"

#include <QKeyEvent>
#include <QPainter>

namespace quillon {

namespace {

constexpr int SIZE = 32;
constexpr double DOT = 3;
constexpr double DOT_DISTANCE = 6.5;
constexpr double RING = 1.5;

} // namespace

MenuButton::MenuButton(QWidget *parent) : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(SIZE, SIZE);
    setAccessibleName(tr("Menu"));
    setToolTip(tr("Menu (F10)"));
}

QSize MenuButton::sizeHint() const
{
    return {SIZE, SIZE};
}

void MenuButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        click();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void MenuButton::paintEvent(QPaintEvent *)
{
    const PanelPalette tones = PanelPalette::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ground = QRectF(rect()).adjusted(RING, RING, -RING, -RING);
    if (underMouse() || isDown() || hasFocus()) {
        painter.setBrush(tones.keyCap);
        painter.setPen(hasFocus() ? QPen(tones.accent, RING) : QPen(Qt::NoPen));
        painter.drawRoundedRect(ground, metrics::ROW_CORNER, metrics::ROW_CORNER);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(tones.quiet);
    for (const double offset : {-DOT_DISTANCE, 0.0, DOT_DISTANCE}) {
        const QPointF centre = QRectF(rect()).center() + QPointF(offset, 0);
        painter.drawEllipse(centre, DOT / 2, DOT / 2);
    }
}

} // namespace quillon
