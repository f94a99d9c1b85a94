#include "app/panel/PanelFooter.h"

#include "app/widgets/PanelMetrics.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <utility>

namespace quillon {

namespace {

/// Between one hint and the next, and before the status.
constexpr int GAP = 20;
/// Beside the text on a key cap, and between the cap and its meaning.
constexpr int CAP_INSET = 8;
constexpr int CAP_GAP = 8;
constexpr int CAP_CORNER = 4;

} // namespace

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

QRect PanelFooter::line() const
{
    return rect().adjusted(metrics::EDGE, 1, -metrics::EDGE, 0);
}

std::vector<PanelFooter::Place> PanelFooter::places() const
{
    const QFontMetrics font = fontMetrics();
    const int end = line().right() - font.horizontalAdvance(status_) - GAP;
    std::vector<Place> places;
    // Texts share one rectangle's height, so that they share one base line.
    QRect text = line();
    for (const Hint &hint : hints_) {
        text.setWidth(font.horizontalAdvance(hint.key) + 2 * CAP_INSET);
        const QRect key = text;
        text.moveLeft(key.left() + key.width() + CAP_GAP);
        text.setWidth(font.horizontalAdvance(hint.meaning));
        if (text.right() > end)
            break;
        places.push_back({.hint = hint, .key = key, .meaning = text});
        text.moveLeft(text.left() + text.width() + GAP);
    }
    return places;
}

bool PanelFooter::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto &help = static_cast<QHelpEvent &>(*event);
    QToolTip::hideText();
    for (const Place &place : places()) {
        const QRect area = place.key.united(place.meaning);
        if (area.contains(help.pos()))
            QToolTip::showText(help.globalPos(), place.hint.toolTip, this, area);
    }
    return true;
}

void PanelFooter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, palette_.hairline);
    painter.setPen(palette_.quiet);
    painter.drawText(line(), Qt::AlignRight | Qt::AlignVCenter, status_);

    const int capHeight = fontMetrics().height() + 4;
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Place &place : places()) {
        const QRectF cap(place.key.left(), line().top() + (line().height() - capHeight) / 2.0,
                         place.key.width(), capHeight);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette_.keyCap);
        painter.drawRoundedRect(cap, CAP_CORNER, CAP_CORNER);
        painter.setPen(palette_.text);
        painter.drawText(place.key, Qt::AlignCenter, place.hint.key);
        painter.setPen(palette_.quiet);
        painter.drawText(place.meaning, Qt::AlignLeft | Qt::AlignVCenter, place.hint.meaning);
    }
}

} // namespace quillon
