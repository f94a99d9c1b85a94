#include "app/widgets/FormCheckBox.h"

#include "app/widgets/FormDrawing.h"
#include "app/widgets/PanelMetrics.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace quillon {

namespace {

constexpr double CORNER = 3;
constexpr double LINE = 1.2;
constexpr double TICK_LINE = 1.8;
/// The gap between the text and the ring around it that shows the focus.
constexpr int RING = 3;

} // namespace

FormCheckBox::FormCheckBox(const QString &text, QWidget *parent) : QCheckBox(text, parent)
{
    setAttribute(Qt::WA_Hover);
}

void FormCheckBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : metrics::DISABLED_OPACITY);
    QStyleOptionButton option;
    initStyleOption(&option);
    paintBox(painter, style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this));
    const QRect words = style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this);
    constexpr int FLAGS = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic;
    painter.setPen(tone(QPalette::WindowText));
    painter.drawText(words, FLAGS, text());
    if (hasFocus()) {
        const QRect seen = painter.boundingRect(words, FLAGS, text());
        paintFocusRing(painter, seen.adjusted(-RING, -RING, RING, RING) & rect(),
                       metrics::FORM_CONTROL_CORNER, tone(QPalette::Link));
    }
}

void FormCheckBox::paintBox(QPainter &painter, const QRectF &box) const
{
    const QRectF inside = box.adjusted(LINE / 2, LINE / 2, -LINE / 2, -LINE / 2);
    const bool isTicked = isChecked();
    painter.setPen(QPen(isTicked ? tone(QPalette::Link) : tone(QPalette::PlaceholderText), LINE));
    painter.setBrush(isTicked ? tone(QPalette::Link) : tone(QPalette::Base));
    painter.drawRoundedRect(inside, CORNER, CORNER);
    if (!isTicked)
        return;
    const auto at = [&inside](double x, double y) {
        return QPointF(inside.left() + x * inside.width(), inside.top() + y * inside.height());
    };
    painter.setPen(
        QPen(tone(QPalette::BrightText), TICK_LINE, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{at(0.22, 0.54), at(0.42, 0.74), at(0.78, 0.28)});
}

} // namespace quillon
