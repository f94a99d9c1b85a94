#include "app/panel/PanelMessage.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/QuillonStyle.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace quillon {

namespace {

/// The space below the title, and above the buttons.
constexpr int SENTENCE_GAP = 8;
constexpr int BUTTON_GAP = 20;

} // namespace

PanelMessage::PanelMessage(QWidget *parent)
    : QWidget(parent),
      buttons_(new QWidget(this)),
      homeFolder_(pushButton(tr("Search the Home Folder"), ButtonRank::primary, buttons_)),
      preferences_(pushButton(tr("Preferences…"), ButtonRank::secondary, buttons_))
{
    auto *line = new QHBoxLayout(buttons_);
    line->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *button : {homeFolder_, preferences_}) {
        button->setFocusPolicy(Qt::TabFocus);
        line->addWidget(button);
    }
    buttons_->hide();
}

void PanelMessage::setMessage(const QString &title, const QString &sentence)
{
    if (title == title_ && sentence == sentence_)
        return;
    const bool isTitleNew = title != title_;
    title_ = title;
    sentence_ = sentence;
    setAccessibleName(title);
    setAccessibleDescription(sentence);
    arrange();
    if (isTitleNew)
        Q_EMIT titleChanged();
}

void PanelMessage::setOffersFolders(bool offersFolders)
{
    if (buttons_->isHidden() != offersFolders)
        return;
    buttons_->setVisible(offersFolders);
    arrange();
}

QAbstractButton &PanelMessage::homeFolderButton()
{
    return *homeFolder_;
}

QAbstractButton &PanelMessage::preferencesButton()
{
    return *preferences_;
}

QFont PanelMessage::titleFont() const
{
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    bold.setPointSizeF(font().pointSizeF() * 1.1);
    return bold;
}

PanelMessage::Places PanelMessage::places() const
{
    const QRect area = rect().adjusted(metrics::EDGE, 0, -metrics::EDGE, 0);
    Places places;
    places.title = QRect(0, 0, area.width(), QFontMetrics(titleFont()).height());
    places.sentence = fontMetrics().boundingRect(
        area, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, sentence_);
    places.buttons = QRect(QPoint(), buttons_->sizeHint());

    const bool hasButtons = !buttons_->isHidden();
    const int height = places.title.height() + SENTENCE_GAP + places.sentence.height() +
                       (hasButtons ? BUTTON_GAP + places.buttons.height() : 0);
    places.title.moveTopLeft({area.left(), area.top() + (area.height() - height) / 2});
    places.sentence.moveTop(places.title.bottom() + 1 + SENTENCE_GAP);
    places.buttons.moveTopLeft({area.left() + (area.width() - places.buttons.width()) / 2,
                                places.sentence.bottom() + 1 + BUTTON_GAP});
    return places;
}

void PanelMessage::arrange()
{
    buttons_->setGeometry(places().buttons);
    update();
}

void PanelMessage::resizeEvent(QResizeEvent *)
{
    arrange();
}

void PanelMessage::paintEvent(QPaintEvent *)
{
    const Places places = this->places();
    const PanelPalette tones = PanelPalette::of(palette());
    QPainter painter(this);
    painter.setFont(titleFont());
    painter.setPen(tones.text);
    painter.drawText(
        places.title, Qt::AlignCenter,
        painter.fontMetrics().elidedText(title_, Qt::ElideMiddle, places.title.width()));
    painter.setFont(font());
    painter.setPen(tones.quiet);
    painter.drawText(places.sentence, Qt::AlignHCenter | Qt::TextWordWrap, sentence_);
}

} // namespace quillon
