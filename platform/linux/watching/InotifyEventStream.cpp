#include "platform/linux/watching/InotifyEventStream.h"

#include <chrono>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto REMOTE_PATIENCE = 2000ms;
constexpr std::size_t MOST_EXCLUSIONS = 8;

} // namespace

// The armed folders

InotifyArming::~InotifyArming()
{
    if (!taken_)
        watcher_->stop();
}

// A call that nobody waits for may go on after this is gone, so it holds what it works on.

FSEventArming::Folder InotifyArming::armRoot(const std::string &path)
{
    const auto watcher = watcher_;
    return watcher->armRoot(path);
}

FSEventArming::Folder InotifyArming::arm(Folder parent, std::string_view name,
                                         const FolderStamp &stamp)
{
    const auto watcher = watcher_;
    return watcher->arm(parent, name, stamp);
}

void InotifyArming::listed(Folder folder, std::uint64_t items)
{
    const auto watcher = watcher_;
    watcher->listed(folder, items);
}

void InotifyArming::notListed(Folder folder)
{
    const auto watcher = watcher_;
    watcher->notListed(folder);
}

void InotifyArming::notEntered(Folder parent, std::string_view name)
{
    const auto watcher = watcher_;
    watcher->notEntered(parent, name);
}

std::shared_ptr<FolderWatcher> InotifyArming::take()
{
    return taken_.exchange(true) ? nullptr : watcher_;
}

// The stream

InotifyEventStream::InotifyEventStream(std::shared_ptr<FolderWatcher> watcher,
                                       FolderWatcher::Stream stream)
    : watcher_(std::move(watcher)), stream_(std::move(stream))
{}

InotifyEventStream::~InotifyEventStream()
{
    invalidate();
}

void InotifyEventStream::setDispatchQueue(TaskQueue &queue)
{
    stream_.delivery->setQueue(queue);
}

bool InotifyEventStream::start()
{
    State expected = State::made;
    if (!stream_.delivery->hasQueue() || !state_.compare_exchange_strong(expected, State::started))
        return false;
    watcher_->watch(stream_);
    return true;
}

void InotifyEventStream::stop()
{
    state_ = State::stopped;
    stream_.delivery->stop();
    watcher_->stop();
}

void InotifyEventStream::invalidate()
{
    stop();
}

std::uint64_t InotifyEventStream::latestEventID() const
{
    return stream_.delivery->latestID();
}

std::vector<std::string> InotifyEventStream::pathsBeingWatched() const
{
    return stream_.roots;
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
    stream_.delivery->exclude(paths);
    return true;
}

std::string InotifyEventStream::description() const
{
    std::string text = "inotify stream";
    for (const std::string &root : stream_.roots)
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
