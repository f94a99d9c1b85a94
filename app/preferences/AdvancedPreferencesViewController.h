#pragma once

#include "app/widgets/FormPane.h"

#include <QBasicTimer>

class QCheckBox;
class QPlainTextEdit;
class QPushButton;

namespace quillon {

class DefaultsStore;
class KeptFolders;
class Preferences;
class QLNShortcutMonitor;
class RecentAccessScore;
class SearchBase;
class SearchBaseLogger;
class TaskQueue;

/// Says what the pane asks of the application around it.
class AdvancedPreferencesDelegate
{
public:
    AdvancedPreferencesDelegate() = default;
    virtual ~AdvancedPreferencesDelegate() = default;
    AdvancedPreferencesDelegate(const AdvancedPreferencesDelegate &) = delete;
    AdvancedPreferencesDelegate &operator=(const AdvancedPreferencesDelegate &) = delete;

    /// The set-up has been forgotten: the first-run set-up begins again.
    virtual void setUpAgain() = 0;
};

/// The pane of what few need: beta versions, the index's log and dump, forgetting.
class AdvancedPreferencesViewController final : public FormPane
{
    Q_OBJECT

public:
    struct Services
    {
        DefaultsStore &defaults;
        Preferences &preferences;
        QLNShortcutMonitor &shortcutMonitor;
        RecentAccessScore &recentAccessScore;
        KeptFolders &keptFolders;
        SearchBase &searchBase;
        SearchBaseLogger &searchBaseLogger;
        /// The index is written to a file on this queue.
        TaskQueue &background;
        TaskQueue &main;
    };

    /// All of them outlive this.
    AdvancedPreferencesViewController(const Services &services,
                                      AdvancedPreferencesDelegate &delegate,
                                      QWidget *parent = nullptr);

    void showStored() override;

    /// Asks where to, then writes the index and its log there.
    void dumpClicked();
    /// Writes them in the background; what goes wrong is said in a dialog.
    void dumpTo(const QString &path);
    /// Removes the shortcut, the search locations, the use counts and what is kept on top, from the
    /// store and from memory, and a second later hands over to the delegate; not when a write
    /// failed, which is said beside the button.
    void resetOnboardingStateClicked();

    QCheckBox *const includeBetasButton;
    QPushButton *const dumpButton;
    QPushButton *const forgetFoldersButton;
    QPushButton *const resetButton;
    QPlainTextEdit *const logView;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void buildUpdates();
    void buildForgetting();
    void buildIndex();
    void showLog();
    void dumpEnded(const QString &path, const QString &fault);
    void askForReset();
    void askForFoldersToForget();

    Services services_;
    AdvancedPreferencesDelegate &delegate_;
    FormNote *betasNote_ = nullptr;
    FormNote *dumpNote_ = nullptr;
    FormNote *resetNote_ = nullptr;
    QBasicTimer logTimer_;
};

} // namespace quillon
