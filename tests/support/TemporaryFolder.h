#pragma once

#include "base/Require.h"

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace quillon {

/// A new folder on the real disk, removed with everything below it at the end of its life.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(
        const std::filesystem::path &place = std::filesystem::temp_directory_path())
    {
        // Letters of a random name could be those that a test searches for.
        static std::atomic<unsigned> number = 0;
        do {
            path_ = place /
                    ("quillon-test-" + std::to_string(::getpid()) + "-" + std::to_string(++number));
            errno = 0;
        } while (::mkdir(path_.c_str(), S_IRWXU) != 0 && errno == EEXIST);
        require(errno == 0, "a temporary folder can be made");
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        makeRemovable(path_);
        std::filesystem::remove_all(path_, ignored);
    }

    /// Returns the absolute path, without a trailing slash.
    const std::string &path() const { return path_; }
    /// Returns the absolute path of a relative one. Nothing need be there.
    std::string path(std::string_view relative) const
    {
        return std::string(path_).append("/").append(relative);
    }
    /// Makes the folder and those above it, and returns its absolute path.
    std::string makeFolder(std::string_view relative) const
    {
        std::filesystem::create_directories(path(relative));
        return path(relative);
    }
    /// Writes the file in place, makes the folders above it, and returns its absolute path.
    std::string writeFile(std::string_view relative, std::string_view text = {}) const
    {
        const std::filesystem::path file = path(relative);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }
    /// Returns the file's bytes, which are empty when it cannot be read.
    std::string readFile(std::string_view relative) const
    {
        std::ifstream stream(path(relative), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    /// Restores the owner's rights, which a test may have taken away.
    static void makeRemovable(const std::filesystem::path &folder)
    {
        using std::filesystem::perm_options;
        using std::filesystem::perms;
        std::error_code error;
        std::filesystem::permissions(folder, perms::owner_all, perm_options::add, error);
        for (const auto &entry : std::filesystem::directory_iterator(folder, error))
            if (entry.symlink_status(error).type() == std::filesystem::file_type::directory)
                makeRemovable(entry.path());
    }

    std::string path_;
};

} // namespace quillon
