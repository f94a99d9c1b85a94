#include "app/setup/AppleEventPermissionCoordinator.h"

#include "app/widgets/SetupWindow.h"

namespace quillon {

AppleEventPermissionCoordinator::AppleEventPermissionCoordinator(
    const AppleEventPermissionViewController::Services &services, WindowSystem &windowSystem,
    AppleEventPermissionDelegate &delegate)
    : services_(services), windowSystem_(windowSystem), delegate_(delegate)
{}

AppleEventPermissionCoordinator::~AppleEventPermissionCoordinator() = default;

void AppleEventPermissionCoordinator::show()
{
    if (window_ == nullptr) {
        window_ = std::make_unique<SetupWindow>(
            QStringLiteral("Quillon – Permissions"),
            new AppleEventPermissionViewController(services_, this), windowSystem_);
    }
    window_->present();
}

QWidget *AppleEventPermissionCoordinator::window() const
{
    return window_.get();
}

void AppleEventPermissionCoordinator::permissionFinished()
{
    window_.reset();
    delegate_.permissionFinished();
}

} // namespace quillon
