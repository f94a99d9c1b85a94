#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace quillon {

/// The symbol on the left of the field: a magnifying glass, or a spinner while a search takes its
/// time.
class SearchIndicator : public QWidget
{
public:
    explicit SearchIndicator(QWidget *parent);

    void setSpinning(bool isSpinning);
    bool isSpinning() const { return isSpinning_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void updateTimer();

    QBasicTimer timer_;
    bool isSpinning_ = false;
    int step_ = 0;
};

} // namespace quillon
