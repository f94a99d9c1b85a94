#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/windows/X11Windows.h"

#include <optional>

namespace quillon {

/// Activates and places windows by X11 if Qt runs on X11. On Wayland it passes on activation tokens
/// and has panels where the compositor has.
class DesktopWindowSystem : public WindowSystem
{
public:
    /// Returns the names of the toolkit's platforms that suit this session, the best one first, or
    /// nothing when there is no display. It needs no application object.
    static std::optional<std::string> platforms();

    void keepOutOfTaskbar(std::uintptr_t window) override;
    bool makePanel(std::uintptr_t window) override;
    void setPanelTop(std::uintptr_t window, int top) override;
    bool isComposited() const override;
    void setShadowMargin(std::uintptr_t window, int margin) override;
    void cutCorners(std::uintptr_t window, int width, int height, int radius) override;
    std::uintptr_t activeWindow() const override;
    void activate(std::uintptr_t window) override;
    void activate(std::uintptr_t window, const std::string &activationToken) override;
    std::string requestActivationToken() override;

private:
    const X11Windows windows_;
};

} // namespace quillon
