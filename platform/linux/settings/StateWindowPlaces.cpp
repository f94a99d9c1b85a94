#include "platform/linux/settings/StateWindowPlaces.h"

#include "platform/linux/disk/UserFolders.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>

namespace quillon {

namespace {

/// This is beyond any desktop. A number written by hand may be anything.
constexpr std::int64_t FARTHEST = 1'000'000;

} // namespace

std::string standardWindowPlacesPath()
{
    return userFolder("XDG_STATE_HOME", "/.local/state") + "/quillon/windows.json";
}

std::optional<WindowPlace> StateWindowPlaces::place(const std::string &window) const
{
    const auto stored = store_.value(window);
    const auto *list = stored ? std::get_if<DefaultsArray>(&stored->value) : nullptr;
    std::array<int, 4> numbers{};
    if (list == nullptr || list->size() != numbers.size())
        return std::nullopt;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto number = (*list)[i].asInteger();
        if (!number || *number < -FARTHEST || *number > FARTHEST)
            return std::nullopt;
        numbers[i] = static_cast<int>(*number);
    }
    const auto [left, top, width, height] = numbers;
    if (width <= 0 || height <= 0)
        return std::nullopt;
    return WindowPlace{.left = left, .top = top, .width = width, .height = height};
}

bool StateWindowPlaces::remember(const std::string &window, const WindowPlace &place)
{
    DefaultsArray numbers;
    for (const int number : {place.left, place.top, place.width, place.height})
        numbers.push_back({std::int64_t{number}});
    return store_.set(window, {std::move(numbers)});
}

} // namespace quillon
