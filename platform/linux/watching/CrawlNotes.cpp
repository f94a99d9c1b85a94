#include "platform/linux/watching/CrawlNotes.h"

#include "base/Require.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillon {

namespace {

using Id = WatchTree::Id;

/// The place of a folder that is not wanted.
constexpr Id OUT = std::numeric_limits<Id>::max();

/// Numbers the threads, so that those of one crawl write to different books.
std::size_t ownNumber()
{
    static std::atomic<std::size_t> next = 0;
    thread_local const std::size_t number = next++;
    return number;
}

} // namespace

// Writing

CrawlRecord::Folder CrawlNotes::enteredRoot(const std::string &path, const FolderStamp &stamp)
{
    CrawledFolder root;
    root.stamp = stamp;
    {
        const MutexLock lock(mutex_);
        root.name = static_cast<NameArena::Offset>(rootPaths_.size());
        rootPaths_.push_back(path);
    }
    return write(root, {});
}

CrawlRecord::Folder CrawlNotes::entered(Folder parent, std::string_view name,
                                        const FolderStamp &stamp)
{
    if (parent == 0)
        return 0;
    CrawledFolder folder;
    folder.parent = parent;
    folder.stamp = stamp;
    return write(folder, name);
}

/// The name is empty for a root.
CrawlRecord::Folder CrawlNotes::write(const CrawledFolder &folder, std::string_view name)
{
    const std::size_t number = ownNumber() % CrawledTree::BOOKS;
    Book &book = books_[number];
    const MutexLock lock(book.mutex);
    if (isClosed_)
        return 0;
    std::deque<CrawledFolder> &folders = book.pages.folders;
    folders.push_back(folder);
    if (!name.empty()) {
        folders.back().name = book.pages.names.store(name);
        folders.back().nameLength = static_cast<std::uint16_t>(name.size());
    }
    require(folders.size() >> CrawledTree::INDEX_BITS == 0, "a crawl has fewer folders");
    return static_cast<Folder>(number << CrawledTree::INDEX_BITS | folders.size());
}

void CrawlNotes::listed(Folder folder, std::uint64_t items)
{
    if (folder == 0)
        return;
    Book &book = books_[CrawledTree::bookOf(folder)];
    const MutexLock lock(book.mutex);
    const std::size_t index = CrawledTree::indexOf(folder);
    if (index < book.pages.folders.size())
        book.pages.folders[index].items = items;
}

void CrawlNotes::notListed(Folder folder)
{
    notEntered(folder, {});
}

void CrawlNotes::notEntered(Folder parent, std::string_view name)
{
    const MutexLock lock(mutex_);
    if (parent != 0 && !isClosed_)
        missed_.emplace_back(parent, name);
}

std::shared_ptr<const CrawledTree> CrawlNotes::take()
{
    if (isClosed_.exchange(true))
        return nullptr;
    auto tree = std::make_shared<CrawledTree>();
    tree->beganAt_ = beganAt_;
    for (std::size_t i = 0; i < books_.size(); ++i) {
        const MutexLock lock(books_[i].mutex);
        tree->books_[i] = std::exchange(books_[i].pages, {});
    }
    const MutexLock lock(mutex_);
    tree->rootPaths_ = std::exchange(rootPaths_, {});
    tree->missed_ = std::exchange(missed_, {});
    return tree;
}

// Reading

std::string_view CrawledTree::nameOf(Folder folder) const
{
    const CrawledFolder &crawled = at(folder);
    if (crawled.parent == 0)
        return rootPaths_[crawled.name];
    return {books_[bookOf(folder)].names.at(crawled.name), crawled.nameLength};
}

std::string CrawledTree::pathOf(Folder folder) const
{
    std::vector<std::string_view> names;
    for (; folder != 0; folder = at(folder).parent)
        names.push_back(nameOf(folder));
    std::string path(names.back());
    for (auto name = names.rbegin() + 1; name != names.rend(); ++name)
        path.append(path.ends_with('/') ? "" : "/").append(*name);
    return path;
}

/// Gives the folders their places, each after the folder above it, which may be in another book.
class CrawledTree::Visit
{
public:
    Visit(const CrawledTree &tree, const std::vector<std::string> &roots, const Enter &enter)
        : tree_(tree), roots_(roots), enter_(enter)
    {
        for (std::size_t i = 0; i < BOOKS; ++i)
            places_[i].resize(tree.books_[i].folders.size(), WatchTree::NONE);
    }

    Id &place(Folder folder) { return places_[bookOf(folder)][indexOf(folder)]; }
    /// A tree may be deeper than the stack, so this does not call itself.
    void enter(Folder folder)
    {
        std::vector<Folder> way;
        for (; folder != 0 && place(folder) == WatchTree::NONE; folder = tree_.at(folder).parent)
            way.push_back(folder);
        for (auto next = way.rbegin(); next != way.rend(); ++next) {
            const Id id = enterOne(*next);
            place(*next) = id == WatchTree::NONE ? OUT : id;
        }
    }

private:
    Id enterOne(Folder folder)
    {
        const CrawledFolder &crawled = tree_.at(folder);
        const std::string_view name = tree_.nameOf(folder);
        if (crawled.parent != 0 && place(crawled.parent) != OUT)
            return enter_(place(crawled.parent), name, crawled);
        const auto isWanted = [&](const std::string &root) {
            return root.ends_with(name) && root == tree_.pathOf(folder);
        };
        const auto root = std::ranges::find_if(roots_, isWanted);
        return root == roots_.end() ? WatchTree::NONE : enter_(WatchTree::NONE, *root, crawled);
    }

    const CrawledTree &tree_;
    const std::vector<std::string> &roots_;
    const Enter &enter_;
    std::array<std::vector<Id>, BOOKS> places_;
};

void CrawledTree::visit(const std::vector<std::string> &roots, const Enter &enter,
                        const Missed &missed) const
{
    Visit visit(*this, roots, enter);
    for (std::size_t book = 0; book < BOOKS; ++book)
        for (std::size_t i = 0; i < books_[book].folders.size(); ++i)
            visit.enter(static_cast<Folder>(book << INDEX_BITS | (i + 1)));
    for (const auto &[folder, name] : missed_)
        if (visit.place(folder) != OUT)
            missed(visit.place(folder), name);
}

} // namespace quillon
