#pragma once

#include "app/setup/AppleEventPermissionViewController.h"

#include <memory>

namespace quillon {

class SetupWindow;
class WindowSystem;

/// Shows the permission window, which only its two buttons can close. Main thread only.
class AppleEventPermissionCoordinator : public AppleEventPermissionDelegate
{
public:
    AppleEventPermissionCoordinator(const AppleEventPermissionViewController::Services &services,
                                    WindowSystem &windowSystem,
                                    AppleEventPermissionDelegate &delegate);
    ~AppleEventPermissionCoordinator() override;

    /// Shows the window, or brings it to the front when it is shown already.
    void show();
    /// Returns null while the window is not shown.
    QWidget *window() const;

    void permissionFinished() override;
    void terminate() override { delegate_.terminate(); }

private:
    AppleEventPermissionViewController::Services services_;
    WindowSystem &windowSystem_;
    AppleEventPermissionDelegate &delegate_;
    std::unique_ptr<SetupWindow> window_;
};

} // namespace quillon
