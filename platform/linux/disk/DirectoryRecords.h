#pragma once

#include "platform/FolderLister.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillon {

/// Appends what the kernel's directory records (those of getdents64) name, "." and ".." left out.
/// The names point into the records. Where a record does not tell the type of its file, that is
/// asked for in folder, a descriptor of the folder that was read.
void readDirectoryRecords(std::span<const std::byte> records, int folder,
                          std::vector<FolderEntry> &entries);

} // namespace quillon
