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
    /// The most matches that a query asks for, since an answer travels as one message.
    static constexpr std::uint32_t MOST = 10'000;

    /// The absolute path of the settings file that says what is searched.
    std::string settings;
    std::string text;
    std::uint32_t limit = 0;
    /// As an order, asks for the paths with the most uses instead, whatever the text.
    static constexpr const char *MOST_USED = "uses";

    /// Names the order of the matches, as the settings do; empty for the one in the settings.
    std::string order;
    /// Asks for further matches with the words in any order.
    bool words = false;
};

/// One match, as in FuzzyMatchResult.
struct RemoteMatch
{
    /// The bytes are not necessarily UTF-8.
    std::string path;
    double score = 0;
    /// Each range to mark has a location and a length, in characters.
    std::vector<std::pair<std::int64_t, std::int64_t>> ranges;

    friend bool operator==(const RemoteMatch &, const RemoteMatch &) = default;
};

/// The best match comes first. The answer is absent when the process that was asked cannot answer
/// for these settings now.
using RemoteAnswer = std::optional<std::vector<RemoteMatch>>;

} // namespace quillon
