#pragma once

#include "app/widgets/SetupView.h"

class QPushButton;

namespace quillon {

class AppleEventAccess;
class AppleScriptRunner;
class TaskQueue;

/// Carries out what the permission window and the flow around it ask for.
class AppleEventPermissionDelegate
{
public:
    AppleEventPermissionDelegate() = default;
    virtual ~AppleEventPermissionDelegate() = default;
    AppleEventPermissionDelegate(const AppleEventPermissionDelegate &) = delete;
    AppleEventPermissionDelegate &operator=(const AppleEventPermissionDelegate &) = delete;

    /// The user has been asked. The view may be deleted now.
    virtual void permissionFinished() = 0;
    virtual void terminate() = 0;
};

/// Tells the user what the program asks of the file manager, and lets the user allow it or quit.
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
                                       AppleEventPermissionDelegate *delegate);

    /// Only the two buttons can close the question.
    bool mayClose() override { return false; }

    /// Stores that the user was asked. The first time that this fails, the view says so and waits
    /// for the buttons. The second time it continues, and the question comes again at the next
    /// start.
    ///
    /// Then sends the file manager a harmless event, so that a desktop that asks for consent does
    /// it now. Whatever the outcome, the permission is finished then, or after a few seconds
    /// without an answer.
    void enable();
    /// Ends the program.
    void disable();

private:
    QLayout *buildButtons();

    Services services_;
    AppleEventPermissionDelegate *delegate_;
    QPushButton *disableButton_ = nullptr;
    QPushButton *enableButton_ = nullptr;
    QLabel *faultLabel_ = nullptr;
    bool isEnabling_ = false;
};

} // namespace quillon
