#include "app/PanelFooter.h"

#include "app/PanelMetrics.h"

#include <QPainter>

#include <utility>

namespace quillon {

PanelFooter::PanelFooter(QWidget *parent) : QWidget(parent)
{
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    setFont(small);
    setFixedHeight(std::max(metrics::FOOTER_HEIGHT, (fontMetrics().height() + 19) / 4 * 4));
}

void PanelFooter::setPalette(const PanelPalette &palette)
{
    palette_ = palette;
    update();
}

void PanelFooter::setHints(std::vector<Hint> hints)
{
    hints_ = std::move(hints);
    update();
}

void PanelFooter::setStatus(const QString &status)
{
    if (status == status_)
        return;
    status_ = status;
    setAccessibleName(status);
    update();
}

void PanelFooter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, palette_.hairline);

    const QFontMetrics font = fontMetrics();
    const QRect line = rect().adjusted(metrics::EDGE, 1, -metrics::EDGE, 0);
    painter.setPen(palette_.quiet);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, status_);

    const int capHeight = font.height() + 4;
    int x = line.left();
    for (const Hint &hint : hints_) {
        const QRect cap(x, line.center().y() - capHeight / 2 + 1,
                        font.horizontalAdvance(hint.key) + 16, capHeight);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette_.keyCap);
        painter.drawRoundedRect(cap, 4, 4);
        painter.setPen(palette_.text);
        painter.drawText(cap, Qt::AlignCenter, hint.key);
        x = cap.right() + 1 + 8;

        painter.setPen(palette_.quiet);
        painter.drawText(QRect(x, line.top(), line.right() - x, line.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, hint.meaning);
        x += font.horizontalAdvance(hint.meaning) + 20;
    }
}

} // namespace quillon
