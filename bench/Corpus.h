#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::bench {

/// Returns folder paths like those of a busy home folder and its packages, each one once, in the
/// order of a crawl. The same count gives the same paths on every machine. From 100,000 paths on,
/// they have 65 to 80 bytes on average.
std::vector<std::string> makeCorpus(std::size_t count);

} // namespace quillon::bench
