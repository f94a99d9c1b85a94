#pragma once

#include "platform/linux/filemanagers/ManagerDriver.h"

namespace quillon {

/// A file manager that is led by the location bar of its windows.
class LocationBarDriver : public ManagerDriver
{
public:
    using ManagerDriver::ManagerDriver;

protected:
    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override;
    /// As a user would write it; what is no text can only be written as a URI. Empty when there is
    /// no way to write it.
    virtual std::string typedLocation(const std::string &folder);
    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override;
};

} // namespace quillon
