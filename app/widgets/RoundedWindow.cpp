#include "app/widgets/RoundedWindow.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "platform/WindowSystem.h"

#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

namespace quillon {

namespace {

/// The room for the shadow, and how far it falls below the panel.
constexpr int SHADOW = 44;
constexpr int SHADOW_DROP = 12;
constexpr int SHADOW_ALPHA = 72;
/// The hairline around the panel.
constexpr int BORDER = 1;

} // namespace

RoundedWindow::RoundedWindow(WindowSystem &windowSystem, Qt::WindowFlags flags)
    : QWidget(nullptr, flags | Qt::FramelessWindowHint), windowSystem_(windowSystem)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

void RoundedWindow::setContent(QWidget *content)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(BORDER, BORDER, BORDER, BORDER);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(content);
}

void RoundedWindow::fitToCompositing()
{
    const bool isComposited = windowSystem_.isComposited();
    const double scale = devicePixelRatioF();
    const int margin = isComposited ? SHADOW : 0;
    setContentsMargins(margin, margin, margin, margin);
    windowSystem_.setShadowMargin(winId(), qRound(margin * scale));
    layout()->activate();
    // Where nothing is blended, everything outside the round corners is cut off.
    windowSystem_.cutCorners(winId(), qRound(width() * scale), qRound(height() * scale),
                             isComposited ? 0 : qRound(metrics::CORNER * scale));
}

void RoundedWindow::placeAt(QPoint topLeft)
{
    place_ = topLeft;
    move(topLeft);
}

void RoundedWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The round corners go with the lower edge.
    fitToCompositing();
    // While an X11 window manager makes the frame, Qt reads the position of a frame in the corner
    // of the screen, and would ask for that position together with the new size.
    if (isVisible() && !windowHandle()->isExposed())
        windowHandle()->setPosition(place_);
}

void RoundedWindow::paintEvent(QPaintEvent *)
{
    const PanelPalette tones = PanelPalette::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect panel = panelRect();
    // Without blending, the half-covered pixels of the corners would be black.
    if (panel == rect())
        painter.fillRect(panel, tones.hairline);
    else
        paintShadow(painter);
    painter.setBrush(tones.background);
    painter.setPen(QPen(tones.hairline, BORDER));
    painter.drawRoundedRect(QRectF(panel).adjusted(0.5, 0.5, -0.5, -0.5), metrics::CORNER,
                            metrics::CORNER);
}

void RoundedWindow::paintShadow(QPainter &painter)
{
    // Rings from the outside in, each of which adds a little more, give a soft edge without an
    // image.
    constexpr int REACH = SHADOW - SHADOW_DROP;
    const QRectF panel(panelRect());
    // Inside its corners the panel covers the rings.
    constexpr int CORNER = metrics::CORNER;
    painter.setClipRegion(QRegion(rect()) - panelRect().adjusted(CORNER, 0, -CORNER, 0) -
                          panelRect().adjusted(0, CORNER, 0, -CORNER));
    painter.setPen(Qt::NoPen);
    for (int reach = REACH; reach > 0; --reach) {
        const double nearness = 1.0 - static_cast<double>(reach) / REACH;
        painter.setBrush(QColor(0, 0, 0, qRound(2.0 * SHADOW_ALPHA * nearness / REACH)));
        painter.drawRoundedRect(
            panel.adjusted(-reach, -reach, reach, reach).translated(0, SHADOW_DROP), CORNER + reach,
            CORNER + reach);
    }
    painter.setClipping(false);
}

} // namespace quillon
