#pragma once

#include "app/setup/AppleEventPermissionViewController.h"
#include "app/widgets/PanelPalette.h"

#include <memory>

namespace quillon {

class SetupWindow;
class WindowSystem;

/// What the permission flow asks of the application around it.
class AppleEventPermissionDelegate
{
public:
    AppleEventPermissionDelegate() = default;
    virtual ~AppleEventPermissionDelegate() = default;
    AppleEventPermissionDelegate(const AppleEventPermissionDelegate &) = delete;
    AppleEventPermissionDelegate &operator=(const AppleEventPermissionDelegate &) = delete;

    /// The user has been asked and the window is closed, so the start continues.
    virtual void permissionFinished() = 0;
    virtual void terminate() = 0;
};

/// Shows the permission window, which only its two buttons can close. Main thread only.
class AppleEventPermissionCoordinator : public AppleEventPermissionViewDelegate
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
    void terminate() override;

private:
    AppleEventPermissionViewController::Services services_;
    WindowSystem &windowSystem_;
    AppleEventPermissionDelegate &delegate_;
    std::unique_ptr<SetupWindow> window_;
};

} // namespace quillon
