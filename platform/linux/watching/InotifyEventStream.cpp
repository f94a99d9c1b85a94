#include "platform/linux/watching/InotifyEventStream.h"

#include <chrono>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto REMOTE_PATIENCE = 2000ms;
constexpr std::size_t MOST_EXCLUSIONS = 8;

} // namespace

InotifyEventStream::~InotifyEventStream()
{
    invalidate();
}

void InotifyEventStream::setDispatchQueue(TaskQueue &queue)
{
    delivery_->setQueue(queue);
}

bool InotifyEventStream::start()
{
    State expected = State::made;
    if (!delivery_->hasQueue() || !state_.compare_exchange_strong(expected, State::started))
        return false;
    if (watcher_->start())
        return true;
    State refused = State::started;
    state_.compare_exchange_strong(refused, State::made);
    return false;
}

void InotifyEventStream::stop()
{
    state_ = State::stopped;
    delivery_->stop();
    watcher_->stop();
}

void InotifyEventStream::invalidate()
{
    stop();
}

std::uint64_t InotifyEventStream::latestEventID() const
{
    return delivery_->latestID();
}

std::vector<std::string> InotifyEventStream::pathsBeingWatched() const
{
    return roots_;
}

void InotifyEventStream::flushAsync()
{
    if (state_ != State::started)
        return;
    watcher_->requestFlush();
    if (const auto remote = watcher_->remote())
        remote->requestFlush();
}

void InotifyEventStream::flushSync()
{
    if (state_ != State::started)
        return;
    watcher_->waitForFlush(watcher_->requestFlush(), std::nullopt);
    if (const auto remote = watcher_->remote())
        remote->waitForFlush(remote->requestFlush(), REMOTE_PATIENCE);
}

bool InotifyEventStream::setExclusionPaths(const std::vector<std::string> &paths)
{
    if (paths.size() > MOST_EXCLUSIONS)
        return false;
    delivery_->exclude(paths);
    return true;
}

std::string InotifyEventStream::description() const
{
    std::string text = "inotify stream";
    for (const std::string &root : roots_)
        text += " " + root;
    const FSEventStatus now = status();
    return text + ", watching " + std::to_string(now.watched) + " of " +
           std::to_string(now.folders) + " folders";
}

FSEventStatus InotifyEventStream::status() const
{
    return watcher_->status();
}

} // namespace quillon
