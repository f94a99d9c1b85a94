#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Prints everything that an index of some folders would hold.
struct CrawlCommand
{
    /// The folders to crawl, as the user typed them.
    std::vector<std::string> folders;
    std::vector<std::string> excludes;
    bool noDefaultExcludes = false;
    bool noBuiltInExcludes = false;
    std::vector<std::string> extensions;
    /// If true, hidden folders are crawled too.
    bool withHidden = false;
    std::size_t threads = 2;
    bool nulSeparated = false;
    bool stats = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
