#pragma once

#include "platform/linux/filemanagers/LocationBar.h"
#include "platform/linux/filemanagers/ManagerDriver.h"

#include <chrono>

namespace quillon {

/// Drives a file manager by the location bar of its windows.
class LocationBarDriver : public ManagerDriver
{
public:
    using ManagerDriver::ManagerDriver;

protected:
    /// How long a window may take to get the keyboard.
    static constexpr std::chrono::milliseconds ACTIVATION_LIMIT{500};

    /// Makes a window that shows buttons show its entry instead. False when it offers no way.
    virtual bool showEntry(LocationBar &bar, const DesktopWindow &window, Deadline deadline);
    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override;
    /// The folder as a user would type it. A path that is no text can only be written as a URI.
    /// Empty when there is no way to write it.
    virtual std::string typedLocation(const std::string &folder);
    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override;
};

} // namespace quillon
