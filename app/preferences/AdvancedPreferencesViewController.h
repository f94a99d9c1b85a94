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

    /// All services outlive this object.
    explicit AdvancedPreferencesViewController(const Services &services, QWidget *parent = nullptr);

    void showStored() override;

    /// Asks where to, then writes the index and its log there.
    void dumpClicked();
    /// Writes them in the background; what goes wrong is said in a dialog.
    void dumpTo(const QString &path);
    /// Removes the shortcut, the search locations, the use counts and what is kept on top, from the
    /// store and from memory, and reports that a second later. If a write failed, says so beside
    /// the button instead.
    void resetOnboardingStateClicked();

    QCheckBox *const includeBetasButton;
    QPushButton *const dumpButton;
    QPushButton *const forgetFoldersButton;
    QPushButton *const resetButton;
    QPlainTextEdit *const logView;

Q_SIGNALS:
    /// Nothing of the first set-up is stored any more, so that it can begin again.
    void setUpForgotten();

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
    FormNote *betasNote_ = nullptr;
    FormNote *dumpNote_ = nullptr;
    FormNote *resetNote_ = nullptr;
    QBasicTimer logTimer_;
};

} // namespace quillon
