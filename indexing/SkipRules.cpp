#include "indexing/SkipRules.h"

#include "base/PathText.h"

#include <algorithm>
#include <utility>

// The automaton is that of Aho and Corasick: a tree of all patterns in which every node also knows
// the longest ending of its text that begins a pattern. Of the patterns that end at a place, only
// the first in order matters, so a node keeps only that one, taking its shorter endings into
// account.

namespace quillon {

SkipRules::SkipRules(const std::vector<std::string> &patterns,
                     std::vector<std::string> includeFolders, std::vector<std::string> withHidden)
    : nodes_(1),
      includeFolders_(std::move(includeFolders)),
      patterns_(patterns.begin(), patterns.end()),
      withHidden_(std::move(withHidden))
{
    for (const std::string &folder : withHidden_)
        namesWithHidden_.emplace(lastComponent(folder));
    for (std::uint32_t number = 0; number < patterns.size(); ++number) {
        const std::string &pattern = patterns[number];
        insert(pattern, number);
        const auto folder = std::ranges::find_if(includeFolders_, [&](const std::string &path) {
            return path.find(pattern) != std::string::npos;
        });
        overriding_.push_back(folder == includeFolders_.end()
                                  ? NONE
                                  : static_cast<std::uint32_t>(folder - includeFolders_.begin()));
        anyWithSlash_ = anyWithSlash_ || pattern.find('/') != std::string::npos;
    }
    link();
}

std::uint32_t SkipRules::child(std::uint32_t node, char byte) const
{
    std::uint32_t found = nodes_[node].firstChild;
    while (found != NONE && nodes_[found].byte != byte)
        found = nodes_[found].nextSibling;
    return found;
}

void SkipRules::insert(std::string_view pattern, std::uint32_t number)
{
    std::uint32_t node = ROOT;
    for (const char byte : pattern) {
        std::uint32_t below = child(node, byte);
        if (below == NONE) {
            below = static_cast<std::uint32_t>(nodes_.size());
            nodes_.push_back({.nextSibling = nodes_[node].firstChild, .byte = byte});
            nodes_[node].firstChild = below;
        }
        node = below;
    }
    nodes_[node].best = std::min(nodes_[node].best, number);
}

/// Gives every node its fallback, shorter texts first, since a fallback is always shorter.
void SkipRules::link()
{
    std::vector<std::uint32_t> order{ROOT};
    for (std::size_t at = 0; at < order.size(); ++at) {
        const std::uint32_t parent = order[at];
        for (std::uint32_t node = nodes_[parent].firstChild; node != NONE;
             node = nodes_[node].nextSibling) {
            order.push_back(node);
            if (parent == ROOT)
                start_[static_cast<unsigned char>(nodes_[node].byte)] = node;
        }
    }
    for (const std::uint32_t parent : order) {
        for (std::uint32_t node = nodes_[parent].firstChild; node != NONE;
             node = nodes_[node].nextSibling) {
            if (parent != ROOT)
                nodes_[node].fallback = next(nodes_[parent].fallback, nodes_[node].byte);
            nodes_[node].best = std::min(nodes_[node].best, nodes_[nodes_[node].fallback].best);
        }
    }
}

std::uint32_t SkipRules::next(std::uint32_t node, char byte) const
{
    while (node != ROOT) {
        const std::uint32_t below = child(node, byte);
        if (below != NONE)
            return below;
        node = nodes_[node].fallback;
    }
    return start_[static_cast<unsigned char>(byte)];
}

SkipRules::State SkipRules::advance(State state, std::string_view text) const
{
    for (const char byte : text) {
        state.node = next(state.node, byte);
        const std::uint32_t best = nodes_[state.node].best;
        if (best < state.pattern) {
            state.pattern = best;
            state.overridden = false;
        }
    }
    return state;
}

const std::string *SkipRules::overridingFolder(std::uint32_t pattern) const
{
    const std::uint32_t folder = overriding_[pattern];
    return folder == NONE ? nullptr : &includeFolders_[folder];
}

bool SkipRules::isWithHidden(std::string_view path) const
{
    return std::ranges::any_of(withHidden_, [path](const std::string &folder) {
        return isAtOrBelow(path.empty() ? "/" : path, folder);
    });
}

} // namespace quillon
