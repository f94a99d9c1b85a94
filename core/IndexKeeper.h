#pragma once

#include "core/FolderMarks.h"
#include "core/KeptIndex.h"
#include "matching/PathIndex.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

class CacheFile;

/// What the last run of the program has left of its index, ready to be taken over.
struct KeptTree
{
    IndexBasis basis;
    /// The first KeptIndex::HEAD_SIZE bytes of the file.
    std::string head;
    /// It has no table of children.
    std::unique_ptr<PathTree> tree;
    FolderMarks marks;
};

/// Keeps the index in a file, so that the next run of the program answers from it at once and reads
/// only the folders that have changed since.
///
/// The caller sees to it that no two calls run at the same time, and that no build or update
/// changes the index meanwhile.
class IndexKeeper
{
public:
    /// Both outlive this.
    IndexKeeper(PathIndex &index, CacheFile &file) : index_(index), file_(file) {}

    /// Reads a whole file. Absent where it is not there or damaged. Any thread may call this.
    static std::optional<KeptTree> read(const CacheFile &file);

    /// Puts the index of the last run into the empty one. Returns false, and leaves the index as it
    /// is, where none is kept for these settings and where the index is reset.
    bool restore(std::optional<KeptTree> kept, const std::vector<std::string> &settings,
                 const std::stop_token &isReset);

    /// A build by this basis begins, now in nanoseconds since 1970; files with these extensions are
    /// indexed. Returns true where the index is what restore() put there for the same basis: it is
    /// then to be compared with the disk. Otherwise what restore() put there is taken out again.
    bool begin(IndexBasis basis, std::int64_t now, const ExtensionSet &files);
    /// Goes with the crawls of the build that has begun.
    CrawlMarks *marks() { return marks_ ? &*marks_ : nullptr; }
    /// The build has come to its end. The index is worth keeping until it is reset.
    void end(std::stop_token isReset);

    /// Writes the file anew if the index is worth keeping and has changed; else confirms the file.
    std::error_code keep();

private:
    /// The marks of folders hold as long as the tree has this generation.
    struct Marked
    {
        FolderMarks marks;
        std::uint64_t generation = 0;
    };

    std::uint64_t generation() const;
    bool completeRestored();
    FolderMarks keptMarks();
    /// Returns the beginning of a file, which is the same for the same content alone.
    static std::string headOf(std::string_view bytes);

    PathIndex &index_;
    CacheFile &file_;
    /// The running build, or the last one, goes by this.
    std::optional<IndexBasis> basis_;
    /// These belong to what restore() has put into the index, until a build begins.
    std::optional<IndexBasis> restoredBasis_;
    Marked restored_;
    /// It is there from begin() to end().
    std::optional<CrawlMarks> marks_;
    /// The last build has left these for the file.
    std::optional<Marked> crawled_;
    /// The build has ended, and the index is kept until this is requested.
    bool isWhole_ = false;
    std::stop_token isReset_;
    std::string head_;
};

} // namespace quillon
