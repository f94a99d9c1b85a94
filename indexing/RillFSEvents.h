#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillon {

/// Describes an event of a path by a set of flags, bit for bit those of the service.
struct RillFSEventsEventFlags
{
    static constexpr std::uint32_t MUST_SCAN_SUB_DIRS = 0x1;
    static constexpr std::uint32_t USER_DROPPED = 0x2;
    static constexpr std::uint32_t KERNEL_DROPPED = 0x4;
    static constexpr std::uint32_t IDS_WRAPPED = 0x8;
    static constexpr std::uint32_t HISTORY_DONE = 0x10;
    static constexpr std::uint32_t ROOT_CHANGED = 0x20;
    static constexpr std::uint32_t MOUNT = 0x40;
    static constexpr std::uint32_t UNMOUNT = 0x80;
    static constexpr std::uint32_t ITEM_CREATED = 0x100;
    static constexpr std::uint32_t ITEM_REMOVED = 0x200;
    static constexpr std::uint32_t ITEM_INODE_META_MOD = 0x400;
    static constexpr std::uint32_t ITEM_RENAMED = 0x800;
    static constexpr std::uint32_t ITEM_MODIFIED = 0x1000;
    static constexpr std::uint32_t ITEM_FINDER_INFO_MOD = 0x2000;
    static constexpr std::uint32_t ITEM_CHANGE_OWNER = 0x4000;
    static constexpr std::uint32_t ITEM_XATTR_MOD = 0x8000;
    static constexpr std::uint32_t ITEM_IS_FILE = 0x10000;
    static constexpr std::uint32_t ITEM_IS_DIR = 0x20000;
    static constexpr std::uint32_t ITEM_IS_SYMLINK = 0x40000;
    static constexpr std::uint32_t OWN_EVENT = 0x80000;
    static constexpr std::uint32_t ITEM_IS_HARDLINK = 0x100000;
    static constexpr std::uint32_t ITEM_IS_LAST_HARDLINK = 0x200000;

    std::uint32_t rawValue = 0;

    /// Returns the names of the set bits, as in "[.mount, .itemIsDir]".
    std::string description() const;

    friend bool operator==(const RillFSEventsEventFlags &,
                           const RillFSEventsEventFlags &) = default;
};

/// Says how a stream is to be made, by a set of flags, bit for bit those of the service.
struct RillFSEventsCreateFlags
{
    static constexpr std::uint32_t USE_CF_TYPES = 0x1;
    static constexpr std::uint32_t NO_DEFER = 0x2;
    static constexpr std::uint32_t WATCH_ROOT = 0x4;
    static constexpr std::uint32_t IGNORE_SELF = 0x8;
    static constexpr std::uint32_t FILE_EVENTS = 0x10;
    static constexpr std::uint32_t MARK_SELF = 0x20;
    static constexpr std::uint32_t USE_EXTENDED_DATA = 0x40;
    static constexpr std::uint32_t FULL_HISTORY = 0x80;

    std::uint32_t rawValue = 0;
};

struct RillFSEventsEventID
{
    std::uint64_t rawValue = 0;

    /// Returns the ID that stands for events from now on.
    static constexpr RillFSEventsEventID sinceNow() { return {~std::uint64_t{0}}; }

    friend bool operator==(RillFSEventsEventID, RillFSEventsEventID) = default;
};

/// One changed path.
struct RillFSEventsEvent
{
    std::string path;
    std::optional<RillFSEventsEventFlags> flag;
    std::optional<RillFSEventsEventID> ID;
};

enum class RillFSEventsErrorCode
{
    cannotCreateStream,
    cannotStartStream,
};

struct RillFSEventsError
{
    RillFSEventsErrorCode code = RillFSEventsErrorCode::cannotCreateStream;
    std::optional<std::string> message;
};

enum class RillFSEventsCriticalErrorCode
{
    missingContextRawPointerValue,
    unexpectedPathValueType,
    unmatchedEventParameterCounts,
};

/// Says that the service has called back with something impossible.
struct RillFSEventsIllogicalErrorLog
{
    RillFSEventsCriticalErrorCode code =
        RillFSEventsCriticalErrorCode::missingContextRawPointerValue;
    std::string message;

    using Handler = std::function<void(const RillFSEventsIllogicalErrorLog &log)>;

    /// Passes the log to the handler of the process, on this thread.
    void report() const;
    /// Replaces that handler and returns the one before. The first handler writes a line to
    /// standard error. Safe from every thread.
    static Handler setHandler(Handler handler);
};

} // namespace quillon
