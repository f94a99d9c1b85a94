#pragma once

#include "indexing/CrawlFolder.h"
#include "indexing/CrawlSink.h"
#include "indexing/SkipRules.h"
#include "platform/FSEventStream.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class OpenFolder;

/// A folder to be visited.
struct CrawlItem
{
    /// This is null for the root, whose name is then the name of a CrawlFolder's root.
    CrawlFolder::Ref parent;
    /// The folder above, opened; null when it was closed again to save descriptors.
    std::shared_ptr<const OpenFolder> parentHandle;
    std::string name;
    CrawlSink::Token token = 0;
    SkipRules::State state;
    /// The value of CrawlFolder::recorded(), once the folder has been opened.
    CrawlRecord::Folder recorded = 0;

    /// Returns the folder's own path, which is "" for "/".
    std::string path() const;
};

/// The folders that one worker has still to visit: for each folder on its way down, the subfolders
/// that are left. It has no lock of its own.
class CrawlStack
{
public:
    static constexpr std::size_t MAX_OPEN = 128;

    struct Child
    {
        std::string_view name;
        CrawlSink::Token token = 0;
        SkipRules::State state;
    };

    /// Goes down into a folder that has these subfolders, at least one.
    void push(CrawlFolder::Ref folder, std::shared_ptr<const OpenFolder> handle,
              const std::vector<Child> &children);
    /// Takes the next folder to visit. Returns false when there is none.
    bool take(CrawlItem &item);
    /// Gives another stack half of the folders that are left nearest to the root.
    void share(CrawlStack &other);
    /// Returns the number of folders to visit.
    std::size_t pending() const { return pending_; }

    /// Records that a folder on the way down is open again. It is called for folders from the root
    /// downwards; position starts at zero and is passed from call to call.
    void reopened(std::size_t &position, const CrawlFolder &folder,
                  const std::shared_ptr<const OpenFolder> &handle);
    /// Returns the number of folders kept open at a time; those nearest to the root are closed
    /// first.
    std::size_t maxOpen() const { return maxOpen_; }
    void setMaxOpen(std::size_t count);

private:
    struct StoredChild
    {
        std::size_t nameOffset = 0;
        std::size_t nameSize = 0;
        CrawlSink::Token token = 0;
        SkipRules::State state;
    };
    struct Level
    {
        CrawlFolder::Ref folder;
        std::shared_ptr<const OpenFolder> handle;
        std::string names;
        /// The children from next on are still to be visited, the last one first.
        std::vector<StoredChild> children;
        std::size_t next = 0;

        bool isEmpty() const { return next == children.size(); }
    };

    void add(Level level);
    void closeSurplus();

    std::vector<Level> levels_;
    /// Levels below this one are closed.
    std::size_t lowestOpen_ = 0;
    std::size_t pending_ = 0;
    std::size_t maxOpen_ = MAX_OPEN;
};

} // namespace quillon
