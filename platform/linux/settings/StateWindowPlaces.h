#pragma once

#include "platform/WindowPlaces.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <string>
#include <utility>

namespace quillon {

/// "$XDG_STATE_HOME/quillon/windows.json", or below "~/.local/state" where that variable is not an
/// absolute path.
std::string standardWindowPlacesPath();

/// Keeps the places in one JSON file: under each window's name its left, top, width and height.
class StateWindowPlaces final : public WindowPlaces
{
public:
    /// The path is absolute; neither the file nor its folder need be there.
    explicit StateWindowPlaces(std::string path) : store_(std::move(path)) {}

    std::optional<WindowPlace> place(const std::string &window) const override;
    bool remember(const std::string &window, const WindowPlace &place) override;

private:
    JsonDefaultsStore store_;
};

} // namespace quillon
