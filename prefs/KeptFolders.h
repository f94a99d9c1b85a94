#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class DefaultsStore;

/// The folders and files that the user keeps on top of the rows, in the order in which they were
/// kept.
///
/// Keeps nothing between calls: each one reads the store. The main thread changes them, and any
/// thread may read them. The paths that the operations take are absolute, and a slash at their end
/// makes no difference.
class KeptFolders
{
public:
    /// The store outlives this object.
    explicit KeptFolders(DefaultsStore &store) : store_(store) {}

    /// Returns absolute paths without a slash at their end, each once. Stored texts that are not
    /// absolute paths are ignored, and so is a value that is not a list of texts.
    std::vector<std::string> paths() const;
    bool contains(std::string_view path) const;
    /// Keeps the path after all others. Returns false when the store cannot be written.
    bool keep(std::string_view path);
    /// Keeps the path no longer. Returns false when the store cannot be written.
    bool release(std::string_view path);
    /// Keeps nothing any more. Returns false when the store cannot be written.
    bool releaseAll();

private:
    std::vector<std::string> stored() const;
    bool store(const std::vector<std::string> &texts);

    DefaultsStore &store_;
};

} // namespace quillon
