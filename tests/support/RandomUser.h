#pragma once

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quillon {

/// Changes a tree, and the folder above it, in all ways in which a user's programs may change it,
/// at full speed. Names that end with ".txt" or ".app" and the name "skipped" are there for rules
/// to match.
class RandomUser
{
public:
    RandomUser(std::string root, std::string outside, unsigned seed)
        : root_(std::move(root)), outside_(std::move(outside)), random_(seed)
    {}

    void act()
    {
        std::error_code ignored;
        const std::string one = somePath();
        const std::string other = somePath();
        switch (number(18)) {
        case 0:
        case 1:
        case 2:
            std::filesystem::create_directories(one, ignored);
            break;
        case 3:
            std::filesystem::remove_all(one, ignored);
            break;
        case 4:
        case 5:
            ::rename(one.c_str(), other.c_str());
            break;
        case 6:
            ::rename(one.c_str(), (outside_ + "/" + std::to_string(number(4))).c_str());
            break;
        case 7:
            ::rename((outside_ + "/" + std::to_string(number(4))).c_str(), one.c_str());
            break;
        case 8:
            ::syscall(SYS_renameat2, AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(),
                      RENAME_EXCHANGE);
            break;
        case 9:
            if (!other.starts_with(one + "/") && one != root_)
                std::filesystem::copy(one, other, std::filesystem::copy_options::recursive,
                                      ignored);
            break;
        case 10:
            ::rename(one.c_str(), (one.substr(0, one.rfind('/') + 1) + ".hidden").c_str());
            break;
        case 11:
            if (std::ofstream file(one + "/" + std::to_string(number(3)) + ".txt"); file)
                file << one;
            else
                ::unlink(one.c_str());
            break;
        case 12:
            // The folder is usually back within the latency.
            awayAndBack(one, outside_ + "/away",
                        [&] { std::filesystem::create_directories(one, ignored); });
            break;
        case 13:
            // The other root has folders of the same names.
            awayAndBack(root_, outside_ + "/root",
                        [&] { std::filesystem::create_directories(root_ + "/a/b", ignored); });
            break;
        case 14:
            awayAndBack(root_.substr(0, root_.rfind('/')), outside_ + "/above",
                        [&] { std::filesystem::create_directories(root_ + "/a/c", ignored); });
            break;
        case 15:
            // A folder takes the place of the one above it.
            if (const std::string above = one.substr(0, one.rfind('/')); above != root_) {
                ::rename(one.c_str(), (outside_ + "/up").c_str());
                std::filesystem::remove_all(above, ignored);
                ::rename((outside_ + "/up").c_str(), above.c_str());
            }
            break;
        case 16: {
            // The times that a user can set mean nothing.
            constexpr std::array<timespec, 2> LONG_AGO{};
            ::utimensat(AT_FDCWD, one.c_str(), LONG_AGO.data(), AT_SYMLINK_NOFOLLOW);
            break;
        }
        default:
            std::filesystem::remove_all(one, ignored);
            if (number(2) == 0)
                std::filesystem::create_directory_symlink(other, one, ignored);
            else
                std::ofstream(one) << "a file";
        }
    }

private:
    /// Puts something else in a folder's place, and then the folder again.
    template <typename Replace>
    void awayAndBack(const std::string &path, const std::string &away, const Replace &replace)
    {
        if (::rename(path.c_str(), away.c_str()) != 0)
            return;
        std::error_code ignored;
        if (number(2) == 0)
            replace();
        std::this_thread::sleep_for(std::chrono::microseconds(number(3000)));
        std::filesystem::remove_all(path, ignored);
        ::rename(away.c_str(), path.c_str());
    }
    unsigned number(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    std::string somePath()
    {
        static constexpr std::array NAMES{"a",     "b",       "c",         "d.app",
                                          "e.txt", "skipped", ".hidden",   "f \n\xff",
                                          "-rf",   "tab\t",   "\u202eback"};
        std::string path = root_;
        for (unsigned depth = 1 + number(5); depth > 0; --depth)
            path +=
                std::string("/") + NAMES.at(number(number(3) == 0 ? unsigned{NAMES.size()} : 3));
        return path;
    }

    const std::string root_;
    const std::string outside_;
    std::mt19937 random_;
};

} // namespace quillon
