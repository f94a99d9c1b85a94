#include "app/preferences/ActionPreferencesViewController.h"

#include "app/preferences/ActionTable.h"
#include "app/preferences/AddActionViewController.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"

namespace quillon {

ActionPreferencesViewController::ActionPreferencesViewController(const Services &services,
                                                                 QWidget *parent)
    : FormPane(parent),
      actionsTableView(new FormTable(ActionTable::actionRowIdentifier, this)),
      actionTable(new ActionTable(*actionsTableView, services.defaults, this)),
      actionAddRemoveSegmentedControl(new SegmentedControl({tr("A&dd…"), tr("&Remove")}, this)),
      services_(services)
{
    actionsTableView->setAccessibleName(tr("Actions"));
    addWideNote(tr("What Return does with the selected row, depending on the keys held with it. "
                   "Where several actions have the same keys the first one is carried out."));
    addWide(actionsTableView);
    addWide(actionAddRemoveSegmentedControl);
    note_ = addWideNote();

    const auto enableRemoval = [this] {
        actionAddRemoveSegmentedControl->setSegmentEnabled(
            Segment::remove, actionsTableView->selectedRow().has_value());
    };
    connect(actionsTableView, &FormTable::selectedRowChanged, this, enableRemoval);
    connect(actionsTableView, &FormTable::removalRequested, this,
            [this] { segmentClicked(Segment::remove); });
    connect(actionAddRemoveSegmentedControl, &SegmentedControl::segmentClicked, this,
            &ActionPreferencesViewController::segmentClicked);
    enableRemoval();
}

void ActionPreferencesViewController::showStored()
{
    actionTable->reload();
}

void ActionPreferencesViewController::setPanelPalette(const PanelPalette &palette)
{
    FormPane::setPanelPalette(palette);
    if (auto *sheet = addActionViewController())
        sheet->setPanelPalette(palette);
}

AddActionViewController *ActionPreferencesViewController::addActionViewController() const
{
    return window()->findChild<AddActionViewController *>();
}

void ActionPreferencesViewController::segmentClicked(int segment)
{
    if (segment == Segment::add)
        return openSheet();
    note_->sayFault(actionTable->removeSelected() ? QString() : writeFault());
}

void ActionPreferencesViewController::openSheet()
{
    note_->sayFault({});
    if (addActionViewController() != nullptr)
        return;
    auto *sheet = new AddActionViewController(
        {.defaults = services_.defaults, .applications = services_.applications}, *actionTable,
        panelPalette(), window());
    sheet->open();
}

} // namespace quillon
