// Walks all folders below one with the standard library's own walk, as a plain program would.

#include <cstdio>
#include <filesystem>
#include <string>

int main(int argc, char **argv)
{
    namespace fs = std::filesystem;
    if (argc != 2) {
        std::fputs("usage: crawl_std FOLDER\n", stderr);
        return 2;
    }
    std::string paths;
    std::error_code error;
    for (fs::recursive_directory_iterator
             entry(argv[1], fs::directory_options::skip_permission_denied, error),
         end;
         entry != end; entry.increment(error))
        if (entry->is_directory(error) && !entry->is_symlink(error))
            paths.append(entry->path().native()).append(1, '\n');
    std::fwrite(paths.data(), 1, paths.size(), stdout);
    return 0;
}
