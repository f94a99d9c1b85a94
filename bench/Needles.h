#pragma once

#include <string_view>
#include <vector>

namespace quillon::bench {

/// A query and what is notable about it.
struct Needle
{
    std::string_view query;
    std::string_view kind;
};

/// Returns the queries that every measurement of the matcher uses, each one once.
const std::vector<Needle> &needles();

} // namespace quillon::bench
