#include "app/setup/BuildSearchBaseViewController.h"

#include "app/setup/ProgressIndicator.h"
#include "app/widgets/CountText.h"
#include "app/widgets/ElidedLabel.h"
#include "app/widgets/QuillonStyle.h"
#include "base/DefaultsStore.h"
#include "base/TaskQueue.h"
#include "core/SearchBase.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time between the end of the settings and the end of the program.
constexpr auto LAST_WORDS = 500ms;
constexpr int COUNT_MILLISECONDS = 250;
/// After this many seconds a rate is meaningful.
constexpr double SHORTEST_FOR_RATE = 1.0;

} // namespace

BuildSearchBaseViewController::BuildSearchBaseViewController(const Services &services,
                                                             BuildSearchBaseDelegate &delegate)
    : services_(services), delegate_(delegate), pages_(new QStackedWidget(this))
{
    column(this, APART, MARGIN)->addWidget(pages_);
    pages_->addWidget(buildProgressPage());
    pages_->addWidget(buildQuestionPage());
    setFocusProxy(hideButton_);
    services_.builder.addObserver(*this);
}

BuildSearchBaseViewController::~BuildSearchBaseViewController()
{
    services_.builder.removeObserver(*this);
}

QWidget *BuildSearchBaseViewController::buildProgressPage()
{
    auto *page = new QWidget(pages_);
    QVBoxLayout *parts = column(page, APART);
    parts->addWidget(heading(tr("Indexing your folders"), page));
    parts->addWidget(paragraph(tr("Quillon reads the names of all folders that it searches. You "
                                  "can already search: what has been found so far is listed."),
                               QPalette::WindowText, page));

    auto *progress = new QWidget(page);
    QVBoxLayout *lines = column(progress, 2 * NEAR);
    statusLabel_ = new ElidedLabel(progress);
    statusLabel_->setObjectName(QStringLiteral("statusLabel"));
    progressIndicator_ = new ProgressIndicator(progress);
    countLabel_ = label(QString(u' '), QPalette::PlaceholderText, progress);
    for (QWidget *line :
         std::initializer_list<QWidget *>{statusLabel_, progressIndicator_, countLabel_})
        lines->addWidget(line);
    parts->addWidget(progress);
    parts->addStretch();

    auto *stopSearchButton = pushButton(tr("&Stop…"), ButtonRank::secondary, page);
    connect(stopSearchButton, &QPushButton::clicked, this,
            &BuildSearchBaseViewController::stopSearchButtonClicked);
    hideButton_ = pushButton(tr("Continue in &Background"), ButtonRank::primary, page);
    connect(hideButton_, &QPushButton::clicked, this, [this] { window()->close(); });
    QHBoxLayout *buttons = line(NEAR);
    buttons->addWidget(stopSearchButton);
    buttons->addStretch();
    buttons->addWidget(hideButton_);
    parts->addLayout(buttons);
    return page;
}

QWidget *BuildSearchBaseViewController::buildQuestionPage()
{
    auto *page = new QWidget(pages_);
    QVBoxLayout *parts = column(page, APART);
    parts->addWidget(heading(tr("Stop indexing?"), page));
    parts->addWidget(paragraph(tr("Until the index is rebuilt, Quillon then finds only the folders "
                                  "that it has read so far."),
                               QPalette::WindowText, page));
    parts->addWidget(paragraph(
        tr("To begin anew instead, you can erase every setting for good: the shortcut, the folders "
           "to search, the patterns, the actions and the use counts. Quillon then quits and starts "
           "with its set-up the next time. Your folders and files stay as they are."),
        QPalette::PlaceholderText, page));
    failureLabel_ = label({}, QPalette::WindowText, page);
    emphasise(failureLabel_);
    parts->addWidget(failureLabel_);
    parts->addStretch();

    eraseButton_ = pushButton(tr("&Erase All and Quit"), ButtonRank::secondary, page);
    connect(eraseButton_, &QPushButton::clicked, this,
            &BuildSearchBaseViewController::eraseSettings);
    auto *stopButton = pushButton(tr("&Stop"), ButtonRank::secondary, page);
    connect(stopButton, &QPushButton::clicked, this, &BuildSearchBaseViewController::stopBuilding);
    continueButton_ = pushButton(tr("&Continue"), ButtonRank::primary, page);
    connect(continueButton_, &QPushButton::clicked, this,
            &BuildSearchBaseViewController::continueBuilding);
    QHBoxLayout *buttons = line(NEAR);
    buttons->addWidget(eraseButton_);
    buttons->addStretch();
    buttons->addWidget(stopButton);
    buttons->addWidget(continueButton_);
    parts->addLayout(buttons);
    return page;
}

