#pragma once

#include "app/widgets/FormPane.h"

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
    /// Fills the menu with the list's titles and makes it store what is chosen.
    void bindChoice(QComboBox &button, PreferencesSelectList &list, FormNote &note);
    /// Shows the stored value and, beside the control, whether the new value could be stored.
    void written(FormNote &note, bool isStored);

    Services services_;
    FormNote *matchOrderNote_ = nullptr;
    FormNote *matchWordsNote_ = nullptr;
    FormNote *fileManagerNote_ = nullptr;
    FormNote *openInFinderNote_ = nullptr;
    FormNote *quickSearchNote_ = nullptr;
    FormNote *quickSearchBehaviorNote_ = nullptr;
    FormNote *desktopSearchNote_ = nullptr;
    FormNote *recentFilesNote_ = nullptr;
    FormNote *startNote_ = nullptr;
};

} // namespace quillon
