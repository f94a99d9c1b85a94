#pragma once

#include "app/widgets/FormPane.h"

namespace quillon {

class ActionTable;
class AddActionViewController;
class ApplicationLauncher;
class DefaultsStore;
class FormTable;
class SegmentedControl;

/// The pane of the user's actions: what Return does with the modifier keys that are held.
class ActionPreferencesViewController final : public FormPane
{
    Q_OBJECT

public:
    struct Services
    {
        DefaultsStore &defaults;
        const ApplicationLauncher &applications;
    };

    enum Segment
    {
        add,
        remove,
    };

    /// All of them outlive this.
    explicit ActionPreferencesViewController(const Services &services, QWidget *parent = nullptr);

    void showStored() override;
    void setPanelPalette(const PanelPalette &palette) override;

    FormTable *const actionsTableView;
    ActionTable *const actionTable;
    SegmentedControl *const actionAddRemoveSegmentedControl;
    /// The sheet; null while none is open.
    AddActionViewController *addActionViewController() const;

private:
    void segmentClicked(int segment);
    void openSheet();

    Services services_;
    FormNote *note_ = nullptr;
};

} // namespace quillon
