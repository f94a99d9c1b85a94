#include "app/preferences/AdvancedPreferencesViewController.h"

#include "app/preferences/ForgetFoldersViewController.h"
#include "app/preferences/TreeDump.h"
#include "app/widgets/FileDialog.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormSheet.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "base/DefaultsStore.h"
#include "base/TaskQueue.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/RecentAccessScore.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/Preferences.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTimerEvent>

#include <chrono>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time between the reset and what follows it.
constexpr auto HAND_OVER = 1000ms;
/// How often the log is looked at while it can be seen.
constexpr auto LOG_REFRESH = 500ms;
constexpr int LOG_LINES = 8;

} // namespace

AdvancedPreferencesViewController::AdvancedPreferencesViewController(const Services &services,
                                                                     QWidget *parent)
    : FormPane(parent),
      includeBetasButton(new QCheckBox(tr("Include &beta versions"), this)),
      dumpButton(pushButton(tr("Save Index as &Text…"), ButtonRank::control, this)),
      forgetFoldersButton(pushButton(tr("&Forget Folders…"), ButtonRank::control, this)),
      resetButton(pushButton(tr("Set &Up Again…"), ButtonRank::control, this)),
      logView(new QPlainTextEdit(this)),
      services_(services)
{
    buildUpdates();
    addGap();
    buildForgetting();
    addGap();
    buildIndex();
    showStored();
}

void AdvancedPreferencesViewController::buildUpdates()
{
    addRow(tr("Updates:"), includeBetasButton);
    betasNote_ = addNote(tr("They come earlier and have been tried out less."));
    connect(includeBetasButton, &QCheckBox::clicked, this, [this](bool isOn) {
        const bool isStored = services_.preferences.enableBetaUpdates.set(isOn);
        betasNote_->sayFault(isStored ? QString() : writeFault());
        showStored();
    });
}

void AdvancedPreferencesViewController::buildForgetting()
{
    addRow(tr("Opened and kept:"), forgetFoldersButton);
    addNote(tr("How often you opened a folder lifts it in the list of matches. What you keep on "
               "top stands first when nothing is typed."));
    connect(forgetFoldersButton, &QPushButton::clicked, this,
            &AdvancedPreferencesViewController::askForFoldersToForget);
    addRow(tr("Set-up:"), resetButton);
    resetNote_ = addNote(tr("Forgets the shortcut, the search locations, the use counts and what "
                            "you keep on top, and asks as at the first start."));
    connect(resetButton, &QPushButton::clicked, this,
            &AdvancedPreferencesViewController::askForReset);
}

void AdvancedPreferencesViewController::buildIndex()
{
    addRow(tr("Index:"), dumpButton);
    dumpNote_ = addNote(tr("Writes the log below and every folder found into a text file."));
    connect(dumpButton, &QPushButton::clicked, this,
            &AdvancedPreferencesViewController::dumpClicked);
    logView->setReadOnly(true);
    logView->viewport()->setBackgroundRole(QPalette::Window); // as that of the tables
    logView->setTabChangesFocus(true);
    logView->setLineWrapMode(QPlainTextEdit::NoWrap);
    logView->setPlaceholderText(tr("Nothing has happened yet."));
    logView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    logView->setMinimumHeight(QFontMetrics(logView->font()).lineSpacing() * LOG_LINES);
    logView->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    logView->setAccessibleName(tr("Log of the index"));
    addWide(logView);
}

void AdvancedPreferencesViewController::showStored()
{
    includeBetasButton->setChecked(services_.preferences.enableBetaUpdates.value());
}

void AdvancedPreferencesViewController::showEvent(QShowEvent *event)
{
    showStored();
    showLog();
    logTimer_.start(static_cast<int>(LOG_REFRESH.count()), this);
    FormPane::showEvent(event);
}

void AdvancedPreferencesViewController::hideEvent(QHideEvent *event)
{
    logTimer_.stop();
    FormPane::hideEvent(event);
}

void AdvancedPreferencesViewController::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == logTimer_.timerId())
        showLog();
    else
        FormPane::timerEvent(event);
}

