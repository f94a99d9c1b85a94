#pragma once

#include <QBasicTimer>
#include <QWidget>

#include <chrono>

namespace quillon {

/// A widget that draws itself differently while work is in progress, and moves as long as it is
/// shown. On a desktop that wants no animation it does not move.
class AnimatedWidget : public QWidget
{
    Q_OBJECT

public:
    void setAnimating(bool isAnimating);
    /// Returns whether work is in progress.
    bool isAnimating() const { return isAnimating_; }

protected:
    /// The movement repeats after this many steps.
    AnimatedWidget(int steps, std::chrono::milliseconds step, QWidget *parent);

    /// Returns how much of the movement is done, from 0 to less than 1.
    double turn() const { return static_cast<double>(step_) / steps_; }
    bool isMoving() const { return timer_.isActive(); }

    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void updateTimer();

    const int steps_;
    const std::chrono::milliseconds interval_;
    QBasicTimer timer_;
    bool isAnimating_ = false;
    int step_ = 0;
};

} // namespace quillon
