#include "platform/linux/filemanagers/LocationBarDriver.h"

#include "platform/linux/FileUri.h"
#include "platform/linux/filemanagers/LocationBar.h"

#include <filesystem>

namespace quillon {

bool LocationBarDriver::show(const DesktopWindow &window, const std::string &folder,
                             Deadline deadline)
{
    auto &[session, accessibility, windows] = surroundings();
    const auto frame = accessibility.frame(window, windows, deadline);
    if (!frame)
        return false;
    LocationBar bar(accessibility, *frame, deadline);
    const std::string location = typedLocation(folder);
    if (location.empty())
        return false;
    return bar.go(location) || (bar.showEntry() && bar.go(location));
}

std::string LocationBarDriver::typedLocation(const std::string &folder)
{
    const bool isText = g_utf8_validate(folder.data(), static_cast<gssize>(folder.size()), nullptr);
    return isText ? folder : fileUri(folder);
}

std::optional<std::string> LocationBarDriver::toldFolder(const DesktopWindow &window,
                                                         Deadline deadline)
{
    auto &[session, accessibility, windows] = surroundings();
    const auto frame = accessibility.frame(window, windows, deadline);
    if (!frame)
        return std::nullopt;
    auto folder = LocationBar(accessibility, *frame, deadline).folder();
    // Buttons show what can be shown of a name that is no text.
    std::error_code ignored;
    if (folder && !std::filesystem::is_directory(*folder, ignored))
        folder.reset();
    return folder;
}

} // namespace quillon
