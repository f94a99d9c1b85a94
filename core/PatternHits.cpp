#include "core/PatternHits.h"

#include "indexing/SkipRules.h"
#include "matching/PathIndex.h"

namespace quillon {

namespace {

constexpr std::size_t EXAMPLES = 3;
/// The number of nodes between two checks whether others want the index.
constexpr unsigned SLICE = 1024;

struct Step
{
    PathTree::NodeId node = PathTree::NONE;
    /// The state of the skip rules for the path above the node.
    SkipRules::State above;
    bool isAboveSkipped = false;
};

/// Visits the paths of the tree that are still there.
class Visitor
{
public:
    Visitor(const PathTree &tree, const SkipRules &rules, PatternHits &result)
        : tree_(tree), rules_(rules), result_(result)
    {}

    void visit(const Step &step, std::vector<Step> &next)
    {
        const PathTree::Node &node = tree_.node(step.node);
        const bool isFirst = node.parent == PathTree::ROOT;
        SkipRules::State state =
            isFirst ? rules_.stateOf(tree_.name(node)) : rules_.below(step.above, tree_.name(node));
        const bool isSkipped = rules_.skipsPath(state, [&] { return tree_.text(step.node); });
        if ((node.flags & PathTree::STORED) != 0) {
            ++result_.paths;
            result_.hits += isSkipped ? 1 : 0;
            if (isSkipped && !step.isAboveSkipped && result_.examples.size() < EXAMPLES)
                result_.examples.push_back(tree_.text(step.node));
        }
        // The child is visited first, so that memory is read in the order of the crawl.
        if (node.nextSibling != PathTree::NONE)
            next.push_back({node.nextSibling, step.above, step.isAboveSkipped});
        if (node.hasChildren())
            next.push_back({tree_.firstChild(node), state, isSkipped});
    }

private:
    const PathTree &tree_;
    const SkipRules &rules_;
    PatternHits &result_;
};

} // namespace

PatternHits patternHits(const PathIndex &index, const std::string &pattern,
                        const std::vector<std::string> &includeFolders, const std::stop_token &stop)
{
    const SkipRules rules({pattern}, includeFolders);
    PatternHits result;
    const ReadingIndex reading(index.lock);
    const PathTree &tree = index.tree;
    const std::uint64_t generation = tree.generation();
    tree.pin();
    Visitor visitor(tree, rules, result);
    std::vector<Step> next;
    if (const PathTree::NodeId first = tree.firstChild(PathTree::ROOT))
        next.push_back({first, {}, false});
    for (unsigned visited = 0; !next.empty() && !stop.stop_requested(); ++visited) {
        if (visited % SLICE == 0 && index.lock.isWriterWaiting()) {
            index.lock.yieldShared();
            if (tree.generation() != generation)
                break;
        }
        const Step step = next.back();
        next.pop_back();
        visitor.visit(step, next);
    }
    tree.unpin();
    result.isEverything = result.hits > 0 && result.hits + includeFolders.size() >= result.paths;
    return result;
}

} // namespace quillon
