#include "platform/linux/watching/CrawlNotes.h"

#include "base/Require.h"

#include <limits>
#include <utility>

namespace quillon {

namespace {

/// The place of what is left out of the tree.
constexpr WatchTree::Id OUT = std::numeric_limits<WatchTree::Id>::max();

/// Numbers the threads, so that those of one crawl write to different books.
std::size_t ownNumber()
{
    static std::atomic<std::size_t> next = 0;
    thread_local const std::size_t number = next++;
    return number;
}

} // namespace

CrawlNotes::Folder CrawlNotes::addRoot(const std::string &path, WatchTree::Id id)
{
    Note note;
    note.id = id;
    {
        const MutexLock lock(mutex_);
        note.name = static_cast<NameArena::Offset>(rootPaths_.size());
        rootPaths_.push_back(path == "/" ? "" : path);
    }
    return write(note, {});
}

CrawlNotes::Folder CrawlNotes::add(Folder parent, std::string_view name, const FolderStamp &stamp,
                                   bool isBorder)
{
    Note note;
    note.parent = parent;
    note.isBorder = isBorder;
    note.stamp = stamp;
    return write(note, name);
}

/// The name is empty for a root.
CrawlNotes::Folder CrawlNotes::write(const Note &note, std::string_view name)
{
    const std::size_t number = ownNumber() % BOOKS;
    Book &book = books_[number];
    const MutexLock lock(book.mutex);
    if (isClosed_)
        return NONE;
    std::deque<Note> &notes = book.pages.notes;
    notes.push_back(note);
    if (!name.empty()) {
        notes.back().name = book.pages.names.store(name);
        notes.back().nameLength = static_cast<std::uint16_t>(name.size());
    }
    require(notes.size() >> INDEX_BITS == 0, "a crawl has fewer folders");
    return static_cast<Folder>(number << INDEX_BITS | notes.size());
}

void CrawlNotes::addItems(Folder folder, std::uint64_t items)
{
    Book &book = books_[bookOf(folder)];
    const MutexLock lock(book.mutex);
    if (indexOf(folder) < book.pages.notes.size())
        book.pages.notes[indexOf(folder)].items = items;
}

void CrawlNotes::addNotListed(Folder folder)
{
    addNotEntered(folder, {});
}

void CrawlNotes::addNotEntered(Folder parent, std::string_view name)
{
    const MutexLock lock(mutex_);
    if (!isClosed_)
        missed_.emplace_back(parent, name);
}

std::string CrawlNotes::path(Folder folder) const
{
    std::vector<std::string> names;
    for (;;) {
        const Book &book = books_[bookOf(folder)];
        Note note;
        {
            const MutexLock lock(book.mutex);
            if (indexOf(folder) >= book.pages.notes.size())
                return {};
            note = book.pages.notes[indexOf(folder)];
            if (note.parent != NONE)
                names.emplace_back(book.pages.names.at(note.name), note.nameLength);
        }
        if (note.parent == NONE) {
            const MutexLock lock(mutex_);
            std::string path = rootPaths_[note.name];
            for (auto name = names.rbegin(); name != names.rend(); ++name)
                path.append("/").append(*name);
            return path.empty() ? "/" : path;
        }
        folder = note.parent;
    }
}

void CrawlNotes::takeAll(const Enter &enter, const Missed &missed)
{
    AllPages all;
    for (std::size_t i = 0; i < BOOKS; ++i) {
        const MutexLock lock(books_[i].mutex);
        all[i] = std::exchange(books_[i].pages, {});
    }
    for (std::size_t book = 0; book < BOOKS; ++book)
        for (std::size_t i = 0; i < all[book].notes.size(); ++i)
            place(all, static_cast<Folder>(book << INDEX_BITS | (i + 1)), enter);
    const MutexLock lock(mutex_);
    for (const auto &[folder, name] : std::exchange(missed_, {}))
        if (const WatchTree::Id id = noteOf(all, folder).id; id != OUT)
            missed(id, name);
}

/// Those above it first, which may be in other books: a tree may be deeper than the stack.
void CrawlNotes::place(AllPages &all, Folder folder, const Enter &enter)
{
    std::vector<Folder> way;
    for (; noteOf(all, folder).id == WatchTree::NONE; folder = noteOf(all, folder).parent)
        way.push_back(folder);
    for (auto next = way.rbegin(); next != way.rend(); ++next) {
        Note &note = noteOf(all, *next);
        const WatchTree::Id parent = noteOf(all, note.parent).id;
        const std::string_view name(all[bookOf(*next)].names.at(note.name), note.nameLength);
        const WatchTree::Id id = parent == OUT ? WatchTree::NONE : enter(parent, name, note);
        note.id = id == WatchTree::NONE ? OUT : id;
    }
}

} // namespace quillon
