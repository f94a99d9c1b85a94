#pragma once

#include "platform/FolderLister.h"

#include <cstdint>
#include <functional>
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
        /// It is zero until add() sets it, unless knows() has given it.
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

    // A receiver that remembers folders saves the crawl from reading those that have not changed.

    /// Returns true where the crawl has to take the stamps of folders for the calls below.
    virtual bool wantsStamps() const { return false; }
    /// Returns true where knows() may return true.
    virtual bool remembers(Token) const { return false; }
    using ReceiveEntry = std::function<void(const Entry &entry)>;
    /// It is called before a folder is read, with the folder's stamp. Returns true after it has
    /// handed everything that the folder holds to receive, as far as it concerns the crawl. Returns
    /// false where the folder has to be read; what was received then counts for nothing.
    virtual bool knows(Token, const FolderStamp &, const ReceiveEntry &) { return false; }
    /// It is called once all entries of a folder have been handed over, with the stamp from before.
    virtual void listed(Token, const FolderStamp &) {}
};

} // namespace quillon
