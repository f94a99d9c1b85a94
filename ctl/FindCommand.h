#pragma once

#include "ctl/MatchPrinter.h"
#include "matching/FuzzyMatchResult.h"
#include "platform/RemoteSearch.h"

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
    /// The folders to crawl, as the user typed them. If there are none, the answer comes from the
    /// running application, else from the index that it kept, else from a crawl of the folders in
    /// the settings or of the home folder.
    std::vector<std::string> folders;
    /// If true, hidden folders below them are crawled too.
    bool withHidden = false;
    /// If true, neither the application nor the kept index is asked.
    bool crawl = false;
    /// If true, standard error says where the answer comes from.
    bool stats = false;
    std::size_t top = 25;
    /// Names the order of the matches. Empty, the running application's settings say it, or those
    /// on the disk.
    std::string order;
    /// If true, further matches have the words in any order.
    bool inAnyOrder = true;
    MatchFormat format;

    /// Returns the exit status.
    int run(Output &output) const;

private:
    /// Returns nothing when no running application can answer.
    std::optional<std::vector<FuzzyMatchResult>> askRunningInstance() const;
    /// Answers from the kept index or from the disk. Sets failed when a folder could not be read.
    std::vector<FuzzyMatchResult> searchAlone(bool &failed) const;
    void tellSource(const std::string &source) const;
};

/// Returns the words as one query, joined by blanks.
std::string joinedWords(const std::vector<std::string> &words);
/// Returns the answer of the running application as it is here.
std::vector<FuzzyMatchResult> resultsOf(const std::vector<RemoteMatch> &matches);

} // namespace quillon
