#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <optional>
#include <string>

namespace quillon {

/// A path that the system takes at once, relative to a folder.
struct ShortPath
{
    /// AT_FDCWD where the whole path is short enough.
    Descriptor folder;
    const char *path = nullptr;
};

/// Goes down a path that is longer than the system takes at once, piece by piece. Absent, with
/// errno set, where a piece cannot be opened. The result points into the path.
std::optional<ShortPath> shorten(const std::string &path);

/// Whether the error of a call, as in errno, says that nothing stands at the path. Any other error
/// says nothing about what stands there.
bool meansAbsence(int error);

/// openat() that is not interrupted. None, with errno set, when it fails.
Descriptor openAt(int folder, const char *path, int flags);

} // namespace quillon
