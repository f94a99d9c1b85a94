#pragma once

#include "platform/FolderLister.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillon {

/// Appends an entry for each of the records that getdents64() gave, except for "." and "..". The
/// names point into the records. Where a record lacks the type of its file, asks for the type in
/// folder, a descriptor of the folder that was read.
void readDirectoryRecords(std::span<const std::byte> records, int folder,
                          std::vector<FolderEntry> &entries);

/// Reads some more entries of an open folder, as OpenFolder::read() does. The batch is empty at the
/// end and after a failure. Returns 0, or the failure as in errno.
int readFolder(int folder, FolderBatch &batch);

} // namespace quillon
