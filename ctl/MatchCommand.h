#pragma once

#include "ctl/MatchPrinter.h"
#include "matching/MatchOrder.h"

#include <cstddef>
#include <string>

namespace quillon {

class Output;

/// Ranks the paths on standard input.
struct MatchCommand
{
    std::string query;
    std::size_t top = 25;
    MatchOrder order = MatchOrder::path;
    /// If true, further matches have the words in any order.
    bool inAnyOrder = false;
    /// A JSON file that maps paths to use counts; empty for none.
    std::string countsFile;
    std::size_t repeat = 1;
    MatchFormat format;
    bool stats = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
