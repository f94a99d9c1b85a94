// Searches any texts for any query. The tree must rank as the plain rule does, bit for bit, also
// after some of the texts were removed again.

#include "base/Require.h"
#include "matching/FuzzyMatch.h"
#include "matching/FuzzyScore.h"

#include <algorithm>
#include <bit>
#include <set>
#include <string>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quillon;
    // The lines are the query and then the texts. A line that begins with "\1" removes the rest of
    // itself.
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += static_cast<char>(data[i]);
    }
    FuzzyMatch match;
    std::set<std::string> texts;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (lines[i].starts_with('\1')) {
            match.remove(lines[i].substr(1));
            texts.erase(lines[i].substr(1));
        } else {
            match.add(lines[i]);
            texts.insert(lines[i]);
        }
    }
    const std::string &query = lines.front();
    const std::size_t top = 1 + size % 7;
    std::vector<std::pair<double, std::string>> expected;
    for (const std::string &text : texts) {
        if (isSubsequence(query, text))
            expected.emplace_back(fuzzyScore(query, text), text);
    }
    std::ranges::stable_sort(expected,
                             [](const auto &a, const auto &b) { return a.first > b.first; });
    expected.resize(std::min(expected.size(), top));

    const std::vector<FuzzyMatchResult> actual = match.match(query, top);
    require(match.count() == texts.size(), "the tree holds what was added and not removed");
    require(actual.size() == expected.size(), "the tree finds as many texts as the plain rule");
    for (std::size_t i = 0; i < actual.size(); ++i) {
        require(actual[i].text() == expected[i].second, "the tree ranks as the plain rule does");
        require(std::bit_cast<std::uint64_t>(actual[i].score()) ==
                    std::bit_cast<std::uint64_t>(expected[i].first),
                "the tree scores as the plain rule does");
    }
    return 0;
}
