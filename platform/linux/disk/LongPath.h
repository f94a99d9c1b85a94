#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <optional>
#include <string>

namespace quillon {

/// A path short enough for a system call, relative to a folder.
struct ShortPath
{
    /// AT_FDCWD when the whole path is short enough.
    Descriptor folder;
    const char *path = nullptr;
};

/// Opens the folders on the way, piece by piece, until the rest of the path is short enough for a
/// system call. Returns nothing, with errno set, when a piece cannot be opened. The result points
/// into the path.
std::optional<ShortPath> shorten(const std::string &path);

/// Returns whether the error of a call, as in errno, means that nothing is at the path. Any other
/// error says nothing about what is there.
bool meansAbsence(int error);

/// Calls openat() again when a signal interrupts it. Returns no descriptor, with errno set, when it
/// fails.
Descriptor openAt(int folder, const char *path, int flags);

} // namespace quillon
