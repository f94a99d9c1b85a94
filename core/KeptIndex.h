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

/// Says what an index was built from. Two equal values lead to the same index of the same disk.
struct IndexBasis
{
    /// The settings that say what is indexed, as SearchLocations::settings() gives them.
    std::vector<std::string> settings;
    /// The absolute paths of the include folders, and below them those of the missing ones.
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
    /// The first bytes of a file, this many, tell one content from another.
    static constexpr std::size_t HEAD_SIZE = 16;

    /// One component of the paths.
    struct Component
    {
        /// The name is valid as long as the bytes are.
        std::string_view name;
        PathTree::Flags flags = 0;
        FolderMarks::Mark mark = FolderMarks::UNKNOWN;
    };
    /// Receives each component, after its parent, together with the id that it returned for the
    /// parent, which is ROOT for a first component. It is not called below a component for which it
    /// returned NONE.
    using Enter =
        std::function<PathTree::NodeId(PathTree::NodeId parent, const Component &component)>;

    /// Returns what the index was built from, or nothing when the bytes are not an index that this
    /// version keeps.
    static std::optional<IndexBasis> basis(std::string_view bytes);
    /// Visits the components. Returns false when the bytes turn out not to be an index.
    static bool read(std::string_view bytes, const Enter &enter);
    /// Returns the index as bytes, or nothing when the index is reset, which is requested with the
    /// index locked. The index is locked for a short time at once, and its nodes are held
    /// meanwhile.
    static std::optional<std::string> write(PathIndex &index, const IndexBasis &basis,
                                            const FolderMarks &marks,
                                            const std::stop_token &isReset);
};

} // namespace quillon
