#include "app/panel/PanelMessage.h"

#include "app/widgets/PanelMetrics.h"

#include <QPainter>

namespace quillon {

PanelMessage::PanelMessage(QWidget *parent) : QWidget(parent) {}

void PanelMessage::setPalette(const PanelPalette &palette)
{
    palette_ = palette;
    update();
}

void PanelMessage::setMessage(const QString &title, const QString &sentence)
{
    if (title == title_ && sentence == sentence_)
        return;
    title_ = title;
    sentence_ = sentence;
    setAccessibleName(title);
    setAccessibleDescription(sentence);
    update();
}

void PanelMessage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    bold.setPointSizeF(font().pointSizeF() * 1.1);

    constexpr int GAP = 8;
    const QRect area = rect().adjusted(metrics::EDGE, 0, -metrics::EDGE, 0);
    const int titleHeight = QFontMetrics(bold).height();
    const QRect sentenceRect =
        painter.boundingRect(area, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, sentence_);
    const int top = area.top() + (area.height() - titleHeight - GAP - sentenceRect.height()) / 2;

    painter.setFont(bold);
    painter.setPen(palette_.text);
    painter.drawText(QRect(area.left(), top, area.width(), titleHeight), Qt::AlignCenter,
                     QFontMetrics(bold).elidedText(title_, Qt::ElideMiddle, area.width()));
    painter.setFont(font());
    painter.setPen(palette_.quiet);
    painter.drawText(sentenceRect.translated(0, top + titleHeight + GAP - sentenceRect.top()),
                     Qt::AlignHCenter | Qt::TextWordWrap, sentence_);
}

} // namespace quillon
