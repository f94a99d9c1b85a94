#include "app/setup/OnboardingViewController.h"

#include "app/setup/FolderChoices.h"
#include "app/widgets/FolderChooser.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/QLNShortcutView.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "base/TaskQueue.h"
#include "indexing/SearchBaseFinder.h"
#include "platform/Autostart.h"
#include "platform/Clipboard.h"
#include "platform/HotKey.h"
#include "platform/Places.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace quillon {

namespace {

constexpr int REFRESH_MILLISECONDS = 150;
constexpr int CHECKMARK = 20;
/// The gap between the rows of a part.
constexpr int ROW = 8;
/// Notes come and go in this many lines, so that the height of the window does not change.
constexpr int KEY_NOTE_LINES = 1;
constexpr int FOLDER_NOTE_LINES = 2;
constexpr const char *COMMAND = "quillon --toggle";

} // namespace

/// The check mark is drawn, so that it is crisp at every scale.
class OnboardingViewController::Checkmark : public QWidget
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

OnboardingViewController::OnboardingViewController(const Services &services,
                                                   const std::string &home,
                                                   OnboardingDelegate &delegate)
    : services_(services), home_(home), delegate_(delegate), pages_(new QStackedWidget(this))
{
    column(this, APART, MARGIN)->addWidget(pages_);
    pages_->addWidget(buildSetUpPage());
    pages_->addWidget(buildQuestionPage());
    setFocusProxy(doneButton_);

    choices_->offer(home_, tr("Home folder (%1)").arg(QString::fromStdString(home_)))
        .setChosen(true);
    connect(&services_.shortcutMonitor, &QLNShortcutMonitor::changed, this,
            &OnboardingViewController::refresh);
    connect(shortcutView_, &QLNShortcutView::recordingChanged, this,
            &OnboardingViewController::refresh);
    connect(&services_.shortcutBinder, &QLNShortcutBinder::outcomeChanged, this,
            &OnboardingViewController::refresh);
    refresh();
}

OnboardingViewController::~OnboardingViewController() = default;

QWidget *OnboardingViewController::buildSetUpPage()
{
    auto *page = new QWidget(pages_);
    QVBoxLayout *parts = column(page, APART);
    parts->addWidget(heading(tr("Set up Quillon"), page));
    parts->addWidget(buildShortcutPart());
    parts->addWidget(buildFoldersPart());
    startAtLoginButton_ = new QCheckBox(tr("Start at &login"), page);
    startAtLoginButton_->setChecked(true);
    parts->addWidget(startAtLoginButton_);
    parts->addLayout(buildDone());
    return page;
}

QWidget *OnboardingViewController::buildQuestionPage()
{
    auto *page = new QWidget(pages_);
    QVBoxLayout *parts = column(page, APART);
    parts->addWidget(heading(tr("Quit before the set-up is done?"), page));
    parts->addWidget(paragraph(tr("Quillon cannot search without a key and a folder, so closing "
                                  "the set-up quits it. The next start continues from here, and "
                                  "what you have chosen so far is kept."),
                               QPalette::WindowText, page));
    parts->addStretch();
    auto *quitButton = pushButton(tr("&Quit"), ButtonRank::secondary, page);
    connect(quitButton, &QPushButton::clicked, this, [this] { delegate_.terminate(); });
    continueButton_ = pushButton(tr("&Continue Set-Up"), ButtonRank::primary, page);
    connect(continueButton_, &QPushButton::clicked, this, [this] { showQuestion(false); });
    QHBoxLayout *buttons = line(NEAR);
    buttons->addStretch();
    buttons->addWidget(quitButton);
    buttons->addWidget(continueButton_);
    parts->addLayout(buttons);
    return page;
}

QWidget *OnboardingViewController::part(const QString &title)
{
    auto *part = new QWidget(this);
    QLabel *heading = label(title, QPalette::WindowText, part);
    emphasise(heading);
    column(part, ROW)->addWidget(heading);
    return part;
}

QWidget *OnboardingViewController::buildShortcutPart()
{
    QWidget *shortcut = part(tr("The key that brings the panel up"));
    shortcutView_ = new QLNShortcutView(services_.shortcutMonitor, services_.shortcutBinder,
                                        services_.hotKey, shortcut);
    shortcutView_->note().setTextWidth(TEXT_WIDTH);
    shortcutView_->note().keepRoomFor(KEY_NOTE_LINES);
    shortcutView_->setSentence(tr("Press another one here to change it."));
    shortcut->layout()->addWidget(shortcutView_);
    command_ = buildCommand();
    shortcut->layout()->addWidget(command_);
    return shortcut;
}

