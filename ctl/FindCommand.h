#pragma once

#include "matching/FuzzyMatchResult.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Prints what matches a query, best first, from the index of the running application or from
/// folders that are crawled now.
struct FindCommand
{
    /// The words of the query, which are joined by blanks.
    std::vector<std::string> words;
    /// The folders to crawl, as typed. With none, the running application is asked, else the
    /// folders of the settings or the home folder are crawled.
    std::vector<std::string> folders;
    std::size_t top = 25;
    bool nulSeparated = false;
    bool json = false;

    /// Returns the exit status.
    int run(Output &output) const;

private:
    std::string query() const;
    /// Absent when no running application can answer.
    std::optional<std::vector<FuzzyMatchResult>> askRunningInstance() const;
    /// Sets failed when a folder could not be read.
    std::vector<FuzzyMatchResult> crawlAndSearch(bool &failed) const;
};

} // namespace quillon
