#include "app/preferences/GeneralPreferencesViewController.h"

#include "app/preferences/ListedApplication.h"
#include "app/preferences/PreferenceTexts.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/QLNShortcutView.h"
#include "app/widgets/WriteFault.h"
#include "base/DefaultsStore.h"
#include "platform/ApplicationLauncher.h"
#include "platform/Autostart.h"
#include "platform/FileManager.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/Preferences.h"

#include <QCheckBox>
#include <QComboBox>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

namespace {

constexpr std::string_view DESKTOP_SUFFIX = ".desktop";

/// Returns the id with its suffix, since ids are written with and without it.
std::string wholeId(std::string id)
{
    if (!id.empty() && !id.ends_with(DESKTOP_SUFFIX))
        id += DESKTOP_SUFFIX;
    return id;
}

} // namespace

GeneralPreferencesViewController::GeneralPreferencesViewController(const Services &services,
                                                                   QWidget *parent)
    : FormPane(parent),
      shortcutView(new QLNShortcutView(services.shortcutMonitor, services.shortcutBinder,
                                       services.hotKey, this)),
      matchOrderButton(new QComboBox(this)),
      matchWordsButton(
          new QCheckBox(tr("Find &words in any order, and without their accents"), this)),
      openInFinderBehaviorButton(new QComboBox(this)),
      enableQuickSearchButton(new QCheckBox(tr("Find &items of the window in front first"), this)),
      quickSearchPopUpButton(new QComboBox(this)),
      fileManagerButton(new QComboBox(this)),
      desktopSearchButton(new QCheckBox(tr("Answer in GNOME's overview and in &KRunner"), this)),
      recentFilesButton(new QCheckBox(tr("&Enter what is opened in the desktop's list"), this)),
      startAtLoginButton(new QCheckBox(tr("Start at &login"), this)),
      services_(services)
{
    buildShortcut();
    addGap();
    buildOrder();
    addGap();
    buildFileManager();
    addGap();
    buildQuickSearch();
    addGap();
    buildDesktop();
    addStretch();
    showStored();
}

void GeneralPreferencesViewController::buildShortcut()
{
    addRow(tr("Sho&rtcut:"), shortcutView);
    addNote(tr("Shows the search panel from anywhere, and hides it again."));
}

void GeneralPreferencesViewController::buildOrder()
{
    matchOrderNote_ =
        addChoice(tr("Or&der of the rows:"), matchOrderButton, services_.preferences.matchOrder);
    addTick(tr("Further rows:"), matchWordsButton,
            tr("They follow when few folders match as typed."),
            [this](bool isOn) { return services_.preferences.matchWordsInOrder.set(!isOn); });
}

void GeneralPreferencesViewController::buildFileManager()
{
    addRow(tr("&File manager:"), fileManagerButton);
    fileManagerNote_ = addNote();
    connect(fileManagerButton, &QComboBox::activated, this,
            &GeneralPreferencesViewController::chooseFileManager);
    addChoice(tr("&Open folders in:"), openInFinderBehaviorButton,
              services_.preferences.openInFinderBehavior);
}

void GeneralPreferencesViewController::buildQuickSearch()
{
    addTick(tr("Quick search:"), enableQuickSearchButton,
            tr("When the panel comes up over a window of the file manager, the items that it shows "
               "stand before all others."),
            [this](bool isOn) { return services_.preferences.finderQuickSearch.set(isOn); });
    addChoice(tr("Choosing one of &them:"), quickSearchPopUpButton,
              services_.preferences.quickSearchBehavior);
}

void GeneralPreferencesViewController::buildDesktop()
{
    addTick(tr("Desktop search:"), desktopSearchButton, {},
            [this](bool isOn) { return services_.preferences.hideFromDesktopSearch.set(!isOn); });
    addTick(tr("Recent files:"), recentFilesButton,
            tr("File choosers show it. If the desktop is set to remember nothing, nothing is "
               "entered."),
            [this](bool isOn) { return services_.preferences.hideFromRecentFiles.set(!isOn); });
    addTick(tr("Start:"), startAtLoginButton,
            tr("Quillon then waits in the background for its shortcut."),
            [this](bool isOn) { return services_.autostart.setEnabled(isOn); });
}

