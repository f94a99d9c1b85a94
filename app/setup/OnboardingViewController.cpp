#include "app/setup/OnboardingViewController.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/QLNShortcutView.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "platform/Autostart.h"
#include "platform/Clipboard.h"
#include "platform/HotKey.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillon {

namespace {

constexpr int REFRESH_MILLISECONDS = 150;
/// The gap between the rows of a part.
constexpr int ROW = 8;
/// Notes come and go in this many lines, so that the height of the window does not change.
constexpr int KEY_NOTE_LINES = 1;
constexpr const char *COMMAND = "quillon --toggle";

} // namespace

OnboardingViewController::OnboardingViewController(const Services &services,
                                                   const std::string &home,
                                                   OnboardingDelegate &delegate)
    : services_(services), delegate_(delegate), pages_(new QStackedWidget(this))
{
    column(this, APART, MARGIN)->addWidget(pages_);
    pages_->addWidget(buildSetUpPage(home));
    pages_->addWidget(buildQuestionPage());
    setFocusProxy(doneButton_);

    folders_->offerHome();
    connect(folders_, &OnboardingFolders::chosenChanged, this, &OnboardingViewController::refresh);
    connect(&services_.shortcutMonitor, &QLNShortcutMonitor::changed, this,
            &OnboardingViewController::refresh);
    connect(shortcutView_, &QLNShortcutView::recordingChanged, this,
            &OnboardingViewController::refresh);
    connect(&services_.shortcutBinder, &QLNShortcutBinder::outcomeChanged, this,
            &OnboardingViewController::refresh);
    refresh();
}

OnboardingViewController::~OnboardingViewController() = default;

QWidget *OnboardingViewController::buildSetUpPage(const std::string &home)
{
    auto *page = new QWidget(pages_);
    QVBoxLayout *parts = column(page, APART);
    parts->addWidget(heading(tr("Set up Quillon"), page));
    parts->addWidget(buildShortcutPart());
    folders_ = new OnboardingFolders(services_.folders, home, copyButton_, page);
    parts->addWidget(folders_);
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

// What is missing, and what follows

void OnboardingViewController::refresh()
{
    const bool canHaveKey = services_.hotKey.isPossible();
    shortcutView_->setVisible(canHaveKey);
    command_->setVisible(!canHaveKey);
    const bool hasShortcut = !canHaveKey || services_.shortcutMonitor.shortcut().has_value() ||
                             shortcutView_->isProposing();
    const bool hasFolder = folders_->chosenCount() > 0;
    doneButton_->setEnabled(hasShortcut && hasFolder && !isStoring_);
    missingLabel_->setText(hasShortcut && hasFolder ? QString()
                           : hasShortcut            ? tr("Choose a folder to go on.")
                           : hasFolder              ? tr("Record a shortcut to go on.")
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
    folders_->storeTicked([this](bool isComplete) {
        isStoring_ = false;
        if (isComplete)
            delegate_.onboardingFinished();
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
    folders_->updateCounts();
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
    folders_->start();
}

void OnboardingViewController::hideEvent(QHideEvent *event)
{
    timer_.stop();
    folders_->stop();
    SetupView::hideEvent(event);
}

} // namespace quillon
