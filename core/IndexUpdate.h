#pragma once

#include "core/FoundPaths.h"
#include "core/SearchBasePaths.h"
#include "indexing/NameKinds.h"
#include "platform/FolderLister.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

struct CrawlResult;

/// What the log says of a folder that was to be crawled and is a package, before its path.
inline constexpr const char *PACKAGE_TAG = "sb_grd is_package ";

/// Brings what the index holds of one changed path and everything below it up to date, in three
/// steps: what is there is found, compared with the index, and applied. Only the last one changes
/// the index, all at once.
///
/// Updates and builds exclude each other; that is the caller's task.
class IndexUpdate
{
public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    struct Terms
    {
        FolderLister &folderLister;
        /// Extensions of the files that are indexed.
        std::set<std::string> patterns;
        /// The include folders.
        std::vector<std::string> roots;
        /// Requested with the index locked.
        std::stop_token isReset;
        Now now;
    };

    /// The path has no slash at its end.
    IndexUpdate(SearchBasePaths &paths, Terms terms, std::string path);

    /// Whether a folder is there, which is then to be crawled into found().
    bool isFolder() const { return kind_ == FolderLister::Kind::folder; }
    FoundPaths &found() { return found_; }
    /// To be called when the folder could not be crawled: it may be gone since.
    void crawlFailed(const CrawlResult &result);

    /// Compares, reading the index in slices. False when it was reset, or when a file system does
    /// not answer and so nothing is known of what is gone.
    bool compare();
    /// Applies with the index locked. False when it was reset.
    bool apply() EXCLUDES(paths_.lock());

    /// The lines for the log, in their order.
    std::vector<std::string> log() const;
    /// How long the insertion took and how many operations it was.
    std::chrono::duration<double> insertionTime() const { return insertionTime_; }
    std::size_t operations() const { return operations_.size(); }

private:
    using Kind = FolderLister::Kind;
    using NodeId = PathTree::NodeId;

    /// A node below the path that was not found.
    struct Unfound
    {
        std::string text;
        /// The one above it among the unfound ones, or one of the two below.
        std::size_t parent = 0;
        bool isIndexed = false;
    };
    static constexpr std::size_t IN_FOLDER = ~std::size_t{0};
    static constexpr std::size_t IN_NO_FOLDER = IN_FOLDER - 1;

    Kind kindOf(const std::string &path);
    Kind kindOfChanged();
    bool isRoot(const std::string &path) const;
    bool isBelow(const std::string &path) const;
    bool stepAside() const REQUIRES_SHARED(paths_.lock());
    bool compareFound() EXCLUDES(paths_.lock());
    bool compareIndexed() EXCLUDES(paths_.lock());
    std::size_t placeOf(NodeId node, std::size_t parent, std::vector<Unfound> &unfound)
        REQUIRES_SHARED(paths_.lock());
    void judge(const std::vector<Unfound> &unfound);
    void remove(const std::string &path) REQUIRES(paths_.lock());
    void insert() REQUIRES(paths_.lock());

    SearchBasePaths &paths_;
    const Terms terms_;
    const ExtensionSet extensions_;
    const std::string path_;
    /// A file system was asked and did not answer. Stands before what the constructor asks for.
    bool isUnanswered_ = false;
    Kind kind_;
    bool isPackage_ = false;
    FoundPaths found_;
    NodeId top_ = PathTree::NONE;
    /// Nodes of found paths, and whether they are folders; sorted.
    std::vector<std::pair<NodeId, bool>> foundNodes_;
    std::vector<std::string> missing_;
    /// Children before their parents.
    std::vector<std::string> gone_;
    std::vector<std::string> innerRoots_;
    std::vector<SearchBasePathsInsertionOperation> operations_;
    std::chrono::duration<double> insertionTime_{};
    std::vector<std::string> stored_;
    std::vector<std::string> removals_;
};

} // namespace quillon
