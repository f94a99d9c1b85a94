#include "app/setup/ProgressIndicator.h"

#include "app/widgets/PanelPalette.h"

#include <QPainter>
#include <QStyle>

#include <cmath>
#include <numbers>

namespace quillon {

namespace {

constexpr int HEIGHT = 4;
constexpr int STEPS = 60;
constexpr int STEP_MILLISECONDS = 33;
/// The moving piece takes this share of the bar's width.
constexpr double PIECE = 0.3;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Progress"));
}

void ProgressIndicator::startAnimation()
{
    isAnimating_ = true;
    updateTimer();
    update();
}

void ProgressIndicator::stopAnimation()
{
    isAnimating_ = false;
    updateTimer();
    update();
}

QSize ProgressIndicator::sizeHint() const
{
    return {0, HEIGHT};
}

void ProgressIndicator::updateTimer()
{
    // On a desktop that wants no animation the whole bar is filled.
    const bool mayMove = style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
    if (isAnimating_ && isVisible() && mayMove)
        timer_.start(STEP_MILLISECONDS, this);
    else
        timer_.stop();
}

void ProgressIndicator::timerEvent(QTimerEvent *)
{
    step_ = (step_ + 1) % STEPS;
    update();
}

void ProgressIndicator::showEvent(QShowEvent *)
{
    updateTimer();
}

void ProgressIndicator::hideEvent(QHideEvent *)
{
    timer_.stop();
}

void ProgressIndicator::paintEvent(QPaintEvent *)
{
    const PanelPalette tones = PanelPalette::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tones.keyCap);
    const QRectF bar(rect());
    painter.drawRoundedRect(bar, HEIGHT / 2.0, HEIGHT / 2.0);
    if (!isAnimating_)
        return;
    painter.setBrush(tones.accent);
    QRectF piece = bar;
    if (timer_.isActive()) {
        // The bar moves to and fro, more slowly near the ends.
        const double turn = 2 * std::numbers::pi * step_ / STEPS;
        piece.setWidth(bar.width() * PIECE);
        piece.moveLeft((bar.width() - piece.width()) * (1 - std::cos(turn)) / 2);
    }
    painter.drawRoundedRect(piece, HEIGHT / 2.0, HEIGHT / 2.0);
}

} // namespace quillon
