// Prints the corpus, one path a line, for measurements of other programs.

#include "bench/Corpus.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

int main(int argc, char **argv)
{
    std::size_t count = 0;
    const std::string_view argument = argc == 2 ? argv[1] : "";
    const auto [end, error] =
        std::from_chars(argument.data(), argument.data() + argument.size(), count);
    if (argument.empty() || error != std::errc() || end != argument.data() + argument.size()) {
        std::fputs("usage: corpus_list COUNT\n", stderr);
        return 2;
    }
    for (std::string &path : quillon::bench::makeCorpus(count)) {
        path += '\n';
        std::fwrite(path.data(), 1, path.size(), stdout);
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
