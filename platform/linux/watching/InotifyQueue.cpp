#include "platform/linux/watching/InotifyQueue.h"

#include "platform/linux/disk/LongPath.h"

#include <climits>

#include <cerrno>
#include <cstring>
#include <fstream>

#include <sys/inotify.h>

namespace quillon {

namespace {

constexpr std::uint32_t MASK = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MOVE_SELF |
                               IN_ONLYDIR | IN_EXCL_UNLINK;
constexpr std::size_t EVENTS_ROOM = std::size_t{256} * 1024;

InotifyQueue::Event eventOf(const inotify_event &head, const char *name)
{
    InotifyQueue::Event event;
    event.watch = (head.mask & IN_Q_OVERFLOW) != 0 ? -1 : head.wd;
    event.isFolder = (head.mask & IN_ISDIR) != 0;
    event.isOwn = (head.mask & (IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0;
    event.isEnd = (head.mask & IN_IGNORED) != 0;
    event.name = {name, ::strnlen(name, head.len)};
    return event;
}

} // namespace

InotifyQueue::InotifyQueue(bool open)
    : descriptor_(open ? ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC) : -1),
      room_(open ? new char[EVENTS_ROOM] : nullptr)
{}

InotifyQueue::Added InotifyQueue::add(const std::string &path, Links atTheEnd) const
{
    const std::uint32_t mask = MASK | (atTheEnd == Links::refuse ? IN_DONT_FOLLOW : 0U);
    int watch = ::inotify_add_watch(descriptor_.get(), path.c_str(), mask);
    if (watch < 0 && errno == ENAMETOOLONG) {
        if (const auto place = shorten(path)) {
            const std::string way =
                "/proc/self/fd/" + std::to_string(place->folder.get()) + "/" + place->path;
            watch = ::inotify_add_watch(descriptor_.get(), way.c_str(), mask);
        }
    }
    return {watch, watch < 0 ? errno : 0};
}

void InotifyQueue::remove(int watch) const
{
    ::inotify_rm_watch(descriptor_.get(), watch);
}

void InotifyQueue::read(const std::function<void(const Event &event)> &receive)
{
    for (;;) {
        const ssize_t size = ::read(descriptor_.get(), room_.get(), EVENTS_ROOM);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return;
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event head = {};
            std::memcpy(&head, room_.get() + at, sizeof head);
            receive(eventOf(head, room_.get() + at + sizeof head));
            at += sizeof head + head.len;
        }
    }
}

std::size_t maxUserWatches()
{
    std::ifstream file("/proc/sys/fs/inotify/max_user_watches");
    std::size_t count = 0;
    file >> count;
    return count;
}

} // namespace quillon
