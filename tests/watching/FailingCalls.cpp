// A library that is loaded before others and makes calls of the program fail. The file that
// QUILLON_FAILING_CALLS names holds two 32-bit numbers for each call of the list below: the error
// with which the call fails at this moment, or 0, and how often it has failed. A program that maps
// the file switches faults on and off.

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <dlfcn.h>

namespace {

enum Call : int
{
    STATX,
    OPENAT,
    GETDENTS64,
    FSTATFS,
    INOTIFY_ADD_WATCH,
    INOTIFY_INIT1,
    READ,
    REALPATH,
    FOPEN,
    COUNT,
};

struct Fault
{
    std::atomic<std::int32_t> error;
    std::atomic<std::int32_t> hits;
};

Fault *mapFaults()
{
    const char *name = std::getenv("QUILLON_FAILING_CALLS");
    const int file = name != nullptr ? ::open(name, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        return nullptr;
    void *faults =
        ::mmap(nullptr, COUNT * sizeof(Fault), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return faults == MAP_FAILED ? nullptr : static_cast<Fault *>(faults);
}

bool fails(Call call)
{
    static Fault *const faults = mapFaults();
    const std::int32_t error = faults != nullptr ? faults[call].error.load() : 0;
    if (error == 0)
        return false;
    ++faults[call].hits;
    errno = error;
    return true;
}

template <typename Function>
Function *next(Function *, const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int statx(int folder, const char *path, int flags, unsigned int mask, struct statx *status)
{
    static const auto real = next(&statx, "statx");
    return fails(STATX) ? -1 : real(folder, path, flags, mask, status);
}

int openat(int folder, const char *path, int flags, ...)
{
    static const auto real = next(&openat, "openat");
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails(OPENAT) ? -1 : real(folder, path, flags, mode);
}

ssize_t getdents64(int file, void *room, size_t size)
{
    static const auto real = next(&getdents64, "getdents64");
    return fails(GETDENTS64) ? -1 : real(file, room, size);
}

int fstatfs(int file, struct statfs *status)
{
    static const auto real = next(&fstatfs, "fstatfs");
    return fails(FSTATFS) ? -1 : real(file, status);
}

int inotify_add_watch(int queue, const char *path, uint32_t mask)
{
    static const auto real = next(&inotify_add_watch, "inotify_add_watch");
    return fails(INOTIFY_ADD_WATCH) ? -1 : real(queue, path, mask);
}

int inotify_init1(int flags)
{
    static const auto real = next(&inotify_init1, "inotify_init1");
    return fails(INOTIFY_INIT1) ? -1 : real(flags);
}

ssize_t read(int file, void *room, size_t size)
{
    static const auto real = next(&read, "read");
    return fails(READ) ? -1 : real(file, room, size);
}

char *realpath(const char *path, char *room)
{
    static const auto real = next(&realpath, "realpath");
    return fails(REALPATH) ? nullptr : real(path, room);
}

FILE *fopen64(const char *path, const char *mode)
{
    static const auto real = next(&fopen64, "fopen64");
    return fails(FOPEN) ? nullptr : real(path, mode);
}
}
