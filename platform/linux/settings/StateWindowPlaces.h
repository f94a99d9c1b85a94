#pragma once

#include "platform/WindowPlaces.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <string>
#include <utility>

namespace quillon {

/// Returns "$XDG_STATE_HOME/quillon/windows.json". If that variable is not an absolute path,
/// "~/.local/state" takes its place.
std::string standardWindowPlacesPath();

/// Keeps the places in one JSON file, which holds the left, top, width and height of each window
/// under its name.
class StateWindowPlaces final : public WindowPlaces
{
public:
    /// The path is absolute. Neither the file nor its folder need exist.
    explicit StateWindowPlaces(std::string path) : store_(std::move(path)) {}

    std::optional<WindowPlace> place(const std::string &window) const override;
    bool remember(const std::string &window, const WindowPlace &place) override;

private:
    JsonDefaultsStore store_;
};

} // namespace quillon
