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
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

/// What the threads of a crawl note of the folders that they list, until the watching thread takes
/// it over. Each thread writes to a book of its own, so that none waits for another. Safe from
/// every thread.
class CrawlNotes
{
public:
    /// Zero is no folder; the highest bit is never set.
    using Folder = FSEventArming::Folder;
    static constexpr Folder NONE = 0;

    struct Note
    {
        Folder parent = NONE;
        /// Where the folder is in the tree, once it has been entered there.
        WatchTree::Id id = WatchTree::NONE;
        /// Of a root: which of the root paths.
        NameArena::Offset name = 0;
        std::uint16_t nameLength = 0;
        /// Nothing below it is entered: another file system begins there.
        bool isBorder = false;
        FolderStamp stamp;
        /// The sum of itemHash() over its items.
        std::uint64_t items = 0;
    };

    /// Notes a root, which is in the tree already. NONE when nothing is noted any more.
    Folder addRoot(const std::string &path, WatchTree::Id id);
    /// Notes a folder of another one. NONE when nothing is noted any more.
    Folder add(Folder parent, std::string_view name, const FolderStamp &stamp, bool isBorder);
    /// The sum over the items of a folder that was listed.
    void addItems(Folder folder, std::uint64_t items);
    /// The folder could not be listed.
    void addNotListed(Folder folder);
    /// The folder of that name in a folder could not be opened.
    void addNotEntered(Folder parent, std::string_view name);
    /// The path of a folder that was noted; empty when the notes have been handed over.
    std::string path(Folder folder) const;

    /// Nothing is noted from now on.
    void close() { isClosed_ = true; }
    /// Gives each folder its place in the tree. Is given that of the folder above, which comes
    /// first; what is below a folder without a place is left out.
    using Enter =
        std::function<WatchTree::Id(WatchTree::Id parent, std::string_view name, const Note &note)>;
    /// Called with a folder and the name of one in it that could not be opened, or without a name
    /// where the folder itself could not be listed.
    using Missed = std::function<void(WatchTree::Id folder, const std::string &name)>;
    /// Hands over every note and then what the crawl has missed. Called once, after close().
    void takeAll(const Enter &enter, const Missed &missed);

private:
    static constexpr unsigned INDEX_BITS = 27;
    static constexpr std::size_t BOOKS = 8;

    struct Pages
    {
        std::deque<Note> notes;
        NameArena names;
    };
    struct alignas(64) Book
    {
        mutable Mutex mutex;
        Pages pages GUARDED_BY(mutex);
    };
    using AllPages = std::array<Pages, BOOKS>;

    static std::size_t bookOf(Folder folder) { return folder >> INDEX_BITS; }
    static std::size_t indexOf(Folder folder)
    {
        return (folder & ((Folder{1} << INDEX_BITS) - 1)) - 1;
    }
    static Note &noteOf(AllPages &all, Folder folder)
    {
        return all[bookOf(folder)].notes[indexOf(folder)];
    }
    static void place(AllPages &all, Folder folder, const Enter &enter);
    Folder write(const Note &note, std::string_view name);

    std::array<Book, BOOKS> books_;
    std::atomic<bool> isClosed_ = false;
    mutable Mutex mutex_;
    std::vector<std::string> rootPaths_ GUARDED_BY(mutex_);
    std::vector<std::pair<Folder, std::string>> missed_ GUARDED_BY(mutex_);
};

} // namespace quillon
