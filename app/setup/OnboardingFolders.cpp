#include "app/setup/OnboardingFolders.h"

#include "app/setup/FolderChoices.h"
#include "app/widgets/FolderChooser.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/QuillonStyle.h"
#include "base/TaskQueue.h"
#include "indexing/SearchBaseFinder.h"
#include "platform/Places.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quillon {

namespace {

constexpr int CHECKMARK = 20;
/// The gap between the rows.
constexpr int LINE_GAP = 8;
/// Notes come and go in this many lines, so that the height of the window does not change.
constexpr int NOTE_LINES = 2;

} // namespace

/// The check mark is drawn, so that it is crisp at every scale.
class OnboardingFolders::Checkmark : public QWidget
{
public:
    explicit Checkmark(QWidget *parent) : QWidget(parent) { setFixedSize(CHECKMARK, CHECKMARK); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(
            QPen(palette().color(QPalette::Link), 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{{4.0, 10.5}, {8.5, 15.0}, {16.0, 5.5}});
    }
};

OnboardingFolders::OnboardingFolders(const Services &services, const std::string &home,
                                     QWidget *controlBefore, QWidget *parent)
    : SetupView(parent), services_(services), home_(home), choices_(new FolderChoices(this))
{
    QVBoxLayout *lines = column(this, LINE_GAP);
    QLabel *title = label(tr("The folders to search"), QPalette::WindowText, this);
    emphasise(title);
    lines->addWidget(title);
    choices_->setTabStopBefore(controlBefore);
    connect(choices_, &FolderChoices::choiceMade, this, &OnboardingFolders::setChosen);
    lines->addWidget(choices_);
    buildChooser();
}

void OnboardingFolders::offerHome()
{
    choices_->offer(home_, tr("Home folder (%1)").arg(QString::fromStdString(home_)))
        .setChosen(true);
    refresh();
}

void OnboardingFolders::buildChooser()
{
    auto *button = pushButton(tr("Choose &Folder…"), ButtonRank::control, this);
    connect(button, &QPushButton::clicked, this, &OnboardingFolders::chooseFolders);
    checkmarkImageView_ = new Checkmark(this);
    chooseFolderDoneLabel_ = label({}, QPalette::WindowText, this);
    QHBoxLayout *across = line(LINE_GAP);
    across->addWidget(button);
    across->addStretch();
    across->addWidget(checkmarkImageView_);
    across->addWidget(chooseFolderDoneLabel_);
    auto *lines = static_cast<QVBoxLayout *>(layout());
    lines->addLayout(across);
    note_ = new FormNote(tr("Everything below them is found, except what is hidden."), this);
    note_->setTextWidth(TEXT_WIDTH);
    note_->keepRoomFor(NOTE_LINES);
    lines->addWidget(note_);
}

std::size_t OnboardingFolders::chosenCount() const
{
    return choices_->chosen().size();
}

void OnboardingFolders::start()
{
    choices_->startCounting(
        {services_.folderLister, services_.searchBaseFinder, services_.counting});
    showStored();
    offerDisks();
}

void OnboardingFolders::stop()
{
    choices_->stopCounting();
}

void OnboardingFolders::updateCounts()
{
    choices_->updateCounts();
}

void OnboardingFolders::readStored(std::function<void(const std::vector<std::string> &)> read)
{
    services_.background.post(
        [services = services_, self = QPointer(this), read = std::move(read)] {
            std::vector<std::string> stored;
            for (const auto &location : services.searchBaseFinder.includeLocations())
                stored.push_back(location.url());
            services.main.post([stored = std::move(stored), self, read] {
                if (self)
                    read(stored);
            });
        });
}

void OnboardingFolders::showStored()
{
    readStored([this, change = ++changes_](const std::vector<std::string> &stored) {
        if (change != changes_)
            return;
        choices_->setChosen(stored.empty() ? std::vector{home_} : stored);
        refresh();
    });
}

void OnboardingFolders::offerDisks()
{
    services_.background.post([services = services_, self = QPointer(this)] {
        services.main.post([self, disks = services.places.mountedDisks()] {
            if (!self)
                return;
            for (const std::string &disk : disks)
                self->choices_->offer(disk, QString::fromStdString(disk));
        });
    });
}

void OnboardingFolders::include(std::vector<std::string> paths,
                                std::function<void(const IncludeFolders::Outcome &)> added)
{
    services_.background.post([services = services_, self = QPointer(this),
                               paths = std::move(paths), added = std::move(added)] {
        const IncludeFolders include(services.searchBaseFinder, services.folderIdentity,
                                     services.folderLister);
        services.main.post([outcome = include.add(paths), self, added] {
            if (self)
                added(outcome);
        });
    });
}

void OnboardingFolders::setChosen(FolderChoice *choice, bool isChosen)
{
    ++changes_;
    if (isChosen) {
        // The choice is ticked again once it is stored.
        choice->setChosen(false);
        addFolders({choice->path()});
        return;
    }
    // Only the disk can say which entries lead to the folder.
    services_.background.post([services = services_, folder = choice->path()] {
        services.searchBaseFinder.remove(IncludePathSearchBaseLocation(folder));
    });
    note_->sayFault({});
    refresh();
}

void OnboardingFolders::addFolders(const std::vector<std::string> &paths)
{
    include(paths, [this](const IncludeFolders::Outcome &outcome) {
        ++changes_;
        note_->sayFault(refusalText(outcome.refused));
        for (const std::string &path : outcome.added)
            choices_->offer(path, QString::fromStdString(path)).setChosen(true);
        refresh();
        if (!outcome.added.empty())
            choices_->reveal(outcome.added.back());
    });
}

void OnboardingFolders::chooseFolders()
{
    askForFolders(services_.folderPicker, tr("Choose the folders to search"), this,
                  [this](const auto &paths) { addFolders(paths); });
}

void OnboardingFolders::storeTicked(std::function<void(bool isComplete)> finished)
{
    readStored([this, finished = std::move(finished)](const std::vector<std::string> &stored) {
        std::vector<std::string> missing = choices_->chosen();
        std::erase_if(missing, [&stored](const std::string &path) {
            return std::ranges::find(stored, path) != stored.end();
        });
        include(std::move(missing), [this, finished](const IncludeFolders::Outcome &outcome) {
            note_->sayFault(refusalText(outcome.refused));
            if (!outcome.refused.empty())
                showStored();
            finished(outcome.refused.empty());
        });
    });
}

void OnboardingFolders::refresh()
{
    const std::size_t folders = chosenCount();
    checkmarkImageView_->setVisible(folders > 0);
    chooseFolderDoneLabel_->setVisible(folders > 0);
    chooseFolderDoneLabel_->setText(folders == 1 ? tr("1 folder chosen")
                                                 : tr("%1 folders chosen").arg(folders));
    Q_EMIT chosenChanged();
}

} // namespace quillon
