// Judges any path by any patterns. The rules must answer as the plain rule does, for whole paths
// and step by step.

#include "base/Require.h"
#include "indexing/SkipRules.h"
#include "tests/indexing/CrawlSupport.h"

#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quillon;
    // The lines are patterns, but for those that begin with "=" and "+": these are include folders,
    // the latter with hidden folders. The last line is the path to judge.
    PlainSkipRule plain;
    std::string line;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] != '\n') {
            line += static_cast<char>(data[i]);
            continue;
        }
        if (line.starts_with('=') || line.starts_with('+')) {
            plain.includeFolders.push_back("/" + line.substr(1));
            if (line.starts_with('+'))
                plain.withHidden.push_back(plain.includeFolders.back());
        } else if (!line.empty()) {
            plain.patterns.push_back(line);
        }
        line.clear();
    }
    const SkipRules rules(plain.patterns, plain.includeFolders, plain.withHidden);
    SkipRules::State folder = rules.stateOf("");
    std::string path;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = std::min(line.find('/', at), line.size());
        const std::string name = line.substr(at, end - at);
        at = end + 1;
        if (name.empty())
            continue;
        path += "/" + name;
        const auto pathOf = [&] { return path; };
        SkipRules::State state = rules.below(folder, name);
        SkipRules::State whole = rules.stateOf(path);
        require(rules.skipsPath(whole, pathOf) == plain.skipsPath(path), "a path is judged alike");
        whole = rules.stateOf(path);
        require(rules.skips(whole, name, pathOf) == plain.skips(path, name),
                "a folder is judged alike by its path");
        require(rules.skips(state, name, pathOf) == plain.skips(path, name),
                "a folder is judged alike below its parent");
        require(state.showsHidden == plain.showsHidden(path), "hidden folders are wanted alike");
        folder = state;
    }
    return 0;
}
