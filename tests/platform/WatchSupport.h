#pragma once

#include "base/Mutex.h"
#include "platform/FSEventStream.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ThreadTaskQueue.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace quillon {

/// An index that holds nothing but paths and brings each reported path up to date by reading the
/// disk below it. Folders and files "*.txt" count. Folders "*.app" are listed and not entered.
/// Hidden names and "skipped" do not count.
class ModelIndex final : public WatchFilter
{
public:
    using Paths = std::set<std::string, std::less<>>;

    explicit ModelIndex(std::string root, bool withHidden = false)
        : root_(std::move(root)), withHidden_(withHidden)
    {}

    Folder folder(std::string_view path) const override
    {
        const std::string_view name = path.substr(path.rfind('/') + 1);
        if (path == root_)
            return Folder::entered;
        if ((name.starts_with('.') && !withHidden_) || name == "skipped")
            return Folder::skipped;
        return name.ends_with(".app") ? Folder::listed : Folder::entered;
    }
    bool includesFile(std::string_view name) const override
    {
        return name.ends_with(".txt") && !name.starts_with('.');
    }
    bool isIndexed(std::string_view path) const override
    {
        const MutexLock lock(mutex_);
        return paths_.contains(path);
    }

    /// Returns what the index would hold of this path and below it if it were built now.
    Paths onDisk(const std::string &path) const
    {
        namespace fs = std::filesystem;
        Paths found;
        std::error_code error;
        const auto type = fs::symlink_status(path, error).type();
        const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
        if (type == fs::file_type::directory || path == root_) {
            if (path == root_ && !fs::is_directory(path, error))
                return found;
            const Folder verdict = folder(path);
            if (verdict == Folder::skipped)
                return found;
            found.insert(path);
            if (verdict == Folder::entered)
                for (fs::directory_iterator at(path, error), end; !error && at != end;
                     at.increment(error))
                    found.merge(onDisk(at->path()));
        } else if (type != fs::file_type::not_found && type != fs::file_type::none &&
                   includesFile(name)) {
            found.insert(path);
        }
        return found;
    }
    Paths onDisk() const { return onDisk(root_); }

    void update(const std::string &path)
    {
        const Paths found = isReachedWithoutLinks(path) ? onDisk(path) : Paths();
        const MutexLock lock(mutex_);
        std::erase_if(paths_, [&](const std::string &old) {
            return old == path || (old.starts_with(path) && old[path.size()] == '/');
        });
        paths_.insert(found.begin(), found.end());
    }
    void add(const std::string &path)
    {
        const MutexLock lock(mutex_);
        paths_.insert(path);
    }
    Paths paths() const
    {
        const MutexLock lock(mutex_);
        return paths_;
    }
    const std::string &root() const { return root_; }

private:
    /// Returns whether every folder between the root and the path is a folder and not a link to
    /// one.
    bool isReachedWithoutLinks(const std::string &path) const
    {
        std::error_code error;
        for (std::size_t slash = path.find('/', root_.size() + 1); slash != std::string::npos;
             slash = path.find('/', slash + 1))
            if (!std::filesystem::is_directory(
                    std::filesystem::symlink_status(path.substr(0, slash), error)))
                return false;
        return true;
    }

    const std::string root_;
    /// Hidden folders are indexed too.
    const bool withHidden_;
    mutable Mutex mutex_;
    Paths paths_ GUARDED_BY(mutex_);
};

/// The receiving end of a stream. It brings an index up to date and records what was reported. Safe
/// from every thread.
class WatchReceiver
{
public:
    explicit WatchReceiver(std::shared_ptr<ModelIndex> index) : index_(std::move(index)) {}

    /// Returns a callback for a stream. The receiver outlives the queue on which it runs.
    FSEventStreamCallback callback()
    {
        return
            [this](void *, std::size_t, const FSEventPaths &paths,
                   const std::vector<std::uint32_t> &flags, const std::vector<std::uint64_t> &ids) {
                receive(std::get<std::vector<std::string>>(paths), flags, ids);
            };
    }
    /// Returns the paths reported since the last call, relative to the root, "" for the root
    /// itself.
    std::vector<std::string> takeTold()
    {
        const MutexLock lock(mutex_);
        return std::exchange(told_, {});
    }
    /// Returns the flags of the latest report of a path.
    std::uint32_t flagsOf(const std::string &path) const
    {
        const MutexLock lock(mutex_);
        const auto found = flags_.find(path);
        return found == flags_.end() ? 0 : found->second;
    }
    bool areIDsRising() const
    {
        const MutexLock lock(mutex_);
        return std::ranges::is_sorted(ids_, std::ranges::less_equal());
    }

private:
    void receive(const std::vector<std::string> &paths, const std::vector<std::uint32_t> &flags,
                 const std::vector<std::uint64_t> &ids)
    {
        for (std::size_t i = 0; i < paths.size(); ++i) {
            index_->update(paths[i]);
            const MutexLock lock(mutex_);
            const std::size_t cut = std::min(paths[i].size(), index_->root().size() + 1);
            told_.push_back(paths[i].substr(cut));
            flags_[told_.back()] = flags[i];
            ids_.push_back(ids[i]);
        }
    }

