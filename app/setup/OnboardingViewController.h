#pragma once

#include "app/setup/FolderCounter.h"
#include "app/widgets/SetupView.h"
#include "indexing/IncludeFolders.h"

#include <QBasicTimer>
#include <QPointer>

#include <functional>
#include <string>
#include <vector>

class QCheckBox;
class QStackedWidget;
class QPushButton;

namespace quillon {

class Autostart;
class Clipboard;
class FolderChoice;
class FolderChoices;
class FolderPicker;
class FormNote;
class HotKey;
class Places;
class QLNShortcutBinder;
class QLNShortcutMonitor;
class QLNShortcutView;

/// What the first-run window asks of the application around it.
class OnboardingDelegate
{
public:
    OnboardingDelegate() = default;
    virtual ~OnboardingDelegate() = default;
    OnboardingDelegate(const OnboardingDelegate &) = delete;
    OnboardingDelegate &operator=(const OnboardingDelegate &) = delete;

    /// A shortcut and a folder are stored. The window is still shown.
    virtual void onboardingFinished() = 0;
    virtual void terminate() = 0;
};

/// Sets up the program with a new user. Everything is filled in: a key that is free, the home
/// folder and the start at login, so that Return alone is enough. What the user chooses is stored
/// at once, and "Done" stores what is filled in. Closing the window asks whether the program is to
/// quit, since it cannot search yet. Main thread only.
class OnboardingViewController : public SetupView
{
    Q_OBJECT

public:
    struct Services
    {
        SearchBaseFinder &searchBaseFinder;
        const FolderIdentity &folderIdentity;
        FolderLister &folderLister;
        QLNShortcutMonitor &shortcutMonitor;
        QLNShortcutBinder &shortcutBinder;
        HotKey &hotKey;
        Clipboard &clipboard;
        Autostart &autostart;
        const Places &places;
        FolderPicker &folderPicker;
        TaskQueue &background;
        /// Folders are counted on this queue.
        TaskQueue &counting;
        TaskQueue &main;
    };

    /// All services outlive this object. The home folder, given by its absolute path, is the first
    /// one on offer.
    OnboardingViewController(const Services &services, const std::string &home,
                             OnboardingDelegate &delegate);
    ~OnboardingViewController() override;

    bool mayClose() override;

    /// Searches these folders too, as if the user had chosen them.
    void addFolders(const std::vector<std::string> &paths);

protected:
    /// Return ends the set-up, and a combination of keys becomes the shortcut.
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    class Checkmark;

    QWidget *buildSetUpPage();
    QWidget *buildQuestionPage();
    QWidget *buildShortcutPart();
    QWidget *buildCommand();
    QWidget *buildFoldersPart();
    QLayout *buildDone();
    QWidget *part(const QString &title);

    /// Calls back on the main thread, unless this object is destroyed by then.
    void readStoredFolders(std::function<void(const std::vector<std::string> &)> read);
    void showStoredFolders();
    void offerDisks();
    void storeTickedFolders(const std::vector<std::string> &stored);
    /// Calls back on the main thread, unless this object is destroyed by then.
    void includeFolders(std::vector<std::string> paths,
                        std::function<void(const IncludeFolders::Outcome &)> added);
    void setChosen(FolderChoice *choice, bool isChosen);
    void chooseFolderButtonClicked();
    void doneButtonClicked();
    void showQuestion(bool isAsked);
    void refresh();

    Services services_;
    const std::string home_;
    OnboardingDelegate &delegate_;

    QStackedWidget *pages_;
    QLNShortcutView *shortcutView_ = nullptr;
    QWidget *command_ = nullptr;
    QPushButton *copyButton_ = nullptr;
    FolderChoices *choices_ = nullptr;
    QPushButton *chooseFolderButton_ = nullptr;
    Checkmark *checkmarkImageView_ = nullptr;
    QLabel *chooseFolderDoneLabel_ = nullptr;
    FormNote *folderNote_ = nullptr;
    QCheckBox *startAtLoginButton_ = nullptr;
    QLabel *missingLabel_ = nullptr;
    QPushButton *doneButton_ = nullptr;
    QPushButton *continueButton_ = nullptr;
    QBasicTimer timer_;
    /// Counts the user's changes of the boxes and the readings of the stored folders, so that an
    /// old reading does not undo a newer click.
    int folderChanges_ = 0;
    /// True while the ticked folders are being stored after "Done" was pressed.
    bool isStoring_ = false;
};

} // namespace quillon
