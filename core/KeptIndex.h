#pragma once

#include "core/FolderMarks.h"
#include "matching/PathIndex.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// What an index was built by. Two that are equal lead to the same index of the same disk.
struct IndexBasis
{
    /// The settings that say what is indexed, as SearchLocations::settings() gives them.
    std::vector<std::string> settings;
    /// The absolute paths of the include folders, and of those that were away.
    std::vector<std::string> folders;
    std::vector<std::string> missing;

    friend bool operator==(const IndexBasis &, const IndexBasis &) = default;
};

/// The form in which an index is kept in a file between two runs of the program.
///
/// Any bytes may be read: they are either taken as a whole or refused.
class KeptIndex
{
public:
    /// So many bytes at the beginning tell one content from another.
    static constexpr std::size_t HEAD_SIZE = 16;

    /// One component of the paths.
    struct Component
    {
        /// Valid as long as the bytes are.
        std::string_view name;
        PathTree::Flags flags = 0;
        FolderMarks::Mark mark = FolderMarks::UNKNOWN;
    };
    /// It is called with each component, after the one above it, and with what it returned for that
    /// one; with ROOT for a first component. It is not called below a component for which it
    /// returned NONE.
    using Enter =
        std::function<PathTree::NodeId(PathTree::NodeId parent, const Component &component)>;

    /// Returns what the index was built by; absent where the bytes are not those of an index that
    /// this version keeps.
    static std::optional<IndexBasis> basis(std::string_view bytes);
    /// Goes through the components. False where the bytes turned out not to be those of an index.
    static bool read(std::string_view bytes, const Enter &enter);
    /// Returns the index as bytes. The index is locked for a little at a time, and its nodes are
    /// held meanwhile. Absent when the index is reset, which is requested with the index locked.
    static std::optional<std::string> write(PathIndex &index, const IndexBasis &basis,
                                            const FolderMarks &marks,
                                            const std::stop_token &isReset);
};

} // namespace quillon
