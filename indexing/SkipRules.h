#pragma once

#include "indexing/NameKinds.h"

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The rules that keep folders out of the index, prepared for fast tests. They never change. Safe
/// from every thread.
///
/// A hidden folder is left out unless it is below a folder for which the user wants hidden folders.
///
/// A folder is skipped when its name equals a pattern or when a pattern occurs in its path. Only
/// the first such pattern decides. If the path of an include folder contains that pattern too, the
/// first such include folder makes an exception: paths that contain its path are kept. What a path
/// says about the paths below it is carried down in a State, so that a crawl looks at each name
/// once.
class SkipRules
{
public:
    /// Skips nothing.
    SkipRules() : SkipRules({}, {}) {}
    /// The first two lists are in the order in which they are tried. Paths are compared as they are
    /// written. Hidden folders below those of the last list are not left out.
    SkipRules(const std::vector<std::string> &patterns, std::vector<std::string> includeFolders,
              std::vector<std::string> withHidden = {});

    /// Holds what the path of a folder says about the folder.
    struct State
    {
        std::uint32_t node = 0;
        /// The number of the first pattern that occurs in the path, or NONE.
        std::uint32_t pattern = NONE;
        /// True when the include folder that overrides this pattern is known to occur in the path.
        bool overridden = false;
        /// True when hidden folders in the folder are wanted.
        bool showsHidden = false;
    };

    /// Returns the state of a folder by its absolute path; "/" may be empty.
    State stateOf(std::string_view path) const
    {
        return advance({ROOT, nodes_[ROOT].best, false, isWithHidden(path)}, path);
    }
    /// Returns the state of path + "/" + name, given the state of the path.
    State below(State folder, std::string_view name) const
    {
        return advance(advance(folder, "/"), name);
    }

    /// Returns whether an item is left out since it is hidden, given the state of the folder that
    /// it is in.
    static bool hides(State folder, std::string_view name, bool isFolder)
    {
        return isHiddenName(name) && !(isFolder && folder.showsHidden);
    }
    /// Returns whether the folder is skipped by its name or path. path() returns its whole path and
    /// is called only when that is needed. state is the folder's state and is updated with the
    /// answer.
    template <typename PathOf>
    bool skips(State &state, std::string_view name, const PathOf &path) const
    {
        if (!state.showsHidden && namesWithHidden_.contains(name))
            state.showsHidden = isWithHidden(path());
        return isPattern(name) || (anyWithSlash_ && skipsPath(state, path));
    }
    /// Returns whether a folder is skipped because of its path, whatever its name.
    template <typename PathOf>
    bool skipsPath(State &state, const PathOf &path) const
    {
        if (state.pattern == NONE || state.overridden)
            return false;
        const std::string *folder = overridingFolder(state.pattern);
        if (folder != nullptr)
            state.overridden = std::string_view(path()).find(*folder) != std::string_view::npos;
        return !state.overridden;
    }

private:
    static constexpr std::uint32_t NONE = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::uint32_t ROOT = 0;

    /// A node of the automaton over all patterns. The text read so far ends in the node's text, and
    /// in no longer beginning of a pattern.
    struct Node
    {
        std::uint32_t firstChild = NONE;
        std::uint32_t nextSibling = NONE;
        /// The node of the longest shorter ending.
        std::uint32_t fallback = ROOT;
        /// The first pattern that the node's text ends in.
        std::uint32_t best = NONE;
        char byte = 0;
    };

    State advance(State state, std::string_view text) const;
    std::uint32_t child(std::uint32_t node, char byte) const;
    std::uint32_t next(std::uint32_t node, char byte) const;
    void insert(std::string_view pattern, std::uint32_t number);
    void link();
    bool isPattern(std::string_view name) const { return patterns_.contains(name); }
    const std::string *overridingFolder(std::uint32_t pattern) const;
    bool isWithHidden(std::string_view path) const;

    std::vector<Node> nodes_;
    /// The node that follows the empty text, for each byte.
    std::array<std::uint32_t, 256> start_ = {};
    std::vector<std::string> includeFolders_;
    /// The number of the include folder that overrides each pattern, or NONE.
    std::vector<std::uint32_t> overriding_;
    std::set<std::string, std::less<>> patterns_;
    bool anyWithSlash_ = false;
    std::vector<std::string> withHidden_;
    /// The last components of these paths.
    std::set<std::string, std::less<>> namesWithHidden_;
};

} // namespace quillon
