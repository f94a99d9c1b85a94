// Makes the first COUNT folders of the corpus below FOLDER on the disk, each with at most FILES
// empty files, half as many on average (14).

#include "bench/Corpus.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *EXTENSIONS[] = {"txt", "cpp", "h", "jpg", "sublime-project", "json", "o"};

bool makeFile(int folder, std::size_t number)
{
    const std::string name =
        "item-" + std::to_string(number * 7919 % 100003) + "." + EXTENSIONS[number % 7];
    const int file = openat(folder, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    return file >= 0 && close(file) == 0;
}

bool makeFolder(const std::string &path, std::size_t files)
{
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), 0700);
    mkdir(path.c_str(), 0700);
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return false;
    bool made = true;
    for (std::size_t i = 0; i < files; ++i)
        made = made && makeFile(folder, i);
    close(folder);
    return made;
}

bool readNumber(std::string_view text, std::size_t &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

int main(int argc, char **argv)
{
    std::size_t count = 0;
    std::size_t files = 14;
    if (argc < 3 || argc > 4 || !readNumber(argv[2], count) ||
        (argc == 4 && !readNumber(argv[3], files))) {
        std::fputs("usage: crawl_tree FOLDER COUNT [FILES]\n", stderr);
        return 2;
    }
    std::size_t number = 0;
    for (const std::string &path : quillon::bench::makeCorpus(count)) {
        if (!makeFolder(argv[1] + path, number++ % (files + 1))) {
            std::perror(path.c_str());
            return 1;
        }
    }
    return 0;
}
