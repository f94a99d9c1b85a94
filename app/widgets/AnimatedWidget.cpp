#include "app/widgets/AnimatedWidget.h"

#include <QStyle>

namespace quillon {

AnimatedWidget::AnimatedWidget(int steps, std::chrono::milliseconds step, QWidget *parent)
    : QWidget(parent), steps_(steps), interval_(step)
{}

void AnimatedWidget::setAnimating(bool isAnimating)
{
    if (isAnimating == isAnimating_)
        return;
    isAnimating_ = isAnimating;
    step_ = 0;
    updateTimer();
    update();
}

void AnimatedWidget::updateTimer()
{
    const bool mayMove = style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
    if (isAnimating_ && isVisible() && mayMove)
        timer_.start(static_cast<int>(interval_.count()), this);
    else
        timer_.stop();
}

void AnimatedWidget::timerEvent(QTimerEvent *)
{
    step_ = (step_ + 1) % steps_;
    update();
}

void AnimatedWidget::showEvent(QShowEvent *)
{
    updateTimer();
}

void AnimatedWidget::hideEvent(QHideEvent *)
{
    timer_.stop();
}

} // namespace quillon
