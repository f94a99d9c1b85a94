#pragma once

#include "app/setup/OnboardingFolders.h"

#include <QBasicTimer>

#include <string>
#include <vector>

class QCheckBox;
class QStackedWidget;
class QPushButton;

namespace quillon {

class Autostart;
class Clipboard;
class HotKey;
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
        OnboardingFolders::Services folders;
        QLNShortcutMonitor &shortcutMonitor;
        QLNShortcutBinder &shortcutBinder;
        HotKey &hotKey;
        Clipboard &clipboard;
        Autostart &autostart;
    };

    /// All services outlive this object. The home folder, given by its absolute path, is the first
    /// one on offer.
    OnboardingViewController(const Services &services, const std::string &home,
                             OnboardingDelegate &delegate);
    ~OnboardingViewController() override;

    bool mayClose() override;

protected:
    /// Return ends the set-up, and a combination of keys becomes the shortcut.
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *buildSetUpPage(const std::string &home);
    QWidget *buildQuestionPage();
    QWidget *buildShortcutPart();
    QWidget *buildCommand();
    QLayout *buildDone();
    QWidget *part(const QString &title);

    void doneButtonClicked();
    void showQuestion(bool isAsked);
    void refresh();

    Services services_;
    OnboardingDelegate &delegate_;

    QStackedWidget *pages_;
    QLNShortcutView *shortcutView_ = nullptr;
    QWidget *command_ = nullptr;
    QPushButton *copyButton_ = nullptr;
    OnboardingFolders *folders_ = nullptr;
    QCheckBox *startAtLoginButton_ = nullptr;
    QLabel *missingLabel_ = nullptr;
    QPushButton *doneButton_ = nullptr;
    QPushButton *continueButton_ = nullptr;
    QBasicTimer timer_;
    /// True while the ticked folders are being stored after "Done" was pressed.
    bool isStoring_ = false;
};

} // namespace quillon
