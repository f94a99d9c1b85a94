#pragma once

#include "matching/FuzzyMatchResult.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Prints what matches a query, best first, from the index of the running application, from the one
/// that it kept when it last ran, or from folders that are crawled now.
struct FindCommand
{
    /// The words of the query, which are joined by blanks.
    std::vector<std::string> words;
    /// The folders to crawl, as typed. With none, the running application is asked, else the index
    /// that it kept, else the folders of the settings or the home folder are crawled.
    std::vector<std::string> folders;
    /// Neither the application nor the kept index is asked.
    bool crawl = false;
    /// Where the answer comes from is said on standard error.
    bool stats = false;
    std::size_t top = 25;
    bool nulSeparated = false;
    bool json = false;

    /// Returns the exit status.
    int run(Output &output) const;

private:
    std::string query() const;
    /// The result is absent when no running application can answer.
    std::optional<std::vector<FuzzyMatchResult>> askRunningInstance() const;
    /// Answers from the kept index or from the disk. Sets failed when a folder could not be read.
    std::vector<FuzzyMatchResult> searchAlone(bool &failed) const;
    void tellSource(const std::string &source) const;
};

} // namespace quillon
