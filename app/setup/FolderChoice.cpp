#include "app/setup/FolderChoice.h"

#include "app/widgets/CountText.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

#include <utility>

namespace quillon {

namespace {

constexpr int GAP = 12;
/// The gap between the box and its text, including the focus frame.
constexpr int ROOM_BESIDE_TEXT = 12;

} // namespace

FolderChoice::FolderChoice(std::string path, const QString &name, QWidget *parent)
    : QWidget(parent),
      path_(std::move(path)),
      name_(name),
      box_(new QCheckBox({}, this)),
      count_(new QLabel(this))
{
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(GAP);
    box_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    box_->setAccessibleName(name_);
    box_->setToolTip(name_.toHtmlEscaped());
    count_->setTextFormat(Qt::PlainText);
    count_->setForegroundRole(QPalette::PlaceholderText);
    line->addWidget(box_, 1);
    line->addWidget(count_);
    setFocusProxy(box_);
    connect(box_, &QCheckBox::clicked, this, &FolderChoice::chosen);
}

bool FolderChoice::isChosen() const
{
    return box_->isChecked();
}

void FolderChoice::setChosen(bool isChosen)
{
    box_->setChecked(isChosen);
}

void FolderChoice::startCounting(const FolderCounter::Services &services)
{
    counter_.emplace(services, path_);
    updateCount();
}

void FolderChoice::stopCounting()
{
    counter_.reset();
}

void FolderChoice::updateCount()
{
    if (!counter_)
        return;
    // The end is checked before the number is read, so that the last folders are counted by then.
    const bool isDone = counter_->isDone();
    const std::size_t count = counter_->count();
    const QString number = countText(count);
    if (!isDone)
        count_->setText(count == 0 ? tr("counting…") : tr("%1 folders…").arg(number));
    else
        count_->setText(count == 1 ? tr("1 folder") : tr("%1 folders").arg(number));
    box_->setAccessibleDescription(count_->text());
    fitName();
}

void FolderChoice::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitName();
}

void FolderChoice::fitName()
{
    const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box_);
    const int room = width() - count_->sizeHint().width() - GAP - box - ROOM_BESIDE_TEXT;
    QString text = fontMetrics().elidedText(name_, Qt::ElideMiddle, room);
    box_->setText(text.replace(u'\n', u' ').replace(u'&', QStringLiteral("&&")));
}

} // namespace quillon
