#pragma once

#include "core/ChangedPaths.h"
#include "core/DiskKinds.h"
#include "core/FoundNodes.h"
#include "core/IndexComparison.h"
#include "core/SearchBasePaths.h"
#include "indexing/SkipRules.h"
#include "platform/FolderLister.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

struct CrawlResult;

/// The log writes this before the path of a folder that was to be crawled and is a package.
inline constexpr const char *PACKAGE_TAG = "sb_grd is_package ";

/// The paths by which an update has changed the index, ascending by bytes.
struct IndexDifferences
{
    std::vector<std::string> removed;
    std::vector<std::string> added;
};

/// Brings what the index holds of some changed paths, and of everything below them, up to date in
/// three steps: a crawl finds what is there, the index is compared with it, and the differences are
/// applied. Only the last step changes what a search can see, all at once.
///
/// The caller holds the tree (HeldNodes) from before the crawl until the update is destroyed, and
/// makes sure that no build and no other update runs meanwhile.
class IndexUpdate
{
public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    struct Terms
    {
        FolderLister &folderLister;
        /// The extensions of the files that are indexed.
        std::set<std::string> patterns;
        /// The include folders, ascending.
        std::vector<std::string> roots;
        std::shared_ptr<const SkipRules> rules;
        /// The stop is requested with the index locked.
        std::stop_token isReset;
        Now now;
        /// The marks say which folders need not be read. They are null when all folders are read,
        /// and outlive the update.
        CrawlMarks *marks = nullptr;
        /// True when differences() is called.
        bool wantsDifferences = false;
    };

    IndexUpdate(SearchBasePaths &paths, Terms terms, ChangedPaths changed);

    /// Returns true when there is something to crawl: the changed path, or the folder of the
    /// changed names. The crawl hands what it finds to found(), and crawled() receives its result.
    bool isFolder() const { return kind_ == Kind::folder; }
    CrawlSink &found() { return found_; }
    void crawled(const CrawlResult &result);

    /// Compares, locking the index for a short time at once. Returns false when the index was
    /// reset, or when no path is known to have changed. A path for which a file system does not
    /// answer is left as it is.
    bool compare() EXCLUDES(paths_.lock());
    /// Applies the differences with the index locked. Returns false when the index was reset. It is
    /// called again until isApplied(), since neither a search nor the calling thread is to wait
    /// until hundreds of thousands of paths have been added or forgotten.
    bool apply() EXCLUDES(paths_.lock());
    bool isApplied() const { return step_ == Step::ended; }

    /// Hands over the lines for the log in order, some at a time, without holding a lock. No more
    /// lines come once the index is reset.
    void log(const std::function<void(std::span<const std::string> lines)> &receive) const
        EXCLUDES(paths_.lock());
    /// Returns two kinds of paths: the changed paths for which, or for something below which, a
    /// file system did not answer, and the folders below them that could not be listed.
    std::vector<std::string> unanswered() const;
    /// Returns the topmost paths for which a file system did not answer.
    std::vector<std::string> silentPaths() const;
    /// Returns what came into the index and what left it, for which the terms have to ask. Returns
    /// nothing when the index was reset.
    std::optional<IndexDifferences> differences() const EXCLUDES(paths_.lock());
    /// Return how long the insertion took, and the number of its operations.
    std::chrono::duration<double> insertionTime() const { return insertionTime_; }
    std::size_t operations() const
    {
        return operations_.size() + comparison_.outcome().missing.size();
    }

private:
    using Kind = FolderLister::Kind;
    using NodeId = PathTree::NodeId;
    using Changed = IndexComparison::Changed;

    bool isAlone() const { return names_.empty(); }
    /// Returns false when the index of the last run is compared with the disk. The removals of the
    /// plain rule are left out then, so that an index for which nothing has changed stays as it is.
    bool removesFirst() const { return terms_.marks == nullptr; }
    Kind kindOfPath() const;

    bool findNodes() EXCLUDES(paths_.lock());
    void begin() REQUIRES(paths_.lock());
    void addSome() REQUIRES(paths_.lock());
    void addWhatStays() REQUIRES(paths_.lock());
    void forgetSome() REQUIRES(paths_.lock());
    void end() REQUIRES(paths_.lock());
    std::span<const NodeId> takeSome();
    std::vector<NodeId> reached() REQUIRES(paths_.lock());
    void remove(NodeId node) REQUIRES(paths_.lock());

    SearchBasePaths &paths_;
    const Terms terms_;
    const DiskKinds disk_;
    /// The folder that the crawl reads: the changed path, or the folder of the changed names.
    const std::string path_;
    const std::vector<std::string> names_;
    std::vector<Changed> changed_;
    Kind kind_;
    std::vector<std::string> notListed_;
    FoundNodes found_;
    IndexComparison comparison_;
    std::vector<SearchBasePathsInsertionOperation> operations_;

    /// The steps of apply() in their order.
    enum class Step
    {
        begin,
        add,
        forget,
        ended,
    };
    Step step_ = Step::begin;
    /// The nodes that the present step has still to add or to forget.
    std::span<const NodeId> rest_;

    // These record what was done.
    std::vector<NodeId> forgotten_;
    /// Every node that is stored or forgotten, and whether it was stored before. Without the wish
    /// for differences it stays empty.
    std::vector<std::pair<NodeId, bool>> reached_;
    std::vector<NodeId> removed_;
    std::vector<NodeId> added_;
    std::chrono::duration<double> insertionTime_{};
};

} // namespace quillon
