#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillon {

/// One inotify instance, which watches folders and reads what happens to the items in them. Any
/// thread may add and remove watches; one thread reads.
class InotifyQueue
{
public:
    struct Event
    {
        /// The number of the watch, which is negative when events were lost.
        int watch = -1;
        bool isFolder = false;
        /// True when the watched folder itself was removed or moved.
        bool isOwn = false;
        /// True when the watch is gone.
        bool isEnd = false;
        /// The name that came or went in the folder; empty when the folder itself is meant.
        std::string_view name;
    };
    enum class Links
    {
        follow,
        refuse,
    };
    /// A watch, or the reason, as in errno, why there is none.
    struct Added
    {
        int watch = -1;
        int error = 0;
    };

    /// If open is false, the queue is closed from the beginning and watches nothing.
    explicit InotifyQueue(bool open);

    /// Returns false also when the system grants no instance.
    bool isOpen() const { return static_cast<bool>(descriptor_); }
    /// Returns the descriptor that becomes readable with the next event.
    int descriptor() const { return descriptor_.get(); }
    /// Watches the folder at the path, which may be of any length. Returns the existing watch of a
    /// folder that is watched already. Links on the way are followed.
    Added add(const std::string &path, Links atTheEnd) const;
    void remove(int watch) const;
    /// Hands over what has been reported since the last call.
    void read(const std::function<void(const Event &event)> &receive);

private:
    Descriptor descriptor_;
    std::unique_ptr<char[]> room_;
};

/// Returns the highest number of watches that the system grants a user; 0 when it does not say.
std::size_t maxUserWatches();

} // namespace quillon
