#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace quillon {

class FolderLister;
class SearchBaseFinder;
class TaskQueue;

/// Counts the folders that the index would hold of one folder, on a queue of its own. Main thread
/// only.
class FolderCounter
{
public:
    struct Services
    {
        FolderLister &folderLister;
        SearchBaseFinder &searchBaseFinder;
        /// A queue that nothing a user waits for runs on.
        TaskQueue &counting;
    };

    /// Begins at once. The services outlive the task on the queue.
    FolderCounter(const Services &services, const std::string &path);
    /// The count ends soon, and nobody waits for that.
    ~FolderCounter();
    FolderCounter(const FolderCounter &) = delete;
    FolderCounter &operator=(const FolderCounter &) = delete;

    /// The number so far; the folder itself counts.
    std::size_t count() const;
    bool isDone() const;

private:
    struct Progress;
    std::shared_ptr<Progress> progress_;
};

} // namespace quillon
