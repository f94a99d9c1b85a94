#include "app/panel/SearchIndicator.h"

#include <QPainter>
#include <QStyle>

namespace quillon {

namespace {

constexpr int INDICATOR_SIZE = 24;
constexpr int STEPS = 24;
constexpr int STEP_MILLISECONDS = 40;
constexpr int SIXTEENTHS_OF_A_TURN = 360 * 16;

} // namespace

SearchIndicator::SearchIndicator(QWidget *parent) : QWidget(parent)
{
    setFixedSize(INDICATOR_SIZE, INDICATOR_SIZE);
}

void SearchIndicator::setSpinning(bool isSpinning)
{
    if (isSpinning == isSpinning_)
        return;
    isSpinning_ = isSpinning;
    step_ = 0;
    updateTimer();
    update();
}

void SearchIndicator::updateTimer()
{
    // On a desktop that wants no animation, the open ring stands still.
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
    if (isSpinning_ && isVisible() && isAnimated)
        timer_.start(STEP_MILLISECONDS, this);
    else
        timer_.stop();
}

void SearchIndicator::timerEvent(QTimerEvent *)
{
    step_ = (step_ + 1) % STEPS;
    update();
}

void SearchIndicator::showEvent(QShowEvent *)
{
    updateTimer();
}
void SearchIndicator::hideEvent(QHideEvent *)
{
    timer_.stop();
}

void SearchIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(palette().color(QPalette::PlaceholderText), 2, Qt::SolidLine, Qt::RoundCap));
    if (isSpinning_) {
        const int start = -step_ * SIXTEENTHS_OF_A_TURN / STEPS;
        painter.drawArc(QRectF(4, 4, 16, 16), start, SIXTEENTHS_OF_A_TURN * 3 / 4);
        return;
    }
    painter.drawEllipse(QRectF(4, 4, 12, 12));
    painter.drawLine(QPointF(14.5, 14.5), QPointF(20, 20));
}

} // namespace quillon
