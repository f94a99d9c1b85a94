#include "platform/linux/watching/InotifyEventService.h"

#include "base/PathText.h"
#include "platform/linux/watching/InotifyEventStream.h"

#include <iostream>
#include <utility>

namespace quillon {

namespace {

constexpr std::uint32_t WATCH_ROOT = 0x4;
constexpr std::uint32_t ROOT_CHANGED = 0x20;

} // namespace

InotifyEventService::InotifyEventService(InotifyOptions options)
    : options_(std::move(options)), lastID_(std::make_shared<std::atomic<std::uint64_t>>(0))
{
    // The shortage lasts, so it is reported only once.
    const auto report = options_.report ? options_.report : [](const std::string &line) {
        std::cerr << "quillon: " + line + "\n";
    };
    options_.report =
        [report, isSaid = std::make_shared<std::atomic<bool>>(false)](const std::string &line) {
            if (!isSaid->exchange(true))
                report(line);
        };
}

std::shared_ptr<CrawlRecord> InotifyEventService::beginRecord()
{
    return std::make_shared<CrawlNotes>(wallClockOf(options_)());
}

std::unique_ptr<FSEventStream> InotifyEventService::create(Request request)
{
    if (request.paths.empty())
        return nullptr;
    FolderWatcher::Stream stream;
    for (std::string &path : request.paths)
        stream.roots.emplace_back(withoutTrailingSlashes(path));
    stream.latency = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(request.latency));
    stream.rootFlags = (request.flags & WATCH_ROOT) != 0 ? ROOT_CHANGED : 0;
    stream.delivery =
        std::make_shared<EventDelivery>(std::move(request.callback), request.info, lastID_);
    if (const auto notes = std::dynamic_pointer_cast<CrawlNotes>(request.recorded)) {
        stream.crawled = notes->take();
        if (!stream.crawled)
            return nullptr;
    } else {
        stream.quietSince = wallClockOf(options_)();
    }
    auto watcher = std::make_shared<FolderWatcher>(std::move(request.items), options_,
                                                   FolderWatcher::Kind::local, stream);
    return std::make_unique<InotifyEventStream>(std::move(watcher), stream.roots, stream.delivery);
}

} // namespace quillon
