#pragma once

#include "app/preferences/ActionPreferencesViewController.h"
#include "app/preferences/AdvancedPreferencesViewController.h"
#include "app/preferences/GeneralPreferencesViewController.h"
#include "app/preferences/WindowPlaceKeeper.h"
#include "platform/DefaultsChanges.h"

#include <QWidget>

#include <array>

class QTabWidget;

namespace quillon {

/// The preferences window, with a tab for each pane: of the kind that tiling window managers leave
/// its size. What is set holds at once, and what another hand sets shows at once.
class PreferencesViewController : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        GeneralPreferencesViewController::Services general;
        ActionPreferencesViewController::Services actions;
        AdvancedPreferencesViewController::Services advanced;
        DefaultsChanges &changes;
        WindowPlaces &places;
    };

    /// Takes the pane of the search locations as its own; everything else outlives this.
    PreferencesViewController(const Services &services, FormPane *searchPane);

    /// Shows the window, or brings it to the front when it is shown already.
    void present();
    void setVisible(bool visible) override;

    // The panes, in the order of their tabs.
    GeneralPreferencesViewController *const generalPreferencesViewController;
    FormPane *const searchPreferencesViewController;
    ActionPreferencesViewController *const actionPreferencesViewController;
    AdvancedPreferencesViewController *const advancedPreferencesViewController;

    QTabWidget &tabView() { return *tabView_; }

private:
    void buildTabs();
    void buildShortcuts();
    std::array<FormPane *, 4> panes() const;

    QTabWidget *tabView_;
    WindowPlaceKeeper placeKeeper_;
    const DefaultsReceiver receiver_;
};

} // namespace quillon
