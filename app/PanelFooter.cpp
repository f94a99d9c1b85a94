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
    // Texts share one rectangle's height, so that they share one base line.
    QRect text = line;
    for (const Hint &hint : hints_) {
        text.setWidth(font.horizontalAdvance(hint.key) + 16);
        const QRectF cap(text.left(), line.top() + (line.height() - capHeight) / 2.0, text.width(),
                         capHeight);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette_.keyCap);
        painter.drawRoundedRect(cap, 4, 4);
        painter.setPen(palette_.text);
        painter.drawText(text, Qt::AlignCenter, hint.key);

        text.moveLeft(text.left() + text.width() + 8);
        text.setWidth(font.horizontalAdvance(hint.meaning));
        painter.setPen(palette_.quiet);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, hint.meaning);
        text.moveLeft(text.left() + text.width() + 20);
    }
}

} // namespace quillon
