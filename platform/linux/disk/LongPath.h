#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <optional>
#include <string>

namespace quillon {

/// A path short enough for a system call, relative to a folder.
struct ShortPath
{
    /// Holds AT_FDCWD where the whole path is short enough.
    Descriptor folder;
    const char *path = nullptr;
};

/// Opens the folders on the way, piece by piece, until the rest of the path is short enough for a
/// system call. Absent, with errno set, where a piece cannot be opened. The result points into the
/// path.
std::optional<ShortPath> shorten(const std::string &path);

/// Returns whether the error of a call, as in errno, says that nothing stands at the path. Any
/// other error says nothing about what stands there.
bool meansAbsence(int error);

/// openat() that is not interrupted. None, with errno set, when it fails.
Descriptor openAt(int folder, const char *path, int flags);

} // namespace quillon
