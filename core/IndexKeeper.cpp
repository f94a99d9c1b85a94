#include "core/IndexKeeper.h"

#include "core/HeldNodes.h"
#include "platform/CacheFile.h"

#include <memory>
#include <utility>

// How the index outlives the program
//
// A build leaves a mark for each folder that it has listed: a number made of the folder's identity
// and its change time. The file holds the tree and these marks. At the next start the tree answers
// at once, and the build becomes a crawl that compares: a folder that has its mark still is opened
// but not read, since it holds what the tree says. Everything else is read and brought up to date
// as after any other change of the disk.
//
// A mark may be older than what the tree holds of its folder, never newer. So the marks of the file
// serve again when the file is written anew after the watcher has reported changes: the folders
// that have changed have another change time by now and will be read.

namespace quillon {

bool IndexKeeper::restore(const std::vector<std::string> &settings, const std::stop_token &isReset)
{
    const auto bytes = file_.read();
    auto basis = bytes ? KeptIndex::basis(*bytes) : std::nullopt;
    if (!basis || basis->settings != settings)
        return false;
    const auto tree = std::make_unique<PathTree>();
    Marked restored;
    const auto enter = [&](PathTree::NodeId parent, const KeptIndex::Component &component) {
        const auto node = tree->appendNew(parent, component.name, component.flags);
        restored.marks.set(node, component.mark);
        return node;
    };
    if (!KeptIndex::read(*bytes, enter) || !tree->makeFindable())
        return false;
    const WritingIndex writing(index_.lock);
    if (isReset.stop_requested() || index_.tree.isHeld())
        return false;
    index_.tree.replaceBy(*tree);
    restored.generation = index_.tree.generation();
    restored_ = std::move(restored);
    restoredBasis_ = std::move(basis);
    head_ = headOf(*bytes);
    return true;
}

bool IndexKeeper::begin(IndexBasis basis, std::int64_t now, const ExtensionSet &files)
{
    const auto restoredBasis = std::exchange(restoredBasis_, std::nullopt);
    Marked restored = std::exchange(restored_, {});
    const bool isThere = restoredBasis && restored.generation == generation();
    const bool isSame = isThere && restoredBasis == basis;
    if (isThere && !isSame) {
        const WritingIndex writing(index_.lock);
        index_.tree.clear();
    }
    basis_ = std::move(basis);
    crawled_.reset();
    isWhole_ = false;
    marks_.emplace(now, files, isSame ? std::move(restored.marks) : FolderMarks());
    return isSame;
}

void IndexKeeper::end(std::stop_token isReset)
{
    isReset_ = std::move(isReset);
    crawled_ = {.marks = marks_->take(), .generation = generation()};
    marks_.reset();
    isWhole_ = true;
}

std::error_code IndexKeeper::keep()
{
    if (!isWhole_ || isReset_.stop_requested())
        return {};
    const auto crawled = std::exchange(crawled_, std::nullopt);
    const FolderMarks marks =
        crawled && crawled->generation == generation() ? crawled->marks : keptMarks();
    const auto bytes = KeptIndex::write(index_, *basis_, marks, isReset_);
    if (!bytes)
        return {};
    if (headOf(*bytes) == head_) {
        file_.confirm();
        return {};
    }
    const std::error_code error = file_.write(*bytes);
    head_ = error ? std::string() : headOf(*bytes);
    return error;
}

/// Finds the nodes that the marks in the file belong to.
FolderMarks IndexKeeper::keptMarks()
{
    FolderMarks marks;
    const auto bytes = file_.read();
    const auto basis = bytes ? KeptIndex::basis(*bytes) : std::nullopt;
    if (basis != basis_)
        return marks;
    const HeldNodes held(index_);
    const ReadingIndex reading(index_.lock);
    std::size_t seen = 0;
    const auto enter = [&](PathTree::NodeId parent, const KeptIndex::Component &component)
                           NO_THREAD_SAFETY_ANALYSIS {
                               if (++seen % PathIndex::SLICE == 0 && index_.lock.isWriterWaiting())
                                   index_.lock.yieldShared();
                               const auto node = index_.tree.findChild(parent, component.name);
                               if (node != PathTree::NONE)
                                   marks.set(node, component.mark);
                               return node;
                           };
    KeptIndex::read(*bytes, enter);
    return marks;
}

std::uint64_t IndexKeeper::generation() const
{
    const ReadingIndex reading(index_.lock);
    return index_.tree.generation();
}

std::string IndexKeeper::headOf(std::string_view bytes)
{
    return std::string(bytes.substr(0, KeptIndex::HEAD_SIZE));
}

} // namespace quillon
