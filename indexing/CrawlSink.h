#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillon {

/// Receives what a crawl keeps, one call for each folder listed. Called from the crawl's threads,
/// several at a time; the implementation locks.
class CrawlSink
{
public:
    /// The receiver's own name for a path it was given, valid for the length of the crawl.
    using Token = std::uint32_t;

    struct Entry
    {
        std::string_view name;
        bool isFolder = false;
        /// It is set by add().
        Token token = 0;
    };

    CrawlSink() = default;
    virtual ~CrawlSink() = default;
    CrawlSink(const CrawlSink &) = delete;
    CrawlSink &operator=(const CrawlSink &) = delete;

    /// A folder to crawl, by its absolute path; comes before anything below it.
    virtual Token root(const std::string &path) = 0;
    /// What was kept of one folder's entries; not called for a folder that keeps none.
    virtual void add(Token parent, std::span<Entry> entries) = 0;
};

} // namespace quillon