FormNote *GeneralPreferencesViewController::addChoice(const QString &label, QComboBox *button,
                                                      PreferencesSelectList &list)
{
    addRow(label, button);
    FormNote *note = addNote();
    for (const PreferencesSelectListItem &item : list.values())
        button->addItem(drawnTitle(item.title));
    connect(button, &QComboBox::activated, this, [this, &list, note](int index) {
        written(*note, list.select(list.values().at(static_cast<std::size_t>(index))));
    });
    return note;
}

void GeneralPreferencesViewController::addTick(const QString &label, QCheckBox *box,
                                               const QString &sentence,
                                               const std::function<bool(bool isOn)> &store)
{
    addRow(label, box);
    FormNote *note = addNote(sentence);
    connect(box, &QCheckBox::clicked, this,
            [this, note, store](bool isOn) { written(*note, store(isOn)); });
}

void GeneralPreferencesViewController::showStored()
{
    const auto showChoice = [](QComboBox &button, const PreferencesSelectList &list) {
        const auto &values = list.values();
        const auto selected = std::ranges::find(values, list.selected());
        button.setCurrentIndex(static_cast<int>(selected - values.begin()));
    };
    const bool isQuickSearchOn = services_.preferences.finderQuickSearch.value();
    showChoice(*matchOrderButton, services_.preferences.matchOrder);
    const bool areNamesFirst =
        services_.preferences.matchOrder.selected() == Preferences::MatchOrder::names;
    matchOrderNote_->setSentence(
        areNamesFirst ? tr("Folders whose own names begin with what is typed come first.")
                      : tr("The letters count by where they lie in the whole path."));
    matchWordsButton->setChecked(!services_.preferences.matchWordsInOrder.value());
    showChoice(*openInFinderBehaviorButton, services_.preferences.openInFinderBehavior);
    showChoice(*quickSearchPopUpButton, services_.preferences.quickSearchBehavior);
    enableQuickSearchButton->setChecked(isQuickSearchOn);
    quickSearchPopUpButton->setEnabled(isQuickSearchOn);
    desktopSearchButton->setChecked(!services_.preferences.hideFromDesktopSearch.value());
    recentFilesButton->setChecked(!services_.preferences.hideFromRecentFiles.value());
    startAtLoginButton->setChecked(services_.autostart.isEnabled());
    showFileManager();
}

void GeneralPreferencesViewController::showEvent(QShowEvent *event)
{
    // Programs come and go while the window is closed.
    fillFileManagers();
    showStored();
    FormPane::showEvent(event);
}

void GeneralPreferencesViewController::fillFileManagers()
{
    const std::string standard = services_.fileManager.standardApplication();
    const std::vector<Application> installed = services_.applications.applications();
    const auto found = std::ranges::find(installed, standard, &Application::id);
    const QString standardName =
        found == installed.end() ? QString() : QString::fromStdString(found->name);
    fileManagerButton->clear();
    fileManagerButton->addItem(standardName.isEmpty()
                                   ? tr("The desktop's default")
                                   : tr("The desktop's default (%1)").arg(standardName),
                               QString());
    for (const ListedApplication &each : listedApplications(installed))
        if (each.application.isFileManager)
            fileManagerButton->addItem(each.title, QString::fromStdString(each.application.id));
}

void GeneralPreferencesViewController::showFileManager()
{
    if (fileManagerButton->count() == 0)
        return; // The pane is not shown yet.
    const std::string stored =
        wholeId(services_.defaults.string(PreferenceKeys::FILE_MANAGER).value_or(""));
    const QString id = QString::fromStdString(stored);
    int index = fileManagerButton->findData(id);
    if (index < 0) {
        fileManagerButton->addItem(tr("%1 (not installed)").arg(id), id);
        index = fileManagerButton->count() - 1;
    }
    fileManagerButton->setCurrentIndex(index);
}

void GeneralPreferencesViewController::chooseFileManager()
{
    const std::string id = fileManagerButton->currentData().toString().toStdString();
    written(*fileManagerNote_, id.empty()
                                   ? services_.defaults.remove(PreferenceKeys::FILE_MANAGER)
                                   : services_.defaults.set(PreferenceKeys::FILE_MANAGER, {id}));
}

void GeneralPreferencesViewController::written(FormNote &note, bool isStored)
{
    note.sayFault(isStored ? QString() : writeFault());
    showStored();
}

} // namespace quillon
