#pragma once

#include "actions/ActionModel.h"
#include "app/widgets/FormPane.h"

#include <optional>

class QPushButton;

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
        change,
        moveUp,
        moveDown,
    };

    /// All of them outlive this.
    explicit ActionPreferencesViewController(const Services &services, QWidget *parent = nullptr);

    void showStored() override;

    FormTable *const actionsTableView;
    ActionTable *const actionTable;
    SegmentedControl *const actionAddRemoveSegmentedControl;
    /// Makes the built-in actions hold again, after a question.
    QPushButton *const restoreButton;
    /// The sheet; null while none is open.
    AddActionViewController *addActionViewController() const;

private:
    void buildControls();
    void segmentClicked(int segment);
    void openSheet(const std::optional<ActionModel> &changed);
    void askForRestoring();
    void enableControls();
    /// Says whether what was asked for could be stored.
    void written(bool isStored);

    Services services_;
    FormNote *note_ = nullptr;
};

} // namespace quillon
