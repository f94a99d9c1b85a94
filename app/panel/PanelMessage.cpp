#include "app/panel/PanelMessage.h"

#include "app/widgets/ElidedLabel.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon {

namespace {

/// The space below the title, and above the buttons.
constexpr int SENTENCE_GAP = 8;
constexpr int BUTTON_GAP = 20;

} // namespace

PanelMessage::PanelMessage(QWidget *parent)
    : QWidget(parent),
      title_(new ElidedLabel(this)),
      sentence_(new QLabel(this)),
      buttons_(new QWidget(this)),
      homeFolder_(pushButton(tr("Search the Home Folder"), ButtonRank::primary, buttons_)),
      preferences_(pushButton(tr("Preferences…"), ButtonRank::secondary, buttons_))
{
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    bold.setPointSizeF(font().pointSizeF() * 1.1);
    title_->setFont(bold);
    title_->setAlignment(Qt::AlignCenter);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setForegroundRole(QPalette::PlaceholderText);
    sentence_->setAlignment(Qt::AlignCenter);
    sentence_->setWordWrap(true);
    auto *line = new QHBoxLayout(buttons_);
    line->setContentsMargins(0, BUTTON_GAP, 0, 0);
    for (QPushButton *button : {homeFolder_, preferences_}) {
        button->setFocusPolicy(Qt::TabFocus);
        line->addWidget(button);
    }
    buttons_->hide();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(metrics::EDGE, 0, metrics::EDGE, 0);
    column->setSpacing(0);
    column->addStretch();
    column->addWidget(title_);
    column->addSpacing(SENTENCE_GAP);
    column->addWidget(sentence_);
    column->addWidget(buttons_, 0, Qt::AlignHCenter);
    column->addStretch();
}

void PanelMessage::setMessage(const QString &title, const QString &sentence)
{
    const bool isTitleNew = title != title_->text();
    title_->setText(title);
    sentence_->setText(sentence);
    setAccessibleName(title);
    setAccessibleDescription(sentence);
    if (isTitleNew)
        Q_EMIT titleChanged();
}

QString PanelMessage::title() const
{
    return title_->text();
}

QString PanelMessage::sentence() const
{
    return sentence_->text();
}

void PanelMessage::setOffersFolders(bool offersFolders)
{
    buttons_->setVisible(offersFolders);
}

QAbstractButton &PanelMessage::homeFolderButton()
{
    return *homeFolder_;
}

QAbstractButton &PanelMessage::preferencesButton()
{
    return *preferences_;
}

} // namespace quillon
