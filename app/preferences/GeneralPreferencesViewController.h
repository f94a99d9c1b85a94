#pragma once

#include "app/widgets/FormPane.h"

#include <functional>

class QCheckBox;
class QComboBox;

namespace quillon {

class ApplicationLauncher;
class Autostart;
class DefaultsStore;
class FileManager;
class HotKey;
class Preferences;
class PreferencesSelectList;
class QLNShortcutBinder;
class QLNShortcutMonitor;
class QLNShortcutView;

/// The pane for what everyone sets once: the shortcut, the order of the rows, the file manager, the
/// start at login.
class GeneralPreferencesViewController final : public FormPane
{
    Q_OBJECT

public:
    struct Services
    {
        DefaultsStore &defaults;
        Preferences &preferences;
        QLNShortcutMonitor &shortcutMonitor;
        QLNShortcutBinder &shortcutBinder;
        HotKey &hotKey;
        const FileManager &fileManager;
        const ApplicationLauncher &applications;
        Autostart &autostart;
    };

    /// All services outlive this object.
    explicit GeneralPreferencesViewController(const Services &services, QWidget *parent = nullptr);

    void showStored() override;

    QLNShortcutView *const shortcutView;
    QComboBox *const matchOrderButton;
    QCheckBox *const matchWordsButton;
    QComboBox *const openInFinderBehaviorButton;
    QCheckBox *const enableQuickSearchButton;
    QComboBox *const quickSearchPopUpButton;
    QComboBox *const fileManagerButton;
    QCheckBox *const desktopSearchButton;
    QCheckBox *const recentFilesButton;
    QCheckBox *const startAtLoginButton;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void buildShortcut();
    void buildOrder();
    void buildFileManager();
    void buildQuickSearch();
    void buildDesktop();
    void fillFileManagers();
    void showFileManager();
    void chooseFileManager();
    /// Adds a menu of the list's titles, which stores what is chosen. Returns its note.
    FormNote *addChoice(const QString &label, QComboBox *button, PreferencesSelectList &list);
    /// Adds a box with a note, and stores by the callback whether it is ticked.
    void addTick(const QString &label, QCheckBox *box, const QString &sentence,
                 const std::function<bool(bool isOn)> &store);
    /// Shows the stored value and, beside the control, whether the new value could be stored.
    void written(FormNote &note, bool isStored);

    Services services_;
    FormNote *matchOrderNote_ = nullptr;
    FormNote *fileManagerNote_ = nullptr;
};

} // namespace quillon