// The build

void BuildSearchBaseViewController::buildBegan()
{
    progressIndicator_->setAnimating(true);
    updateCount();
    if (isVisible())
        countTimer_.start(COUNT_MILLISECONDS, this);
}

void BuildSearchBaseViewController::buildProgressed(const std::string &line)
{
    // Of all lines of the log, the user has time to read this one.
    constexpr std::string_view PROCESSING = "Processing ";
    const bool isProcessing = line.starts_with(PROCESSING);
    const QString text =
        QString::fromStdString(isProcessing ? line.substr(PROCESSING.size()) : line);
    statusLabel_->setText(isProcessing ? tr("Processing %1").arg(text) : text);
}

void BuildSearchBaseViewController::buildEnded()
{
    progressIndicator_->setAnimating(false);
    countTimer_.stop();
    updateCount();
    // A question on the screen waits for its answer.
    if (!isAsking())
        delegate_.searchBaseRebuildFinished();
}

void BuildSearchBaseViewController::updateCount()
{
    const std::size_t count = services_.searchBase.count();
    const double seconds = services_.builder.elapsed().count();
    const QString folders =
        count == 1 ? tr("1 folder so far") : tr("%1 folders so far").arg(countText(count));
    if (seconds < SHORTEST_FOR_RATE || !services_.builder.isBuilding()) {
        countLabel_->setText(folders);
        return;
    }
    const auto rate = static_cast<std::size_t>(static_cast<double>(count) / seconds);
    countLabel_->setText(tr("%1, %2 a second").arg(folders, countText(rate)));
}

void BuildSearchBaseViewController::keyPressEvent(QKeyEvent *event)
{
    const bool isText = !event->text().isEmpty() && event->text().at(0).isPrint();
    if (isText && !isAsking())
        delegate_.typedDuringBuild(event->text());
    else
        event->ignore();
}

void BuildSearchBaseViewController::timerEvent(QTimerEvent *)
{
    updateCount();
}

void BuildSearchBaseViewController::showEvent(QShowEvent *event)
{
    SetupView::showEvent(event);
    showQuestion(false);
    if (!services_.builder.isBuilding())
        return;
    updateCount();
    countTimer_.start(COUNT_MILLISECONDS, this);
}

void BuildSearchBaseViewController::hideEvent(QHideEvent *event)
{
    countTimer_.stop();
    SetupView::hideEvent(event);
}

// Stopping

void BuildSearchBaseViewController::stopSearchButtonClicked()
{
    showQuestion(true);
}

void BuildSearchBaseViewController::showQuestion(bool isAsked)
{
    failureLabel_->clear();
    pages_->setCurrentIndex(isAsked ? 1 : 0);
    (isAsked ? continueButton_ : hideButton_)->setFocus();
}

bool BuildSearchBaseViewController::isAsking() const
{
    return isVisible() && pages_->currentIndex() == 1;
}

void BuildSearchBaseViewController::continueBuilding()
{
    showQuestion(false);
    if (!services_.builder.isBuilding())
        delegate_.searchBaseRebuildFinished();
}

void BuildSearchBaseViewController::stopBuilding()
{
    services_.builder.cancel();
    delegate_.searchBaseRebuildStopped();
}

void BuildSearchBaseViewController::eraseSettings()
{
    if (!services_.defaults.removeAll()) {
        failureLabel_->setText(tr("The settings could not be erased."));
        return;
    }
    services_.defaults.synchronize();
    eraseButton_->setEnabled(false);
    continueButton_->setEnabled(false);
    services_.main.postDelayed(LAST_WORDS, [&delegate = delegate_] { delegate.terminate(); });
}

} // namespace quillon
