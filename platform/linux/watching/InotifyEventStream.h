#pragma once

#include "platform/FSEventStream.h"
#include "platform/linux/watching/EventDelivery.h"
#include "platform/linux/watching/FolderWatcher.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// A stream over a watcher.
class InotifyEventStream final : public FSEventStream
{
public:
    InotifyEventStream(std::shared_ptr<FolderWatcher> watcher, std::vector<std::string> roots,
                       std::shared_ptr<EventDelivery> delivery)
        : watcher_(std::move(watcher)), roots_(std::move(roots)), delivery_(std::move(delivery))
    {}
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
    const std::vector<std::string> roots_;
    const std::shared_ptr<EventDelivery> delivery_;
    std::atomic<State> state_ = State::made;
};

} // namespace quillon