/// This is shown in sessions in which no program can have a key of its own.
QWidget *OnboardingViewController::buildCommand()
{
    auto *part = new QWidget(this);
    QVBoxLayout *lines = column(part, ROW);
    lines->addWidget(paragraph(tr("Programs cannot take keys in this session. Bind a key to this "
                                  "command in the desktop’s keyboard settings:"),
                               QPalette::WindowText, part));
    QLabel *command = label(QString::fromLatin1(COMMAND), QPalette::WindowText, part);
    command->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    command->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    copyButton_ = pushButton(tr("&Copy"), ButtonRank::control, part);
    connect(copyButton_, &QPushButton::clicked, this,
            [this] { services_.clipboard.setString(COMMAND); });
    QHBoxLayout *across = line(APART);
    across->addWidget(command);
    across->addWidget(copyButton_);
    across->addStretch();
    lines->addLayout(across);
    return part;
}

QWidget *OnboardingViewController::buildFoldersPart()
{
    QWidget *folders = part(tr("The folders to search"));
    auto *lines = static_cast<QVBoxLayout *>(folders->layout());
    choices_ = new FolderChoices(folders);
    choices_->setTabStopBefore(copyButton_);
    connect(choices_, &FolderChoices::choiceMade, this, &OnboardingViewController::setChosen);
    lines->addWidget(choices_);

    chooseFolderButton_ = pushButton(tr("Choose &Folder…"), ButtonRank::control, folders);
    connect(chooseFolderButton_, &QPushButton::clicked, this,
            &OnboardingViewController::chooseFolderButtonClicked);
    checkmarkImageView_ = new Checkmark(folders);
    chooseFolderDoneLabel_ = label({}, QPalette::WindowText, folders);
    QHBoxLayout *across = line(ROW);
    across->addWidget(chooseFolderButton_);
    across->addStretch();
    across->addWidget(checkmarkImageView_);
    across->addWidget(chooseFolderDoneLabel_);
    lines->addLayout(across);
    folderNote_ =
        new FormNote(tr("Everything below them is found, except what is hidden."), folders);
    folderNote_->setTextWidth(TEXT_WIDTH);
    folderNote_->keepRoomFor(FOLDER_NOTE_LINES);
    lines->addWidget(folderNote_);
    return folders;
}

QLayout *OnboardingViewController::buildDone()
{
    missingLabel_ = label({}, QPalette::PlaceholderText, this);
    // A long sentence takes a second line beside the button instead of a wider window.
    missingLabel_->setWordWrap(true);
    missingLabel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *quitButton = pushButton(tr("&Quit"), ButtonRank::secondary, this);
    connect(quitButton, &QPushButton::clicked, this, [this] { window()->close(); });
    doneButton_ = pushButton(tr("&Done"), ButtonRank::primary, this);
    connect(doneButton_, &QPushButton::clicked, this, &OnboardingViewController::doneButtonClicked);
    QHBoxLayout *across = line(NEAR);
    across->addWidget(missingLabel_, 1);
    across->addWidget(quitButton);
    across->addWidget(doneButton_);
    return across;
}

// The folders

void OnboardingViewController::readStoredFolders(
    std::function<void(const std::vector<std::string> &)> read)
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

void OnboardingViewController::showStoredFolders()
{
    readStoredFolders([this, change = ++folderChanges_](const std::vector<std::string> &stored) {
        if (change != folderChanges_)
            return;
        choices_->setChosen(stored.empty() ? std::vector{home_} : stored);
        refresh();
    });
}

void OnboardingViewController::offerDisks()
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

void OnboardingViewController::includeFolders(
    std::vector<std::string> paths, std::function<void(const IncludeFolders::Outcome &)> added)
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

void OnboardingViewController::setChosen(FolderChoice *choice, bool isChosen)
{
    ++folderChanges_;
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
    folderNote_->sayFault({});
    refresh();
}

void OnboardingViewController::addFolders(const std::vector<std::string> &paths)
{
    includeFolders(paths, [this](const IncludeFolders::Outcome &outcome) {
        ++folderChanges_;
        folderNote_->sayFault(refusalText(outcome.refused));
        for (const std::string &path : outcome.added)
            choices_->offer(path, QString::fromStdString(path)).setChosen(true);
        refresh();
        if (!outcome.added.empty())
            choices_->reveal(outcome.added.back());
    });
}

