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

/// The index that the last run of the program has left, ready to be taken over.
struct KeptTree
{
    IndexBasis basis;
    /// The first KeptIndex::HEAD_SIZE bytes of the file.
    std::string head;
    /// The tree has no table of children.
    std::unique_ptr<PathTree> tree;
    FolderMarks marks;
};

/// Keeps the index in a file, so that the next run of the program answers from it at once and reads
/// only the folders that have changed since.
///
/// The caller makes sure that no two calls run at the same time, and that no build or update
/// changes the index during a call.
class IndexKeeper
{
public:
    /// The index and the file outlive this object.
    IndexKeeper(PathIndex &index, CacheFile &file) : index_(index), file_(file) {}

    /// Reads a whole file. Returns nothing when the file is missing or damaged. Any thread may call
    /// this.
    static std::optional<KeptTree> read(const CacheFile &file);

    /// Puts the index of the last run into the index, which is empty. Returns false, and changes
    /// nothing, when no index is kept for these settings or when the index is reset.
    bool restore(std::optional<KeptTree> kept, const std::vector<std::string> &settings,
                 const std::stop_token &isReset);

    /// Begins a build by this basis at `now`, in nanoseconds since 1970. Files with the extensions
    /// of `files` are indexed. Returns true if the index is the one that restore() put there for
    /// the same basis; the build then compares it with the disk. Otherwise removes what restore()
    /// put there.
    bool begin(IndexBasis basis, std::int64_t now, const ExtensionSet &files);
    /// Lets searches find in these folders, which are away, what they found there when the file was
    /// written. Takes nothing from a file that other patterns made; `patterns` is what the settings
    /// of a basis begin with. The tree is held meanwhile.
    void addAway(const std::vector<std::string> &folders, const std::vector<std::string> &patterns,
                 const std::stop_token &isReset);
    /// Returns the marks for the crawls of the running build, or null when no build runs.
    CrawlMarks *marks() { return marks_ ? &*marks_ : nullptr; }
    /// Ends the build. The index is worth keeping until isReset is requested.
    void end(std::stop_token isReset);

    /// Writes the file anew if the index is worth keeping and has changed. Otherwise confirms the
    /// file.
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
    /// Returns the first bytes of a file, which differ whenever the content differs.
    static std::string headOf(std::string_view bytes);

    PathIndex &index_;
    CacheFile &file_;
    /// The basis of the running build, or of the last one.
    std::optional<IndexBasis> basis_;
    /// The basis and the marks of what restore() has put into the index, until a build begins.
    std::optional<IndexBasis> restoredBasis_;
    Marked restored_;
    /// Present from begin() to end().
    std::optional<CrawlMarks> marks_;
    /// The marks that the last build has left for the file.
    std::optional<Marked> crawled_;
    /// True once a build has ended. The index is then kept until isReset_ is requested.
    bool isWhole_ = false;
    std::stop_token isReset_;
    std::string head_;
};

} // namespace quillon
