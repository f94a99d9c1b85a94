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
    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override;
};

} // namespace quillon
