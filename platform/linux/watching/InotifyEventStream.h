#pragma once

#include "platform/FSEventStream.h"
#include "platform/linux/watching/EventDelivery.h"
#include "platform/linux/watching/FolderWatcher.h"

#include <memory>
#include <string>
#include <vector>

namespace quillon {

/// The folders that a crawl has armed at a watcher.
class InotifyArming final : public FSEventArming
{
public:
    explicit InotifyArming(std::shared_ptr<FolderWatcher> watcher) : watcher_(std::move(watcher)) {}
    ~InotifyArming() override;

    Folder armRoot(const std::string &path) override;
    Folder arm(Folder parent, std::string_view name, const FolderStamp &stamp) override;
    void listed(Folder folder, std::uint64_t items) override;
    void notListed(Folder folder) override;
    void notEntered(Folder parent, std::string_view name) override;

    /// The watcher, for the stream that takes this over; null when one has before.
    std::shared_ptr<FolderWatcher> take();

private:
    const std::shared_ptr<FolderWatcher> watcher_;
    std::atomic<bool> taken_ = false;
};

/// A stream over a watcher.
class InotifyEventStream final : public FSEventStream
{
public:
    InotifyEventStream(std::shared_ptr<FolderWatcher> watcher, FolderWatcher::Stream stream);
    ~InotifyEventStream() override;

    void setDispatchQueue(TaskQueue &queue) override;
    bool start() override;
    void stop() override;
    void invalidate() override;
    std::uint64_t latestEventID() const override;
    std::vector<std::string> pathsBeingWatched() const override;
    void flushAsync() override;
    void flushSync() override;
    bool setExclusionPaths(const std::vector<std::string> &paths) override;
    std::string description() const override;
    FSEventStatus status() const override;

private:
    enum class State
    {
        made,
        started,
        stopped,
    };

    const std::shared_ptr<FolderWatcher> watcher_;
    const FolderWatcher::Stream stream_;
    std::atomic<State> state_ = State::made;
};

} // namespace quillon
