#pragma once

#include "platform/WindowSystem.h"

namespace quillon {

/// X11, where Qt runs on it; elsewhere the window system needs no words from us.
class X11WindowSystem : public WindowSystem
{
public:
    void keepOutOfTaskbar(std::uintptr_t window) override;
    bool isComposited() const override;
};

} // namespace quillon
