#pragma once

#include "base/Mutex.h"
#include "base/NameArena.h"
#include "platform/FSEventStream.h"
#include "platform/FolderStamp.h"
#include "platform/linux/watching/WatchTree.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

/// A folder that a crawl has entered.
struct CrawledFolder
{
    /// The crawl's number of the folder above; 0 for a root.
    CrawlRecord::Folder parent = 0;
    /// The place of the name, or of a root the index in the list of root paths.
    NameArena::Offset name = 0;
    std::uint16_t nameLength = 0;
    /// The stamp was taken before the folder was listed. It is unknown where nobody listed it.
    FolderStamp stamp;
    /// The sum of itemHash() over the folder's items.
    std::uint64_t items = 0;
};

/// Holds everything that a crawl has noted. It no longer changes, so every thread may read it.
class CrawledTree
{
public:
    using Folder = CrawlRecord::Folder;

    /// It is called with a folder's parent, whose own call comes first, and its name; for a root
    /// with NONE and the path. Returns the folder's place, or NONE when nothing below it is wanted.
    using Enter = std::function<WatchTree::Id(WatchTree::Id parent, std::string_view name,
                                              const CrawledFolder &folder)>;
    /// It is called with a folder and the name of a subfolder that the crawl could not open, or
    /// without a name when the crawl could not list the folder itself.
    using Missed = std::function<void(WatchTree::Id folder, const std::string &name)>;
    /// Visits the folders at or below some paths, and then what was missed there.
    void visit(const std::vector<std::string> &roots, const Enter &enter,
               const Missed &missed) const;

    /// Returns the nanoseconds since 1970 at which the crawl began.
    std::int64_t beganAt() const { return beganAt_; }

private:
    friend class CrawlNotes;
    class Visit;

    static constexpr unsigned INDEX_BITS = 27;
    static constexpr std::size_t BOOKS = 8;
    struct Pages
    {
        std::deque<CrawledFolder> folders;
        NameArena names;
    };

    static std::size_t bookOf(Folder folder) { return folder >> INDEX_BITS; }
    static std::size_t indexOf(Folder folder)
    {
        return (folder & ((Folder{1} << INDEX_BITS) - 1)) - 1;
    }
    const CrawledFolder &at(Folder folder) const
    {
        return books_[bookOf(folder)].folders[indexOf(folder)];
    }
    /// Returns the path of a root, or the name of any other folder.
    std::string_view nameOf(Folder folder) const;
    std::string pathOf(Folder folder) const;

    std::int64_t beganAt_ = 0;
    std::array<Pages, BOOKS> books_;
    std::vector<std::string> rootPaths_;
    std::vector<std::pair<Folder, std::string>> missed_;
};

/// The notes that the threads of a crawl take of the folders that they list. Each thread writes to
/// a book of its own, so that none waits for another. Safe from every thread.
class CrawlNotes final : public CrawlRecord
{
public:
    explicit CrawlNotes(std::int64_t beganAt) : beganAt_(beganAt) {}

    Folder enteredRoot(const std::string &path, const FolderStamp &stamp) override;
    Folder entered(Folder parent, std::string_view name, const FolderStamp &stamp) override;
    void listed(Folder folder, std::uint64_t items) override;
    void notListed(Folder folder) override;
    void notEntered(Folder parent, std::string_view name) override;

    /// Hands everything over; later notes are dropped. Returns null when this was done before.
    std::shared_ptr<const CrawledTree> take();

private:
    struct alignas(64) Book
    {
        Mutex mutex;
        CrawledTree::Pages pages GUARDED_BY(mutex);
    };

    Folder write(const CrawledFolder &folder, std::string_view name);

    const std::int64_t beganAt_;
    std::array<Book, CrawledTree::BOOKS> books_;
    std::atomic<bool> isClosed_ = false;
    Mutex mutex_;
    std::vector<std::string> rootPaths_ GUARDED_BY(mutex_);
    std::vector<std::pair<Folder, std::string>> missed_ GUARDED_BY(mutex_);
};

} // namespace quillon
