#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace quillon {

/// A thin bar that shows that work is in progress, but not how far it is.
class ProgressIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget *parent);

    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return isAnimating_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void updateTimer();

    QBasicTimer timer_;
    bool isAnimating_ = false;
    int step_ = 0;
};

} // namespace quillon
