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

/// Returns the queries for which words in any order are measured, each one once.
const std::vector<Needle> &wordNeedles();

} // namespace quillon::bench
