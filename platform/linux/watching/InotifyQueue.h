#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillon {

/// One inotify instance: watches folders and reads what happens to what is in them. Watches may be
/// added and removed by any thread; one thread reads.
class InotifyQueue
{
public:
    struct Event
    {
        /// Negative when events were lost.
        int watch = -1;
        bool isFolder = false;
        /// The watched folder itself went away or elsewhere.
        bool isOwn = false;
        /// The watch is gone.
        bool isEnd = false;
        /// The name that came or went in the folder; empty when the folder itself is meant.
        std::string_view name;
    };
    enum class Links
    {
        follow,
        refuse,
    };
    /// A watch, or the reason why there is none as in errno.
    struct Added
    {
        int watch = -1;
        int error = 0;
    };

    /// Closed from the beginning where nothing is to be watched.
    explicit InotifyQueue(bool open);

    /// Returns false also where the system grants no instance.
    bool isOpen() const { return static_cast<bool>(descriptor_); }
    /// The descriptor that becomes readable with the next event.
    int descriptor() const { return descriptor_.get(); }
    /// Watches the folder at the path, which may be of any length. A folder that is watched already
    /// gives its watch again. Links on the way are followed.
    Added add(const std::string &path, Links atTheEnd) const;
    void remove(int watch) const;
    /// Hands over what has been reported since the last call.
    void read(const std::function<void(const Event &event)> &receive);

private:
    Descriptor descriptor_;
    std::unique_ptr<char[]> room_;
};

/// The highest number of watches that the system grants a user; 0 when it does not tell.
std::size_t maxUserWatches();

} // namespace quillon
