#include "app/widgets/PanelButton.h"

#include "app/widgets/PanelMetrics.h"

#include <QPainter>

namespace quillon {

namespace {

constexpr int HEIGHT = 36;
constexpr int SIDE = 20;
constexpr int NARROWEST = 96;
/// Between the button and the ring around it that shows the focus.
constexpr int RING = 3;
constexpr double DISABLED_OPACITY = 0.5;

} // namespace

PanelButton::PanelButton(const QString &text, Rank rank, QWidget *parent)
    : QPushButton(text, parent), rank_(rank)
{
    setAttribute(Qt::WA_Hover);
    // Return presses the button that has the focus, outside of dialogs as well.
    setAutoDefault(true);
}

void PanelButton::setPanelPalette(const PanelPalette &palette)
{
    palette_ = palette;
    update();
}

QSize PanelButton::sizeHint() const
{
    const int width = fontMetrics().horizontalAdvance(text()) + 2 * SIDE;
    const int height = (fontMetrics().height() + 15) / 4 * 4;
    return {std::max(width, NARROWEST) + 2 * RING, std::max(height, HEIGHT) + 2 * RING};
}

QColor PanelButton::fill() const
{
    const QColor color = rank_ == Rank::primary ? palette_.accent : palette_.keyCap;
    if (!isDown() && !underMouse())
        return color;
    // Towards the text: darker on a light ground, lighter on a dark one.
    const int percent = isDown() ? 116 : 108;
    return palette_.isDark() ? color.lighter(percent) : color.darker(percent);
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : DISABLED_OPACITY);
    const QRectF button = QRectF(rect()).adjusted(RING, RING, -RING, -RING);
    if (hasFocus()) {
        painter.setPen(QPen(palette_.accent, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75),
                                metrics::ROW_CORNER + RING, metrics::ROW_CORNER + RING);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill());
    painter.drawRoundedRect(button, metrics::ROW_CORNER, metrics::ROW_CORNER);
    painter.setPen(rank_ == Rank::primary ? palette_.background : palette_.text);
    painter.drawText(button, Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

} // namespace quillon
