#pragma once

#include "platform/FolderLister.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace quillon {

/// Receives what a crawl keeps, in one call for each folder that is listed. The crawl's threads
/// call it, several at a time, so the implementation locks.
class CrawlSink
{
public:
    /// The receiver's own number for a path that it was given, valid as long as the crawl.
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

    /// Receives a folder to crawl, by its absolute path, before anything below it.
    virtual Token root(const std::string &path) = 0;
    /// Receives what was kept of one folder's entries. It is not called for a folder of which
    /// nothing is kept.
    virtual void add(Token parent, std::span<Entry> entries) = 0;

    // A receiver that remembers folders spares the crawl from reading those that have not changed.

    /// Returns true when the crawl has to take the stamps of folders for the calls below.
    virtual bool wantsStamps() const { return false; }
    /// Returns true where knows() may return true.
    virtual bool remembers(Token) const { return false; }
    using ReceiveEntry = std::function<void(const Entry &entry)>;
    /// It is called with a folder's stamp before the folder is read. If the folder has not changed,
    /// hands everything in it that concerns the crawl to receive and returns true. Returns false
    /// when the folder has to be read; what was received then does not count.
    virtual bool knows(Token, const FolderStamp &, const ReceiveEntry &) { return false; }
    /// It is called once all entries of a folder have been handed over, with the stamp from before.
    virtual void listed(Token, const FolderStamp &) {}
};

} // namespace quillon
