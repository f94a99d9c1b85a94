// A library to be loaded before others: makes calls of the program fail. The file that
// QUILLON_FAILING_CALLS names holds one 32-bit number for each call of the list below: the error
// that the call fails with at this moment, or 0. Whoever maps the file switches faults on and off.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdint>
#include <cstdlib>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <poll.h>

namespace {

enum Call : int
{
    STATX,
    OPENAT,
    GETDENTS64,
    FSTATAT,
    FSTATFS,
    INOTIFY_ADD_WATCH,
    INOTIFY_INIT1,
    READ,
    READLINK,
    FOPEN,
    COUNT,
};

const volatile std::int32_t *mapErrors()
{
    const char *name = std::getenv("QUILLON_FAILING_CALLS");
    const int file = name != nullptr ? ::open(name, O_RDONLY | O_CLOEXEC) : -1;
    if (file < 0)
        return nullptr;
    void *errors =
        ::mmap(nullptr, COUNT * sizeof(std::int32_t), PROT_READ, MAP_SHARED, file, 0);
    ::close(file);
    return errors == MAP_FAILED ? nullptr : static_cast<const std::int32_t *>(errors);
}

bool fails(Call call)
{
    static const volatile std::int32_t *const errors = mapErrors();
    const std::int32_t error = errors != nullptr ? errors[call] : 0;
    if (error != 0)
        errno = error;
    return error != 0;
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

int fstatat(int folder, const char *path, struct stat *status, int flags)
{
    static const auto real = next(&fstatat, "fstatat");
    return fails(FSTATAT) ? -1 : real(folder, path, status, flags);
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

ssize_t readlink(const char *path, char *room, size_t size)
{
    static const auto real = next(&readlink, "readlink");
    return fails(READLINK) ? -1 : real(path, room, size);
}

FILE *fopen64(const char *path, const char *mode)
{
    static const auto real = next(&fopen64, "fopen64");
    return fails(FOPEN) ? nullptr : real(path, mode);
}
}
