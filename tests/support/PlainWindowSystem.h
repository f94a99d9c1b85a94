#pragma once

#include "platform/WindowSystem.h"

namespace quillon {

/// A window system that blends nothing and reports nothing.
class PlainWindowSystem : public WindowSystem
{
public:
    void keepOutOfTaskbar(std::uintptr_t) override {}
    bool makePanel(std::uintptr_t) override { return false; }
    void setPanelTop(std::uintptr_t, int) override {}
    bool isComposited() const override { return false; }
    void setShadowMargin(std::uintptr_t, int) override {}
    void cutCorners(std::uintptr_t, int, int, int) override {}
    std::uintptr_t activeWindow() const override { return 0; }
    void activate(std::uintptr_t) override {}
    void activate(std::uintptr_t, const std::string &) override {}
    std::string requestActivationToken() override { return {}; }
};

} // namespace quillon
