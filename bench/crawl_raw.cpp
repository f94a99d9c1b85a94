// Measures the least that reading all folders below one can cost: two threads, each depth first
// with getdents64 and openat relative to the folder above, collect the paths of the folders. A
// thread that has run out gets the next subtree that the other would enter. The program knows no
// rules, no errors and no limits. It prints the number of folders and the seconds.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t ROOM = std::size_t{64} * 1024;

struct Subtree
{
    int parent = -1;
    std::string path;
    std::size_t name = 0;
};

class Loop
{
public:
    explicit Loop(std::string root) { todo_.push_back({AT_FDCWD, std::move(root), 0}); }
    std::size_t run()
    {
        std::thread other([this] { work(); });
        work();
        other.join();
        return folders_;
    }

private:
    struct Mine
    {
        std::vector<char> room = std::vector<char>(ROOM);
        std::string paths;
        std::size_t folders = 0;
    };

    void work()
    {
        Mine mine;
        for (std::unique_lock lock(mutex_);;) {
            ++idle_;
            changed_.wait(lock, [this] { return !todo_.empty() || open_ == 0; });
            --idle_;
            if (todo_.empty())
                break;
            Subtree subtree = std::move(todo_.front());
            todo_.pop_front();
            lock.unlock();
            visit(mine, subtree.parent, subtree.path, subtree.name);
            if (subtree.parent != AT_FDCWD)
                close(subtree.parent);
            lock.lock();
            if (--open_ == 0)
                changed_.notify_all();
        }
        folders_ += mine.folders;
    }

    void visit(Mine &mine, int parent, std::string &path, std::size_t name)
    {
        const int folder =
            openat(parent, path.c_str() + name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
        if (folder < 0)
            return;
        ++mine.folders;
        mine.paths.append(path).append(1, '\n');
        std::string names;
        for (ssize_t size = 0; (size = getdents64(folder, mine.room.data(), mine.room.size())) > 0;)
            gather(mine.room.data(), size, names);
        const std::size_t length = path.size();
        path += '/';
        for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
            path.resize(length + 1);
            path += names.c_str() + at;
            if (idle_ == 0 || !give(folder, path, length + 1))
                visit(mine, folder, path, length + 1);
        }
        path.resize(length);
        close(folder);
    }

    static void gather(const char *records, ssize_t size, std::string &names)
    {
        for (ssize_t at = 0; at < size;) {
            dirent64 head;
            std::memcpy(&head, records + at, offsetof(dirent64, d_name));
            const char *name = records + at + offsetof(dirent64, d_name);
            if (head.d_type == DT_DIR && std::strcmp(name, ".") != 0 &&
                std::strcmp(name, "..") != 0)
                names.append(name).append(1, '\0');
            at += head.d_reclen;
        }
    }

    bool give(int parent, const std::string &path, std::size_t name)
    {
        const std::lock_guard lock(mutex_);
        if (idle_ == 0 || !todo_.empty())
            return false;
        todo_.push_back({dup(parent), path, name});
        ++open_;
        changed_.notify_one();
        return true;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Subtree> todo_;
    /// The number of subtrees that were given and are not finished.
    std::size_t open_ = 1;
    std::atomic<int> idle_ = 0;
    std::atomic<std::size_t> folders_ = 0;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: crawl_raw FOLDER\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const std::size_t folders = Loop(argv[1]).run();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    std::printf("%zu %.4f\n", folders, time.count());
    return 0;
}