void AdvancedPreferencesViewController::showLog()
{
    QString text;
    for (const std::string &line : services_.searchBaseLogger.recentLogItems()) {
        if (!text.isEmpty())
            text += u'\n';
        text += QString::fromStdString(line);
    }
    if (text == logView->toPlainText())
        return;
    // The newest line stays in view unless the user looks at others.
    QScrollBar *scroll = logView->verticalScrollBar();
    const bool isAtEnd = scroll->value() == scroll->maximum();
    const int position = scroll->value();
    logView->setPlainText(text);
    scroll->setValue(isAtEnd ? scroll->maximum() : position);
}

void AdvancedPreferencesViewController::dumpClicked()
{
    // The desktop's own panel has no place for the message.
    auto *panel = new QFileDialog(window(), tr("Dump File Location"), QDir::homePath());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setOption(QFileDialog::DontUseNativeDialog);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setLabelText(QFileDialog::Accept, tr("Save"));
    arrangeFileDialog(*panel);
    panel->selectFile(proposedDumpName());
    if (auto *grid = qobject_cast<QGridLayout *>(panel->layout()))
        grid->addWidget(
            new QLabel(tr("Choose where you want to save the file tree dump file"), panel),
            grid->rowCount(), 0, 1, -1);
    connect(panel, &QFileDialog::fileSelected, this, &AdvancedPreferencesViewController::dumpTo);
    panel->open();
}

void AdvancedPreferencesViewController::dumpTo(const QString &path)
{
    dumpButton->setEnabled(false);
    dumpNote_->setSentence(tr("Writing %1…").arg(QDir::toNativeSeparators(path)));
    services_.background.post([&searchBase = services_.searchBase,
                               &logger = services_.searchBaseLogger, &main = services_.main, path,
                               self = QPointer(this)] {
        const QString fault = dumpTree(path, searchBase, logger);
        main.post([self, path, fault] {
            if (self)
                self->dumpEnded(path, fault);
        });
    });
}

void AdvancedPreferencesViewController::dumpEnded(const QString &path, const QString &fault)
{
    dumpButton->setEnabled(true);
    dumpNote_->setSentence(fault.isEmpty() ? tr("Written to %1").arg(path)
                                           : tr("Nothing was written."));
    if (fault.isEmpty())
        return;
    auto *dialog = new QMessageBox(QMessageBox::Warning, tr("Dump File Location"),
                                   tr("The index could not be written to “%1”.").arg(path),
                                   QMessageBox::Ok, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setTextFormat(Qt::PlainText);
    dialog->setInformativeText(fault);
    dialog->open();
}

void AdvancedPreferencesViewController::askForReset()
{
    FormSheet::confirm(
        tr("Set Up Again"), tr("&Forget and Set Up Again"),
        tr("The shortcut, the search locations with their patterns, the count of every use and "
           "the list of what you keep on top are removed from the settings and cannot be brought "
           "back. Then Quillon asks for a shortcut and folders as it did at its first start. Your "
           "folders and files are not touched."),
        window(), [this] { resetOnboardingStateClicked(); });
}

void AdvancedPreferencesViewController::resetOnboardingStateClicked()
{
    bool isStored = services_.shortcutMonitor.store(std::nullopt);
    isStored = services_.recentAccessScore.resetScores() && isStored;
    for (const std::string_view key :
         {PreferenceKeys::RECENT_ACCESS_SCORE_DATA, PreferenceKeys::KEPT_ON_TOP,
          PreferenceKeys::BOOKMARKS, PreferenceKeys::EXCLUDE_FOLDER_PATTERNS,
          PreferenceKeys::INCLUDE_FILE_PATTERNS})
        isStored = services_.defaults.remove(key) && isStored;
    resetNote_->sayFault(isStored ? QString() : writeFault());
    if (!isStored)
        return;
    resetButton->setEnabled(false);
    services_.main.postDelayed(HAND_OVER, [self = QPointer(this)] {
        if (!self)
            return;
        self->resetButton->setEnabled(true);
        Q_EMIT self->setUpForgotten();
    });
}

void AdvancedPreferencesViewController::askForFoldersToForget()
{
    auto *sheet = new ForgetFoldersViewController(services_.recentAccessScore,
                                                  services_.keptFolders, window());
    sheet->open();
}

} // namespace quillon