void OnboardingViewController::chooseFolderButtonClicked()
{
    auto *chooser =
        new FolderChooser(services_.folderPicker, tr("Choose the folders to search"), this);
    connect(chooser, &FolderChooser::foldersChosen, this, &OnboardingViewController::addFolders);
}

// What is missing, and what follows

void OnboardingViewController::refresh()
{
    const bool canHaveKey = services_.hotKey.isPossible();
    shortcutView_->setVisible(canHaveKey);
    command_->setVisible(!canHaveKey);
    const bool hasShortcut = !canHaveKey || services_.shortcutMonitor.shortcut().has_value() ||
                             shortcutView_->isProposing();
    const std::size_t folders = choices_->chosen().size();

    checkmarkImageView_->setVisible(folders > 0);
    chooseFolderDoneLabel_->setVisible(folders > 0);
    chooseFolderDoneLabel_->setText(folders == 1 ? tr("1 folder chosen")
                                                 : tr("%1 folders chosen").arg(folders));
    doneButton_->setEnabled(hasShortcut && folders > 0 && !isStoring_);
    missingLabel_->setText(hasShortcut && folders > 0 ? QString()
                           : hasShortcut              ? tr("Choose a folder to go on.")
                           : folders > 0              ? tr("Record a shortcut to go on.")
                                         : tr("Record a shortcut and choose a folder to go on."));
}

void OnboardingViewController::doneButtonClicked()
{
    auto &monitor = services_.shortcutMonitor;
    const bool isBoundByDesktop = !services_.hotKey.isPossible() && !monitor.shortcut();
    if (isBoundByDesktop ? !monitor.store(QLNShortcut::boundByDesktop())
                         : !shortcutView_->storeProposed())
        return missingLabel_->setText(writeFault());
    if (!services_.autostart.setEnabled(startAtLoginButton_->isChecked())) {
        // A desktop without autostart is no reason to stay here, so the next "Done" finishes.
        startAtLoginButton_->setChecked(false);
        return missingLabel_->setText(tr("Quillon cannot be started at login here."));
    }
    isStoring_ = true;
    refresh();
    readStoredFolders(
        [this](const std::vector<std::string> &stored) { storeTickedFolders(stored); });
}

void OnboardingViewController::storeTickedFolders(const std::vector<std::string> &stored)
{
    std::vector<std::string> missing = choices_->chosen();
    std::erase_if(missing, [&stored](const std::string &path) {
        return std::ranges::find(stored, path) != stored.end();
    });
    includeFolders(std::move(missing), [this](const IncludeFolders::Outcome &outcome) {
        isStoring_ = false;
        folderNote_->sayFault(refusalText(outcome.refused));
        if (outcome.refused.empty())
            delegate_.onboardingFinished();
        else
            showStoredFolders();
    });
}

// Closing the window

bool OnboardingViewController::mayClose()
{
    showQuestion(pages_->currentIndex() == 0);
    return false;
}

void OnboardingViewController::showQuestion(bool isAsked)
{
    pages_->setCurrentIndex(isAsked ? 1 : 0);
    if (isAsked)
        continueButton_->setFocus();
    else
        setFocus();
}

void OnboardingViewController::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (pages_->currentIndex() == 0 && isReturn && event->modifiers() == Qt::NoModifier)
        doneButton_->click();
    else if (pages_->currentIndex() != 0 || !shortcutView_->recordAtOnce(*event))
        event->ignore();
}

void OnboardingViewController::timerEvent(QTimerEvent *)
{
    choices_->updateCounts();
    // A desktop that cannot grant a key says so some time after the start.
    if (shortcutView_->isVisible() != services_.hotKey.isPossible())
        refresh();
}

void OnboardingViewController::showEvent(QShowEvent *event)
{
    SetupView::showEvent(event);
    shortcutView_->propose();
    refresh();
    showQuestion(false);
    timer_.start(REFRESH_MILLISECONDS, this);
    choices_->startCounting(
        {services_.folderLister, services_.searchBaseFinder, services_.counting});
    showStoredFolders();
    offerDisks();
}

void OnboardingViewController::hideEvent(QHideEvent *event)
{
    timer_.stop();
    choices_->stopCounting();
    SetupView::hideEvent(event);
}

} // namespace quillon
