#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::bench {

/// Folder paths as a busy home folder and its packages hold them, each one once: the same ones for
/// the same count, on every machine, in the order of a crawl. 65 to 80 bytes on average from
/// 100,000 paths on.
std::vector<std::string> makeCorpus(std::size_t count);

} // namespace quillon::bench
