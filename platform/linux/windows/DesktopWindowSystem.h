#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/windows/X11Windows.h"

namespace quillon {

/// Activates and places windows by X11 if Qt runs on X11, and passes on activation tokens on
/// Wayland.
class DesktopWindowSystem : public WindowSystem
{
public:
    /// Returns whether there is an X display that accepts this process. It needs no application
    /// object.
    static bool isReachable();

    void keepOutOfTaskbar(std::uintptr_t window) override;
    bool isComposited() const override;
    void setShadowMargin(std::uintptr_t window, int margin) override;
    std::uintptr_t activeWindow() const override;
    void activate(std::uintptr_t window) override;
    void activate(std::uintptr_t window, const std::string &activationToken) override;

private:
    const X11Windows windows_;
};

} // namespace quillon
