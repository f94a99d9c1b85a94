#include "app/setup/ProgressIndicator.h"

#include "app/widgets/PanelPalette.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr int HEIGHT = 4;
constexpr int BAR_STEPS = 60;
constexpr auto BAR_STEP = 33ms;
/// The moving piece takes this share of the bar's width.
constexpr double PIECE = 0.3;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget *parent) : AnimatedWidget(BAR_STEPS, BAR_STEP, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Progress"));
}

QSize ProgressIndicator::sizeHint() const
{
    return {0, HEIGHT};
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
    if (!isAnimating())
        return;
    painter.setBrush(tones.accent);
    // A bar that does not move is filled.
    QRectF piece = bar;
    if (isMoving()) {
        // The piece moves to and fro, more slowly near the ends.
        piece.setWidth(bar.width() * PIECE);
        piece.moveLeft((bar.width() - piece.width()) *
                       (1 - std::cos(2 * std::numbers::pi * turn())) / 2);
    }
    painter.drawRoundedRect(piece, HEIGHT / 2.0, HEIGHT / 2.0);
}

} // namespace quillon
