#include "app/widgets/FormCheckBox.h"

#include "app/widgets/FormDrawing.h"
#include "app/widgets/PanelMetrics.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace quillon {

namespace {

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
    paintTickBox(painter, style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this),
                 isChecked(), palette());
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

} // namespace quillon
