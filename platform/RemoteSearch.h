#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// A search that one process asks of another.
struct RemoteQuery
{
    /// More is not asked for at once: an answer travels as one message.
    static constexpr std::uint32_t MOST = 10'000;

    /// The file whose settings say what is searched, as an absolute path.
    std::string settings;
    std::string text;
    std::uint32_t limit = 0;
};

/// One match, as FuzzyMatchResult describes it.
struct RemoteMatch
{
    /// Bytes, not necessarily UTF-8.
    std::string path;
    double score = 0;
    /// Location and length of each range to mark, in characters.
    std::vector<std::pair<std::int64_t, std::int64_t>> ranges;

    friend bool operator==(const RemoteMatch &, const RemoteMatch &) = default;
};

/// Best first; absent when the process asked cannot answer for these settings now.
using RemoteAnswer = std::optional<std::vector<RemoteMatch>>;

} // namespace quillon
