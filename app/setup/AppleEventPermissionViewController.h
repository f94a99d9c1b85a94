#pragma once

#include "app/widgets/SetupView.h"

namespace quillon {

class AppleEventAccess;
class AppleScriptRunner;
class PanelButton;
class TaskQueue;

/// Says what the permission window asks of who shows it.
class AppleEventPermissionViewDelegate
{
public:
    AppleEventPermissionViewDelegate() = default;
    virtual ~AppleEventPermissionViewDelegate() = default;
    AppleEventPermissionViewDelegate(const AppleEventPermissionViewDelegate &) = delete;
    AppleEventPermissionViewDelegate &operator=(const AppleEventPermissionViewDelegate &) = delete;

    /// The user has allowed it; the view may be deleted.
    virtual void permissionFinished() = 0;
    virtual void terminate() = 0;
};

/// Tells the user what the program asks of the file manager, and has the user allow it or quit.
class AppleEventPermissionViewController : public SetupView
{
    Q_OBJECT

public:
    struct Services
    {
        AppleEventAccess &access;
        const AppleScriptRunner &appleScriptRunner;
        /// The file manager is asked on this queue.
        TaskQueue &background;
        TaskQueue &main;
    };

    /// Without a delegate the buttons do nothing.
    AppleEventPermissionViewController(const Services &services,
                                       AppleEventPermissionViewDelegate *delegate);

    /// Nothing but the two buttons takes the question away.
    bool mayClose() override { return false; }

    /// Stores that the user was asked. The first time that this fails the view says so and waits
    /// for the buttons; the second time it goes on, and the question comes again at the next start.
    ///
    /// Then sends the file manager a harmless event, so that a desktop that asks for consent does
    /// it now. Whatever comes of it, the permission is finished then, or after a few seconds
    /// without an answer.
    void enable();
    /// Ends the program.
    void disable();

private:
    QLayout *buildButtons();

    Services services_;
    AppleEventPermissionViewDelegate *delegate_;
    PanelButton *disableButton_ = nullptr;
    PanelButton *enableButton_ = nullptr;
    QLabel *faultLabel_ = nullptr;
    bool isEnabling_ = false;
};

} // namespace quillon
