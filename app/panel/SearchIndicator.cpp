#include "app/panel/SearchIndicator.h"

#include <QPainter>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr int INDICATOR_SIZE = 24;
constexpr int SPINNER_STEPS = 24;
constexpr auto SPINNER_STEP = 40ms;
constexpr int SIXTEENTHS_OF_A_TURN = 360 * 16;

} // namespace

SearchIndicator::SearchIndicator(QWidget *parent)
    : AnimatedWidget(SPINNER_STEPS, SPINNER_STEP, parent)
{
    setFixedSize(INDICATOR_SIZE, INDICATOR_SIZE);
}

void SearchIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(palette().color(QPalette::PlaceholderText), 2, Qt::SolidLine, Qt::RoundCap));
    if (isAnimating()) {
        const int start = static_cast<int>(-turn() * SIXTEENTHS_OF_A_TURN);
        painter.drawArc(QRectF(4, 4, 16, 16), start, SIXTEENTHS_OF_A_TURN * 3 / 4);
        return;
    }
    painter.drawEllipse(QRectF(4, 4, 12, 12));
    painter.drawLine(QPointF(14.5, 14.5), QPointF(20, 20));
}

} // namespace quillon
