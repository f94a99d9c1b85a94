#pragma once

#include "platform/FSEventStream.h"
#include "platform/linux/watching/InotifyOptions.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace quillon {

/// Watches folders by inotify, and by looking at them now and then where that does not reach.
///
/// FolderWatcher.cpp says how.
class InotifyEventService final : public FSEventStreamService
{
public:
    explicit InotifyEventService(InotifyOptions options = {});

    std::shared_ptr<CrawlRecord> beginRecord() override;
    std::unique_ptr<FSEventStream> create(Request request) override;

private:
    InotifyOptions options_;
    const std::shared_ptr<std::atomic<std::uint64_t>> lastID_;
};

} // namespace quillon
