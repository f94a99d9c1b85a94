"""Switches the faults of the library of failing calls, and names the errors that calls can give."""

import ctypes
import errno
import mmap
import struct

FILE = ["EACCES", "EINTR", "EIO", "ELOOP", "EMFILE", "ENAMETOOLONG", "ENFILE", "ENOMEM",
        "ENOTCONN", "EPERM", "ESTALE", "ETIMEDOUT"]
PATH = [error for error in FILE if error not in ("EINTR", "EMFILE", "ENFILE")]
ROOM = ["EDQUOT", "ENOSPC", "EROFS"]
# The errors that each call can give, on any file system and under any limit.
ERRORS = {
    "close": ["EINTR", "EIO", "ENOSPC"],
    "eventfd": ["EMFILE", "ENFILE", "ENOMEM"],
    "execve": PATH + ["EAGAIN", "EMFILE", "ENFILE"],
    "faccessat": PATH,
    "fcntl": ["EAGAIN", "EINTR", "EMFILE"],
    "fdatasync": ["EDQUOT", "EINTR", "EIO", "ENOSPC", "ESTALE"],
    "flock": ["EINTR", "EIO", "ENOTCONN", "ESTALE"],
    "fopen": FILE,
    "fork": ["EAGAIN", "ENOMEM"],
    "fstat": ["EIO", "ENOMEM", "ENOTCONN", "ESTALE"],
    "fstatat": PATH,
    "fstatfs": ["EINTR", "EIO", "ENOMEM", "ENOTCONN", "ESTALE"],
    "fsync": ["EDQUOT", "EINTR", "EIO", "ENOSPC", "ESTALE"],
    "futimens": ["EACCES", "EIO", "ENOTCONN", "EPERM", "EROFS", "ESTALE"],
    "getdents64": ["EACCES", "EINTR", "EIO", "ENOMEM", "ENOTCONN", "ESTALE", "ETIMEDOUT"],
    "inotify_add_watch": PATH + ["ENOSPC"],
    "inotify_init1": ["EMFILE", "ENFILE", "ENOMEM"],
    "inotify_rm_watch": ["EINVAL"],
    "lstat": PATH,
    "mkdir": PATH + ["EINTR"] + ROOM,
    "open": FILE + ["EAGAIN"] + ROOM,
    "openat": FILE + ["EAGAIN"],
    "opendir": FILE,
    "pipe2": ["EMFILE", "ENFILE"],
    "poll": ["EINTR", "ENOMEM"],
    "pthread_create": ["EAGAIN"],
    "read": ["EAGAIN", "EINTR", "EIO", "ENOMEM", "ENOTCONN", "ESTALE", "ETIMEDOUT"],
    "readdir": ["EIO", "ENOMEM", "ENOTCONN", "ESTALE"],
    "readlink": PATH,
    "realpath": PATH,
    "rename": PATH + ["EINTR"] + ROOM,
    "renameat2": PATH + ["EINTR"] + ROOM,
    "stat": PATH,
    "statx": PATH,
    "unlink": PATH + ["EROFS"],
    "write": ["EAGAIN", "EDQUOT", "EINTR", "EIO", "ENOSPC", "ENOTCONN", "ESTALE"],
}
# A signal interrupts some calls in a row at most.
MOST_INTERRUPTIONS = 100


def calls_of(library):
    """Returns the names of the calls that the library makes fail, in its order."""
    name = ctypes.CDLL(library).nameOfFailingCall
    name.restype = ctypes.c_char_p
    names = []
    while name(len(names)):
        names.append(name(len(names)).decode())
    assert sorted(names) == sorted(ERRORS), set(names) ^ set(ERRORS)
    return names


class Faults:
    """The faults of one program, which is started with environment()."""

    FORM = "=5i"

    def __init__(self, library, path):
        self.library, self.path, self.names = library, path, calls_of(library)
        with open(path, "wb") as file:
            file.write(bytes(struct.calcsize(self.FORM) * len(self.names)))
        with open(path, "r+b") as file:
            self.fields = mmap.mmap(file.fileno(), 0)

    def environment(self):
        return {"LD_PRELOAD": self.library, "QUILLON_FAILING_CALLS": self.path}

    def start(self, call, error, skipped=0, times=-1):
        """Lets the call fail from now on or, after some calls that succeed, so many times."""
        if error == "EINTR" and times < 0:
            times = MOST_INTERRUPTIONS
        place = self._place(call)
        struct.pack_into("=2i", self.fields, place + 4, skipped, times)
        struct.pack_into("=i", self.fields, place, getattr(errno, error))

    def stop(self, call):
        struct.pack_into("=i", self.fields, self._place(call), 0)

    def hits(self, call):
        """Returns how often the call has failed."""
        return struct.unpack_from("=i", self.fields, self._place(call) + 12)[0]

    def made(self):
        """Returns how often the program has made each call."""
        return {name: struct.unpack_from("=i", self.fields, self._place(name) + 16)[0]
                for name in self.names}

    def _place(self, call):
        return struct.calcsize(self.FORM) * self.names.index(call)
