#include "platform/linux/disk/MountTable.h"

#include "base/PathText.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/LongPath.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

/// Returns the number of mounts at each point.
std::map<std::string, int> countsOf(const std::vector<Mount> &mounts)
{
    std::map<std::string, int> counts;
    for (const Mount &mount : mounts)
        ++counts[mount.point];
    return counts;
}

} // namespace

std::optional<std::vector<std::string>> MountTable::reload()
{
    auto now = mounts();
    if (!now)
        return std::nullopt;
    const auto before = countsOf(std::exchange(mounts_, std::move(*now)));
    const auto after = countsOf(mounts_);
    types_.clear();
    names_.clear();
    for (const Mount &mount : mounts_) {
        types_.insert_or_assign(mount.point, mount.type);
        names_.emplace(lastComponent(mount.point));
    }
    std::vector<std::string> changed;
    for (const auto &[point, count] : after)
        if (const auto old = before.find(point); old == before.end() || old->second != count)
            changed.push_back(point);
    for (const auto &[point, count] : before)
        if (!after.contains(point))
            changed.push_back(point);
    return changed;
}

bool MountTable::isRemoteMountPoint(const std::string &path) const
{
    const auto found = types_.find(path);
    return found != types_.end() && isRemote_(found->second);
}

std::optional<MountTable::Boundary> MountTable::boundaryAt(const std::string &folder,
                                                           std::string_view name) const
{
    std::error_code error;
    const auto real = std::filesystem::canonical(folder, error);
    if (error)
        return meansAbsence(error.value()) ? std::optional(Boundary::none) : std::nullopt;
    const auto found = types_.find(real / name);
    if (found == types_.end())
        return Boundary::none;
    if (found->second == AUTOMOUNT_TYPE)
        return Boundary::automount;
    return isRemote_(found->second) ? Boundary::remote : Boundary::none;
}

bool MountTable::isRemote(std::string_view path) const
{
    for (std::string above(path);; above.resize(parentFolder(above).size())) {
        if (const auto found = types_.find(above); found != types_.end())
            return isRemote_(found->second);
        if (above.size() <= 1)
            return false;
    }
}

} // namespace quillon
