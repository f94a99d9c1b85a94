#include "app/preferences/PreferencesViewController.h"

#include "app/widgets/PanelMetrics.h"

#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace quillon {

PreferencesViewController::PreferencesViewController(const Services &services, FormPane *searchPane)
    : QWidget(nullptr, Qt::Dialog),
      generalPreferencesViewController(new GeneralPreferencesViewController(services.general)),
      searchPreferencesViewController(searchPane),
      actionPreferencesViewController(new ActionPreferencesViewController(services.actions)),
      advancedPreferencesViewController(new AdvancedPreferencesViewController(services.advanced)),
      tabView_(new QTabWidget(this)),
      placeKeeper_(*this, "preferences", services.places),
      receiver_(services.changes.onChange([this] {
          for (FormPane *pane : panes())
              pane->showStored();
      }))
{
    setWindowTitle(tr("Preferences"));
    buildTabs();
    buildShortcuts();
}

void PreferencesViewController::buildTabs()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, metrics::INSET, 0, 0);
    tabView_->addTab(generalPreferencesViewController, tr("&General"));
    tabView_->addTab(searchPreferencesViewController, tr("&Search"));
    tabView_->addTab(actionPreferencesViewController, tr("&Actions"));
    tabView_->addTab(advancedPreferencesViewController, tr("Ad&vanced"));
    column->addWidget(tabView_);
}

void PreferencesViewController::buildShortcuts()
{
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this,
            &QWidget::close);
}

std::array<FormPane *, 4> PreferencesViewController::panes() const
{
    return {generalPreferencesViewController, searchPreferencesViewController,
            actionPreferencesViewController, advancedPreferencesViewController};
}

void PreferencesViewController::present()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void PreferencesViewController::setVisible(bool visible)
{
    if (visible)
        placeKeeper_.restore();
    QWidget::setVisible(visible);
}

} // namespace quillon
