#include "actions/ActionShortcutFlags.h"

#include <array>

namespace quillon {

namespace {

constexpr std::string_view OPTION = "⌥";
constexpr std::string_view SHIFT = "⇧";
constexpr std::string_view COMMAND = "⌘";

} // namespace

std::string ActionShortcutFlags::title() const
{
    std::string title;
    const auto append = [&title](bool isHeld, std::string_view symbol) {
        if (isHeld)
            title.append(symbol).append("-");
    };
    append(option, OPTION);
    append(shift, SHIFT);
    append(command, COMMAND);
    return title + "Return";
}

ActionShortcutFlags flagsFromShortcutTitle(std::string_view title)
{
    const auto has = [title](std::string_view symbol) {
        return title.find(symbol) != std::string_view::npos;
    };
    return {.option = has(OPTION), .shift = has(SHIFT), .command = has(COMMAND)};
}

std::span<const ActionShortcutFlags> allShortcutFlags()
{
    static constexpr std::array<ActionShortcutFlags, 6> ALL{{
        {},
        {.command = true},
        {.shift = true},
        {.option = true},
        {.shift = true, .command = true},
        {.option = true, .shift = true},
    }};
    return ALL;
}

} // namespace quillon
