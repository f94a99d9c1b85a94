#include "core/IndexKeeper.h"

#include "base/PathText.h"
#include "core/HeldNodes.h"
#include "platform/CacheFile.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>

// How the index outlives the program
//
// A build leaves a mark for each folder that it has listed: a number made of the folder's identity
// and its change time. The file holds the tree and these marks. At the next start the tree answers
// at once, and the build becomes a crawl that compares: a folder that still has its mark is not
// read, since it holds what the tree says, and is opened only for the sake of folders in it.
// Everything else is read and brought up to date as after any other change of the disk.
//
// When the file is written anew after the watcher has reported changes, the marks of the former
// file serve again for the folders that hold the same as then. The others have no mark, so that the
// next start reads them.

namespace quillon {

namespace {

/// How many children a folder has in the file, and how many of them are still in the index.
struct Children
{
    std::uint32_t kept = 0;
    std::uint32_t stillThere = 0;
};

} // namespace

std::optional<KeptTree> IndexKeeper::read(const CacheFile &file)
{
    const auto bytes = file.read();
    auto basis = bytes ? KeptIndex::basis(*bytes) : std::nullopt;
    if (!basis)
        return std::nullopt;
    KeptTree kept{.basis = std::move(*basis),
                  .head = headOf(*bytes),
                  .tree = std::make_unique<PathTree>(),
                  .marks = {}};
    const auto enter = [&](PathTree::NodeId parent, const KeptIndex::Component &component) {
        const auto node = kept.tree->appendNew(parent, component.name, component.flags);
        kept.marks.set(node, component.mark);
        return node;
    };
    if (!KeptIndex::read(*bytes, enter))
        return std::nullopt;
    kept.tree->endAppending();
    return kept;
}

bool IndexKeeper::restore(std::optional<KeptTree> kept, const std::vector<std::string> &settings,
                          const std::stop_token &isReset)
{
    if (!kept || kept->basis.settings != settings)
        return false;
    const WritingIndex writing(index_.lock);
    if (isReset.stop_requested() || index_.tree.isHeld())
        return false;
    index_.tree.replaceBy(*kept->tree);
    restored_ = {.marks = std::move(kept->marks), .generation = index_.tree.generation()};
    restoredBasis_ = std::move(kept->basis);
    head_ = std::move(kept->head);
    return true;
}

bool IndexKeeper::begin(IndexBasis basis, std::int64_t now, const ExtensionSet &files)
{
    const auto restoredBasis = std::exchange(restoredBasis_, std::nullopt);
    Marked restored = std::exchange(restored_, {});
    const bool isThere = restoredBasis && restored.generation == generation();
    const bool isSame = isThere && restoredBasis == basis && completeRestored();
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

void IndexKeeper::addAway(const std::vector<std::string> &folders,
                          const std::vector<std::string> &patterns, const std::stop_token &isReset)
{
    const auto bytes = file_.read();
    const auto basis = bytes ? KeptIndex::basis(*bytes) : std::nullopt;
    if (!basis || basis->settings.size() < patterns.size() ||
        !std::equal(patterns.begin(), patterns.end(), basis->settings.begin()))
        return;
    const HeldNodes held(index_);
    // The nodes above the folders, each with its text.
    std::unordered_map<PathTree::NodeId, std::string> above{{PathTree::ROOT, ""}};
    const auto enter = [&](PathTree::NodeId parent,
                           const KeptIndex::Component &component) -> PathTree::NodeId {
        const auto parentText = above.find(parent);
        bool isAbove = false;
        std::string text;
        if (parentText != above.end()) {
            text = parent == PathTree::ROOT
                       ? std::string(component.name)
                       : parentText->second + "/" + std::string(component.name);
            isAbove = std::ranges::none_of(
                folders, [&](const std::string &folder) { return isAtOrBelow(text, folder); });
            if (isAbove && std::ranges::none_of(folders, [&](const std::string &folder) {
                    return isBelow(folder, text);
                }))
                return PathTree::NONE;
        }
        const WritingIndex writing(index_.lock);
        if (isReset.stop_requested())
            return PathTree::NONE;
        const PathTree::Flags kept = isAbove ? PathTree::Flags{0} : PathTree::CANDIDATE;
        const auto node = index_.tree.insertChild(
            parent, component.name, static_cast<PathTree::Flags>(component.flags & kept));
        if (isAbove)
            above.emplace(node, std::move(text));
        return node;
    };
    KeptIndex::read(*bytes, enter);
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

/// Makes the table of children, which searches do without. Returns false where the tree cannot have
/// one.
bool IndexKeeper::completeRestored()
{
    std::optional<IdTable> table;
    std::uint64_t changes = 0;
    {
        const ReadingIndex reading(index_.lock);
        table = index_.tree.childTable();
        changes = index_.tree.changes();
    }
    const WritingIndex writing(index_.lock);
    if (index_.tree.changes() != changes)
        table = index_.tree.childTable();
    if (table)
        index_.tree.useTable(std::move(*table));
    return table.has_value();
}

/// Finds the nodes that the marks in the file belong to. A folder that holds something else by now
/// has lost its mark.
FolderMarks IndexKeeper::keptMarks()
{
    const auto bytes = file_.read();
    const auto basis = bytes ? KeptIndex::basis(*bytes) : std::nullopt;
    if (basis != basis_)
        return {};
    const HeldNodes held(index_);
    const ReadingIndex reading(index_.lock);
    FolderMarks marks;
    std::vector<Children> children(index_.tree.ids());
    std::size_t seen = 0;
    const auto enter = [&](PathTree::NodeId parent,
                           const KeptIndex::Component &component) NO_THREAD_SAFETY_ANALYSIS {
        if (++seen % PathIndex::SLICE == 0 && index_.lock.isWriterWaiting())
            index_.lock.yieldShared();
        const auto node = index_.tree.findChild(parent, component.name);
        if (parent < children.size() && (component.flags & PathTree::STORED) != 0) {
            ++children[parent].kept;
            children[parent].stillThere += index_.tree.isStored(node) ? 1U : 0U;
        }
        if (node != PathTree::NONE)
            marks.set(node, component.mark);
        return node;
    };
    KeptIndex::read(*bytes, enter);
    for (PathTree::NodeId node = 0; node < children.size(); ++node) {
        if (node % PathIndex::SLICE == 0 && index_.lock.isWriterWaiting())
            index_.lock.yieldShared();
        // A reset leaves no node of these numbers.
        if (isReset_.stop_requested())
            return {};
        if (marks.at(node) <= FolderMarks::FOLDER)
            continue;
        std::uint32_t now = 0;
        for (auto child = index_.tree.firstChild(node); child != PathTree::NONE;
             child = index_.tree.node(child).nextSibling)
            now += index_.tree.isStored(child) ? 1U : 0U;
        if (children[node].kept != now || children[node].stillThere != now)
            marks.set(node, FolderMarks::UNKNOWN);
    }
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
