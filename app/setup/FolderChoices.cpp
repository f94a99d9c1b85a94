#include "app/setup/FolderChoices.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/SetupView.h"

#include <QEvent>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t VISIBLE = 6;

} // namespace

FolderChoices::FolderChoices(QWidget *parent) : QScrollArea(parent)
{
    auto *list = new QWidget;
    column_ = new QVBoxLayout(list);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(SetupView::NEAR);
    setWidget(list);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The Tab key stops at the folders themselves.
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

FolderChoice &FolderChoices::offer(const std::string &path, const QString &name)
{
    const auto known = std::ranges::find(choices_, path, &FolderChoice::path);
    if (known != choices_.end())
        return **known;
    auto *choice = new FolderChoice(path, name, widget());
    column_->addWidget(choice);
    QWidget *before = choices_.empty() ? tabStopBefore_ : choices_.back()->focusProxy();
    if (before != nullptr)
        setTabOrder(before, choice->focusProxy());
    choices_.push_back(choice);
    connect(choice, &FolderChoice::chosen, this,
            [this, choice](bool isChosen) { Q_EMIT choiceMade(choice, isChosen); });
    if (counting_)
        choice->startCounting(*counting_);
    if (choices_.size() > VISIBLE)
        column_->setContentsMargins(0, 0, metrics::FORM_ROW, 0);
    return *choice;
}

void FolderChoices::setChosen(const std::vector<std::string> &paths)
{
    for (const std::string &path : paths)
        offer(path, QString::fromStdString(path));
    for (FolderChoice *choice : choices_)
        choice->setChosen(std::ranges::find(paths, choice->path()) != paths.end());
}

std::vector<std::string> FolderChoices::chosen() const
{
    std::vector<std::string> paths;
    for (const FolderChoice *choice : choices_) {
        if (choice->isChosen())
            paths.push_back(choice->path());
    }
    return paths;
}

void FolderChoices::reveal(const std::string &path)
{
    const auto found = std::ranges::find(choices_, path, &FolderChoice::path);
    if (found != choices_.end())
        QTimer::singleShot(0, *found, [this, choice = *found] { ensureWidgetVisible(choice); });
}

void FolderChoices::startCounting(const FolderCounter::Services &services)
{
    counting_.emplace(services);
    for (FolderChoice *choice : choices_)
        choice->startCounting(services);
}

void FolderChoices::stopCounting()
{
    counting_.reset();
    for (FolderChoice *choice : choices_)
        choice->stopCounting();
}

void FolderChoices::updateCounts()
{
    for (FolderChoice *choice : choices_)
        choice->updateCount();
}

QSize FolderChoices::sizeHint() const
{
    const int all = widget()->sizeHint().height();
    if (choices_.size() <= VISIBLE)
        return {SetupView::TEXT_WIDTH, all};
    const int row = (all + SetupView::NEAR) / static_cast<int>(choices_.size());
    // Half a row more shows that there are others.
    return {SetupView::TEXT_WIDTH, static_cast<int>(VISIBLE) * row + row / 2};
}

bool FolderChoices::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

} // namespace quillon
