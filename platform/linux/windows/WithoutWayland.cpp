// Takes the place of Wayland.cpp in a build without the libraries for Wayland.

#include "platform/linux/windows/Wayland.h"

namespace quillon::wayland {

bool hasPanels()
{
    return false;
}

bool makePanel(QWindow &)
{
    return false;
}

void setPanelTop(QWindow &, int) {}

std::string requestActivationToken()
{
    return {};
}

} // namespace quillon::wayland
