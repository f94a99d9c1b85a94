#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::bench {

/// Folder paths as a busy home folder and its packages hold them: the same ones for the same count,
/// on every machine, in the order of a crawl. 65 to 80 bytes on average.
std::vector<std::string> makeCorpus(std::size_t count);

/// A query and what is notable about it.
struct Needle
{
    std::string_view query;
    std::string_view kind;
};

/// The queries that every measurement of the matcher is taken over.
const std::vector<Needle> &needles();

} // namespace quillon::bench
