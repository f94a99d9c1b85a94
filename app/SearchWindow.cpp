#include "app/SearchWindow.h"

#include "app/PanelMetrics.h"
#include "app/SearchPanelView.h"
#include "platform/WindowSystem.h"

#include <QApplication>
#include <QBitmap>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// Qt tells a loss of the keyboard up to 100 ms late.
constexpr auto SETTLING = 200ms;
/// Room for the shadow, and how far it falls below the panel.
constexpr int SHADOW = 44;
constexpr int SHADOW_DROP = 12;
constexpr int SHADOW_ALPHA = 72;
/// The hairline around the panel.
constexpr int BORDER = 1;
/// Of the free height, above the panel.
constexpr double SHARE_ABOVE = 0.3;

} // namespace

SearchWindow::SearchWindow(IconSource &icons, WindowSystem &windowSystem)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      view_(new SearchPanelView(icons, this)),
      windowSystem_(windowSystem)
{
    setWindowTitle(QStringLiteral("Quillon"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(BORDER, BORDER, BORDER, BORDER);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(view_);
    fitToCompositing();
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &SearchWindow::hideWithoutFocus);
    winId();
}

void SearchWindow::present()
{
    if (!isVisible()) {
        previousWindow_ = windowSystem_.activeWindow();
        fitToCompositing();
        placeOnScreenWithPointer();
        // Window managers forget it each time that the window goes.
        windowSystem_.keepOutOfTaskbar(winId());
        show();
    }
    raise();
    activateWindow();
    presented_.start();
    // Shown again before Qt has noticed that it lost the keyboard, it would not become active.
    if (QGuiApplication::focusWindow() == windowHandle()) {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        QApplication::setActiveWindow(this);
        QT_WARNING_POP
    }
}

void SearchWindow::dismiss()
{
    // Whoever took the keyboard away meanwhile keeps it.
    const bool hasKeyboard = isActiveWindow();
    hide();
    if (hasKeyboard)
        windowSystem_.activate(previousWindow_);
}

void SearchWindow::hideWithoutFocus()
{
    if (!isVisible() || QGuiApplication::focusWindow() == windowHandle())
        return;
    // The loss may be one from before it was shown, told late; the gain then is on its way.
    const auto remaining = SETTLING - std::chrono::milliseconds(presented_.elapsed());
    if (remaining > 0ms)
        QTimer::singleShot(remaining, this, &SearchWindow::hideWithoutFocus);
    else
        hide();
}

void SearchWindow::fitToCompositing()
{
    const bool isComposited = windowSystem_.isComposited();
    const int margin = isComposited ? SHADOW : 0;
    setContentsMargins(margin, margin, margin, margin);
    layout()->activate();
    adjustSize();
    if (isComposited) {
        clearMask();
        return;
    }
    // Nothing is blended here: what lies outside the round corners is cut off.
    QBitmap shape(size());
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setBrush(Qt::color1);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), metrics::CORNER, metrics::CORNER);
    painter.end();
    setMask(shape);
}

void SearchWindow::placeOnScreenWithPointer()
{
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    const QRect free = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    const QRect panel = panelRect();
    const int left = free.left() + (free.width() - panel.width()) / 2;
    const int top = free.top() + static_cast<int>((free.height() - panel.height()) * SHARE_ABOVE);
    move(left - panel.left(), std::max(top, free.top()) - panel.top());
}

void SearchWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Q_EMIT becameKey();
}

void SearchWindow::showEvent(QShowEvent *)
{
    Q_EMIT appeared();
}
void SearchWindow::hideEvent(QHideEvent *)
{
    Q_EMIT disappeared();
}

void SearchWindow::mousePressEvent(QMouseEvent *event)
{
    // The shadow looks like a place outside the panel, so a click there dismisses it, too.
    if (!panelRect().contains(event->pos()))
        dismiss();
}

void SearchWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect panel = panelRect();
    const PanelPalette &palette = view_->panelPalette();
    // Without blending the half-covered pixels of the corners would come out black.
    if (panel == rect())
        painter.fillRect(panel, palette.hairline);
    else
        paintShadow(painter);
    painter.setBrush(palette.background);
    painter.setPen(QPen(palette.hairline, BORDER));
    painter.drawRoundedRect(QRectF(panel).adjusted(0.5, 0.5, -0.5, -0.5), metrics::CORNER,
                            metrics::CORNER);
}

void SearchWindow::paintShadow(QPainter &painter)
{
    // Rings from the outside in, each adding a little more: a soft edge without an image to keep.
    constexpr int REACH = SHADOW - SHADOW_DROP;
    const QRectF panel(panelRect());
    painter.setPen(Qt::NoPen);
    for (int reach = REACH; reach > 0; --reach) {
        const double nearness = 1.0 - static_cast<double>(reach) / REACH;
        painter.setBrush(QColor(0, 0, 0, qRound(2.0 * SHADOW_ALPHA * nearness / REACH)));
        painter.drawRoundedRect(
            panel.adjusted(-reach, -reach, reach, reach).translated(0, SHADOW_DROP),
            metrics::CORNER + reach, metrics::CORNER + reach);
    }
}

} // namespace quillon
