// A library that is loaded before others and makes calls of the program fail. The file that
// QUILLON_FAILING_CALLS names holds a Fault for each call of the list below. A program that maps
// the file switches faults on and off, and learns which calls the program makes.

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <dlfcn.h>

namespace {

enum Call : int
{
    CLOSE,
    EVENTFD,
    EXECVE,
    FACCESSAT,
    FCNTL,
    FDATASYNC,
    FLOCK,
    FOPEN,
    FORK,
    FSTAT,
    FSTATAT,
    FSTATFS,
    FSYNC,
    FUTIMENS,
    GETDENTS64,
    INOTIFY_ADD_WATCH,
    INOTIFY_INIT1,
    INOTIFY_RM_WATCH,
    LSTAT,
    MKDIR,
    OPEN,
    OPENAT,
    OPENDIR,
    PIPE2,
    POLL,
    PTHREAD_CREATE,
    READ,
    READDIR,
    READLINK,
    REALPATH,
    RENAME,
    RENAMEAT2,
    STAT,
    STATX,
    UNLINK,
    WRITE,
    COUNT,
};

constexpr const char *NAMES[] = {
    "close",         "eventfd",
    "execve",        "faccessat",
    "fcntl",         "fdatasync",
    "flock",         "fopen",
    "fork",          "fstat",
    "fstatat",       "fstatfs",
    "fsync",         "futimens",
    "getdents64",    "inotify_add_watch",
    "inotify_init1", "inotify_rm_watch",
    "lstat",         "mkdir",
    "open",          "openat",
    "opendir",       "pipe2",
    "poll",          "pthread_create",
    "read",          "readdir",
    "readlink",      "realpath",
    "rename",        "renameat2",
    "stat",          "statx",
    "unlink",        "write",
};
static_assert(std::size(NAMES) == COUNT);

struct Fault
{
    /// The error with which the call fails, or 0.
    std::atomic<std::int32_t> error;
    /// The number of calls that still succeed before the first one fails.
    std::atomic<std::int32_t> skipped;
    /// The number of calls that fail then. A negative number means that all of them fail.
    std::atomic<std::int32_t> left;
    /// The number of calls that have failed.
    std::atomic<std::int32_t> hits;
    /// The number of calls, whether or not they have failed.
    std::atomic<std::int32_t> calls;
};

Fault *mapFaults()
{
    const char *name = std::getenv("QUILLON_FAILING_CALLS");
    if (name == nullptr)
        return nullptr;
    static const auto open =
        reinterpret_cast<int (*)(const char *, int, ...)>(::dlsym(RTLD_NEXT, "open"));
    const int file = open(name, O_RDWR | O_CLOEXEC);
    if (file < 0)
        return nullptr;
    void *faults =
        ::mmap(nullptr, COUNT * sizeof(Fault), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    return faults == MAP_FAILED ? nullptr : static_cast<Fault *>(faults);
}

/// Returns true, with errno set, when this call of the program is to fail.
bool fails(Call call)
{
    static Fault *const faults = mapFaults();
    if (faults == nullptr)
        return false;
    Fault &fault = faults[call];
    ++fault.calls;
    const std::int32_t error = fault.error.load();
    if (error == 0 || fault.skipped.fetch_sub(1) > 0)
        return false;
    if (fault.left.load() == 0 || (fault.left.load() > 0 && fault.left.fetch_sub(1) <= 0))
        return false;
    ++fault.hits;
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

/// Names the calls in the order of the file. Returns null behind the last one.
__attribute__((visibility("default"))) const char *nameOfFailingCall(int number)
{
    return number < COUNT ? NAMES[number] : nullptr;
}

// Each line gives the call, its result when it fails, its type, its name and its parameters.
#define QUILLON_FAILING_CALL(CALL, FAILURE, TYPE, NAME, PARAMETERS, ARGUMENTS)                     \
    __attribute__((visibility("default"))) TYPE NAME PARAMETERS                                    \
    {                                                                                              \
        static const auto real = next(&NAME, #NAME);                                               \
        return fails(CALL) ? (FAILURE) : real ARGUMENTS;                                           \
    }

// clang-format off
QUILLON_FAILING_CALL(EVENTFD, -1, int, eventfd, (unsigned int start, int flags), (start, flags))
QUILLON_FAILING_CALL(EXECVE, -1, int, execve, (const char *path, char *const *words, char *const *variables), (path, words, variables))
QUILLON_FAILING_CALL(FACCESSAT, -1, int, faccessat, (int folder, const char *path, int mode, int flags), (folder, path, mode, flags))
QUILLON_FAILING_CALL(FDATASYNC, -1, int, fdatasync, (int file), (file))
QUILLON_FAILING_CALL(FLOCK, -1, int, flock, (int file, int operation), (file, operation))
QUILLON_FAILING_CALL(FOPEN, nullptr, FILE *, fopen, (const char *path, const char *mode), (path, mode))
QUILLON_FAILING_CALL(FOPEN, nullptr, FILE *, fopen64, (const char *path, const char *mode), (path, mode))
QUILLON_FAILING_CALL(FORK, -1, pid_t, fork, (), ())
QUILLON_FAILING_CALL(FSTAT, -1, int, fstat, (int file, struct stat *status), (file, status))
QUILLON_FAILING_CALL(FSTAT, -1, int, fstat64, (int file, struct stat64 *status), (file, status))
QUILLON_FAILING_CALL(FSTATAT, -1, int, fstatat, (int folder, const char *path, struct stat *status, int flags), (folder, path, status, flags))
QUILLON_FAILING_CALL(FSTATAT, -1, int, fstatat64, (int folder, const char *path, struct stat64 *status, int flags), (folder, path, status, flags))
QUILLON_FAILING_CALL(FSTATFS, -1, int, fstatfs, (int file, struct statfs *status), (file, status))
QUILLON_FAILING_CALL(FSYNC, -1, int, fsync, (int file), (file))
QUILLON_FAILING_CALL(FUTIMENS, -1, int, futimens, (int file, const struct timespec *times), (file, times))
QUILLON_FAILING_CALL(GETDENTS64, -1, ssize_t, getdents64, (int file, void *room, size_t size), (file, room, size))
QUILLON_FAILING_CALL(INOTIFY_ADD_WATCH, -1, int, inotify_add_watch, (int queue, const char *path, uint32_t mask), (queue, path, mask))
QUILLON_FAILING_CALL(INOTIFY_INIT1, -1, int, inotify_init1, (int flags), (flags))
QUILLON_FAILING_CALL(INOTIFY_RM_WATCH, -1, int, inotify_rm_watch, (int queue, int watch), (queue, watch))
QUILLON_FAILING_CALL(LSTAT, -1, int, lstat, (const char *path, struct stat *status), (path, status))
QUILLON_FAILING_CALL(LSTAT, -1, int, lstat64, (const char *path, struct stat64 *status), (path, status))
QUILLON_FAILING_CALL(MKDIR, -1, int, mkdir, (const char *path, mode_t mode), (path, mode))
QUILLON_FAILING_CALL(OPENDIR, nullptr, DIR *, opendir, (const char *path), (path))
QUILLON_FAILING_CALL(PIPE2, -1, int, pipe2, (int *ends, int flags), (ends, flags))
QUILLON_FAILING_CALL(POLL, -1, int, poll, (struct pollfd *files, nfds_t count, int time), (files, count, time))
QUILLON_FAILING_CALL(READ, -1, ssize_t, read, (int file, void *room, size_t size), (file, room, size))
QUILLON_FAILING_CALL(READDIR, nullptr, struct dirent *, readdir, (DIR *folder), (folder))
QUILLON_FAILING_CALL(READDIR, nullptr, struct dirent64 *, readdir64, (DIR *folder), (folder))
QUILLON_FAILING_CALL(READLINK, -1, ssize_t, readlink, (const char *path, char *room, size_t size), (path, room, size))
QUILLON_FAILING_CALL(REALPATH, nullptr, char *, realpath, (const char *path, char *room), (path, room))
QUILLON_FAILING_CALL(RENAME, -1, int, rename, (const char *from, const char *to), (from, to))
QUILLON_FAILING_CALL(RENAMEAT2, -1, int, renameat2, (int from, const char *name, int to, const char *other, unsigned int flags), (from, name, to, other, flags))
QUILLON_FAILING_CALL(STAT, -1, int, stat, (const char *path, struct stat *status), (path, status))
QUILLON_FAILING_CALL(STAT, -1, int, stat64, (const char *path, struct stat64 *status), (path, status))
QUILLON_FAILING_CALL(STATX, -1, int, statx, (int folder, const char *path, int flags, unsigned int mask, struct statx *status), (folder, path, flags, mask, status))
QUILLON_FAILING_CALL(UNLINK, -1, int, unlink, (const char *path), (path))
QUILLON_FAILING_CALL(WRITE, -1, ssize_t, write, (int file, const void *bytes, size_t size), (file, bytes, size))
// A thread that cannot be made is reported by the result alone.
QUILLON_FAILING_CALL(PTHREAD_CREATE, errno, int, pthread_create, (pthread_t *thread, const pthread_attr_t *terms, void *(*run)(void *), void *argument), (thread, terms, run, argument))
// clang-format on

/// A file is closed even where the call reports an error.
__attribute__((visibility("default"))) int close(int file)
{
    static const auto real = next(&close, "close");
    const int result = real(file);
    return fails(CLOSE) ? -1 : result;
}

#define QUILLON_FAILING_OPEN(CALL, NAME, PARAMETERS, ARGUMENTS)                                    \
    __attribute__((visibility("default"))) int NAME PARAMETERS                                     \
    {                                                                                              \
        static const auto real = next(&NAME, #NAME);                                               \
        std::va_list rest;                                                                         \
        va_start(rest, flags);                                                                     \
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;       \
        va_end(rest);                                                                              \
        return fails(CALL) ? -1 : real ARGUMENTS;                                                  \
    }

QUILLON_FAILING_OPEN(OPEN, open, (const char *path, int flags, ...), (path, flags, mode))
QUILLON_FAILING_OPEN(OPEN, open64, (const char *path, int flags, ...), (path, flags, mode))
QUILLON_FAILING_OPEN(OPENAT, openat, (int folder, const char *path, int flags, ...),
                     (folder, path, flags, mode))
QUILLON_FAILING_OPEN(OPENAT, openat64, (int folder, const char *path, int flags, ...),
                     (folder, path, flags, mode))

__attribute__((visibility("default"))) int fcntl64(int file, int command, ...)
{
    static const auto real = next(&fcntl64, "fcntl64");
    std::va_list rest;
    va_start(rest, command);
    void *argument = va_arg(rest, void *);
    va_end(rest);
    return fails(FCNTL) ? -1 : real(file, command, argument);
}
}