    const std::shared_ptr<ModelIndex> index_;
    mutable Mutex mutex_;
    std::vector<std::string> told_ GUARDED_BY(mutex_);
    std::map<std::string, std::uint32_t> flags_ GUARDED_BY(mutex_);
    std::vector<std::uint64_t> ids_ GUARDED_BY(mutex_);
};

/// A stream over one root, the index that it keeps current, and what it has reported.
class WatchRig
{
public:
    /// Within these ten seconds, nothing is reported before flush() asks for it.
    static constexpr double LATENCY = 10;

    explicit WatchRig(std::string root, InotifyOptions options = {}, double latency = LATENCY)
        : WatchRig(std::make_shared<ModelIndex>(std::move(root)), std::move(options), latency,
                   [](InotifyEventService &, const std::shared_ptr<ModelIndex> &empty) {
                       empty->update(empty->root());
                       return nullptr;
                   })
    {}
    /// The crawl fills the index before the stream begins.
    using Crawl = std::function<std::shared_ptr<CrawlRecord>(
        InotifyEventService &service, const std::shared_ptr<ModelIndex> &empty)>;
    WatchRig(std::shared_ptr<ModelIndex> emptyIndex, InotifyOptions options, double latency,
             const Crawl &crawl)
        : index(std::move(emptyIndex)), receiver_(index), service_(std::move(options))
    {
        FSEventStreamService::Request request;
        request.callback = receiver_.callback();
        request.paths = {index->root()};
        request.latency = latency;
        request.flags = 0x4;
        request.items = index;
        request.recorded = crawl(service_, index);
        stream_ = service_.create(std::move(request));
        stream_->setDispatchQueue(queue_);
        stream_->start();
        flush();
    }
    ~WatchRig() { stream_->invalidate(); }
    WatchRig(const WatchRig &) = delete;
    WatchRig &operator=(const WatchRig &) = delete;

    /// Returns once everything that has happened has reached the index.
    void flush()
    {
        stream_->flushSync();
        queue_.postAndWait([] {});
    }
    /// Flushes until the index is current, since a flush does not wait for remote file systems.
    void flushUntilCurrent()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        do
            flush();
        while (index->paths() != index->onDisk() && std::chrono::steady_clock::now() < end);
    }
    std::vector<std::string> takeTold() { return receiver_.takeTold(); }
    /// Flushes, then returns what takeTold() returns.
    std::vector<std::string> told()
    {
        flush();
        return takeTold();
    }
    std::uint32_t flagsOf(const std::string &path) const { return receiver_.flagsOf(path); }
    bool areIDsRising() const { return receiver_.areIDsRising(); }
    FSEventStream &stream() { return *stream_; }

    const std::shared_ptr<ModelIndex> index;

private:
    WatchReceiver receiver_;
    InotifyEventService service_;
    ThreadTaskQueue queue_;
    std::unique_ptr<FSEventStream> stream_;
};

/// Returns what an inotify instance of this process watches, as the kernel lists it. Waits for
/// instances that are about to be closed.
inline std::multiset<std::uint64_t> watchedInodes()
{
    namespace fs = std::filesystem;
    for (;;) {
        std::vector<std::multiset<std::uint64_t>> instances;
        std::error_code error;
        for (const auto &entry : fs::directory_iterator("/proc/self/fd", error)) {
            if (fs::read_symlink(entry.path(), error) != "anon_inode:inotify")
                continue;
            instances.emplace_back();
            std::ifstream file("/proc/self/fdinfo/" + entry.path().filename().string());
            for (std::string line; std::getline(file, line);)
                if (const std::size_t at = line.find(" ino:");
                    line.starts_with("inotify ") && at != std::string::npos)
                    instances.back().insert(std::stoull(line.substr(at + 5), nullptr, 16));
        }
        if (instances.size() == 1)
            return instances.front();
        std::this_thread::yield();
    }
}

inline std::uint64_t inodeOf(const std::string &path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace quillon
