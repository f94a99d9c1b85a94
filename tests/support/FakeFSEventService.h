#pragma once

#include "base/Mutex.h"
#include "base/TaskQueue.h"
#include "platform/FSEventStream.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// A service whose events a test makes up.
///
/// Streams are made and used on one thread. Records are safe from every thread.
class FakeFSEventService final : public FSEventStreamService
{
public:
    /// Remembers what a stream was made with and what was asked of it, even after it is gone.
    struct Stream
    {
        Request request;
        TaskQueue *queue = nullptr;
        bool isAbleToStart = true;
        bool isStarted = false;
        bool isStopped = false;
        bool isInvalidated = false;
        bool isDestroyed = false;
        int flushes = 0;
        std::vector<std::string> excluded;

        /// Calls back on the stream's queue, as long as it is not stopped.
        void send(std::vector<std::string> paths, std::uint32_t flags = 0)
        {
            const std::size_t count = paths.size();
            queue->post([this, count, flags, paths = std::move(paths)] {
                if (!isStopped)
                    request.callback(request.info, count, FSEventPaths{paths},
                                     std::vector(count, flags),
                                     std::vector(count, std::uint64_t{1}));
            });
        }
    };

    std::shared_ptr<CrawlRecord> beginRecord() override
    {
        if (!isAbleToWatch)
            return nullptr;
        return std::make_shared<Record>(*this);
    }
    std::unique_ptr<FSEventStream> create(Request request) override
    {
        if (!isAbleToWatch)
            return nullptr;
        auto stream = std::make_shared<Stream>();
        stream->request = std::move(request);
        stream->isAbleToStart = isAbleToStart;
        streams.push_back(stream);
        return std::make_unique<Handle>(std::move(stream));
    }

    /// Returns what has been recorded, in order, with the notes that other fakes have added.
    std::vector<std::string> notes() const
    {
        const MutexLock lock(mutex_);
        return notes_;
    }
    void note(const std::string &text)
    {
        const MutexLock lock(mutex_);
        notes_.push_back(text);
    }

    bool isAbleToWatch = true;
    /// False when streams made from now on cannot be started.
    bool isAbleToStart = true;
    std::vector<std::shared_ptr<Stream>> streams;

private:
    class Record final : public CrawlRecord
    {
    public:
        explicit Record(FakeFSEventService &service) : service_(service) {}
        Folder enteredRoot(const std::string &path, const FolderStamp &) override
        {
            return entered(path == "/" ? "" : path);
        }
        Folder entered(Folder parent, std::string_view name, const FolderStamp &) override
        {
            std::string path;
            {
                const MutexLock lock(mutex_);
                path = paths_.at(parent);
            }
            return entered(path.append("/").append(name));
        }
        void listed(Folder, std::uint64_t) override {}
        void notListed(Folder folder) override
        {
            const MutexLock lock(mutex_);
            service_.note("not listed " + paths_.at(folder));
        }
        void notEntered(Folder parent, std::string_view name) override
        {
            const MutexLock lock(mutex_);
            service_.note("not entered " + paths_.at(parent).append("/").append(name));
        }

    private:
        Folder entered(const std::string &path)
        {
            service_.note("enter " + path);
            const MutexLock lock(mutex_);
            paths_.push_back(path);
            return static_cast<Folder>(paths_.size() - 1);
        }

        FakeFSEventService &service_;
        Mutex mutex_;
        std::vector<std::string> paths_ GUARDED_BY(mutex_);
    };

    class Handle final : public FSEventStream
    {
    public:
        explicit Handle(std::shared_ptr<Stream> stream) : stream_(std::move(stream)) {}
        ~Handle() override { stream_->isDestroyed = true; }

        void setDispatchQueue(TaskQueue &queue) override { stream_->queue = &queue; }
        bool start() override
        {
            stream_->isStarted = stream_->isAbleToStart;
            return stream_->isStarted;
        }
        void stop() override { stream_->isStopped = true; }
        void invalidate() override { stream_->isInvalidated = true; }
        std::uint64_t latestEventID() const override { return 7; }
        std::vector<std::string> pathsBeingWatched() const override
        {
            return stream_->request.paths;
        }
        void flushAsync() override { ++stream_->flushes; }
        void flushSync() override { ++stream_->flushes; }
        bool setExclusionPaths(const std::vector<std::string> &paths) override
        {
            stream_->excluded = paths;
            return true;
        }
        std::string description() const override { return "made up"; }
        FSEventStatus status() const override { return {.watched = 2, .folders = 3, .budget = 4}; }

    private:
        std::shared_ptr<Stream> stream_;
    };

    mutable Mutex mutex_;
    std::vector<std::string> notes_ GUARDED_BY(mutex_);
};

} // namespace quillon
