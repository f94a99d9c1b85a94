#pragma once

#include "platform/FSEventStream.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// How the service watches. The defaults are for the program; tests and measurements change them.
struct InotifyOptions
{
    /// The most watches that a stream may have; by default half of what the system grants the user.
    std::optional<std::size_t> watchBudget;
    /// The shortest time between two checks of the folders that are not watched.
    std::chrono::milliseconds sweepInterval{60000};
    /// Events are read at most this often while they keep coming.
    std::chrono::milliseconds readingInterval{20};
    /// Events beyond this number in one reading count as lost, as if the system's queue were so
    /// short.
    std::optional<std::size_t> queueLimit;
    /// It is called on the watching thread between the arming and the listing of a folder.
    std::function<void(const std::string &path)> beforeListing;
    /// It is called on the watching thread after the disk has been read and before the changes are
    /// delivered.
    std::function<void()> beforeDelivery;
    /// Returns the nanoseconds since 1970; by default the system's.
    std::function<std::int64_t()> wallClock;
    /// Returns whether changes on a file system are not reported, given the name of its type.
    std::function<bool(std::string_view typeName)> isRemote;
    /// Receives the line about too few watches, by default on standard error.
    std::function<void(const std::string &line)> report;
};

/// Watches folders by inotify and, where inotify does not reach, by checking them from time to
/// time. InotifyEventService.cpp explains how.
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
