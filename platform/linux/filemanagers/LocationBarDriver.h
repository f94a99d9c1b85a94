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
    /// The time that a window may take to get the keyboard.
    static constexpr std::chrono::milliseconds ACTIVATION_LIMIT{500};

    /// Makes a window that shows buttons show its entry instead. Returns false when the window
    /// offers no way to do so.
    virtual bool showEntry(LocationBar &bar, const DesktopWindow &window, Deadline deadline);
    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override;
    /// Returns the folder as a user would type it. A path that is not valid text can only be
    /// written as a URI. The result is empty when there is no way to write it.
    virtual std::string typedLocation(const std::string &folder);
    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override;
};

} // namespace quillon
