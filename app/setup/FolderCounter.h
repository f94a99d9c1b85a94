#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace quillon {

class FolderLister;
class SearchBaseFinder;
class TaskQueue;

/// Counts the folders that the index would hold for one folder, on a queue of its own. Main thread
/// only.
class FolderCounter
{
public:
    struct Services
    {
        FolderLister &folderLister;
        SearchBaseFinder &searchBaseFinder;
        /// The queue, which runs nothing that a user waits for.
        TaskQueue &counting;
    };

    /// Begins at once. The services outlive the task on the queue.
    FolderCounter(const Services &services, const std::string &path);
    /// Makes the count end soon, without waiting for its end.
    ~FolderCounter();
    FolderCounter(const FolderCounter &) = delete;
    FolderCounter &operator=(const FolderCounter &) = delete;

    /// Returns the number so far, including the folder itself.
    std::size_t count() const;
    bool isDone() const;

private:
    struct Progress;
    std::shared_ptr<Progress> progress_;
};

} // namespace quillon
