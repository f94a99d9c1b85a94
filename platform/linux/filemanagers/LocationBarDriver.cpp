#include "platform/linux/filemanagers/LocationBarDriver.h"

#include "base/FileUri.h"

#include <filesystem>

namespace quillon {

bool LocationBarDriver::show(const DesktopWindow &window, const std::string &folder,
                             Deadline deadline)
{
    Accessibility &accessibility = surroundings().accessibility;
    const auto frame = accessibility.frame(window, surroundings().windows, deadline);
    if (!frame)
        return false;
    LocationBar bar(accessibility, *frame, deadline);
    const std::string location = typedLocation(folder);
    if (location.empty())
        return false;
    return bar.go(location) || (showEntry(bar, window, deadline) && bar.go(location));
}

bool LocationBarDriver::showEntry(LocationBar &bar, const DesktopWindow &, Deadline)
{
    return bar.showEntry();
}

std::string LocationBarDriver::typedLocation(const std::string &folder)
{
    const bool isText = g_utf8_validate(folder.data(), static_cast<gssize>(folder.size()), nullptr);
    return isText ? folder : fileUri(folder);
}

std::optional<std::string> LocationBarDriver::toldFolder(const DesktopWindow &window,
                                                         Deadline deadline)
{
    Accessibility &accessibility = surroundings().accessibility;
    const auto frame = accessibility.frame(window, surroundings().windows, deadline);
    if (!frame)
        return std::nullopt;
    auto folder = LocationBar(accessibility, *frame, deadline).folder();
    // The buttons show only a part of a name that is not valid text.
    const auto isFolder = [path = folder.value_or("")] {
        std::error_code ignored;
        return std::filesystem::is_directory(path, ignored);
    };
    return folder &&
                   surroundings().disk.run(*folder, deadline.remaining(), isFolder).value_or(false)
               ? folder
               : std::nullopt;
}

} // namespace quillon
