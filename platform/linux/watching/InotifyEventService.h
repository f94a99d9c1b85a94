#pragma once

#include "platform/FSEventStream.h"
#include "platform/linux/watching/InotifyOptions.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace quillon {

/// Watches folders by inotify and, where inotify does not reach, by checking them from time to
/// time. FolderWatcher.cpp explains how.
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
