#include "indexing/RillFSEvents.h"

#include "base/Mutex.h"

#include <array>
#include <cstdio>
#include <utility>

namespace quillon {

namespace {

using Flags = RillFSEventsEventFlags;
using Log = RillFSEventsIllogicalErrorLog;

constexpr std::array<std::pair<std::uint32_t, const char *>, 22> FLAG_NAMES = {{
    {Flags::MUST_SCAN_SUB_DIRS, ".mustScanSubDirs"},
    {Flags::USER_DROPPED, ".userDropped"},
    {Flags::KERNEL_DROPPED, ".kernelDropped"},
    {Flags::IDS_WRAPPED, ".idsWrapped"},
    {Flags::HISTORY_DONE, ".historyDone"},
    {Flags::ROOT_CHANGED, ".rootChanged"},
    {Flags::MOUNT, ".mount"},
    {Flags::UNMOUNT, ".unmount"},
    {Flags::ITEM_CREATED, ".itemCreated"},
    {Flags::ITEM_REMOVED, ".itemRemoved"},
    {Flags::ITEM_INODE_META_MOD, ".itemInodeMetaMod"},
    {Flags::ITEM_RENAMED, ".itemRenamed"},
    {Flags::ITEM_MODIFIED, ".itemModified"},
    {Flags::ITEM_FINDER_INFO_MOD, ".itemFinderInfoMod"},
    {Flags::ITEM_CHANGE_OWNER, ".itemChangeOwner"},
    {Flags::ITEM_XATTR_MOD, ".itemXattrMod"},
    {Flags::ITEM_IS_FILE, ".itemIsFile"},
    {Flags::ITEM_IS_DIR, ".itemIsDir"},
    {Flags::ITEM_IS_SYMLINK, ".itemIsSymlink"},
    {Flags::OWN_EVENT, ".ownEvent"},
    {Flags::ITEM_IS_HARDLINK, ".itemIsHardlink"},
    {Flags::ITEM_IS_LAST_HARDLINK, ".itemIsLastHardlink"},
}};

const char *nameOf(RillFSEventsCriticalErrorCode code)
{
    switch (code) {
    case RillFSEventsCriticalErrorCode::missingContextRawPointerValue:
        return "missingContextRawPointerValue";
    case RillFSEventsCriticalErrorCode::unexpectedPathValueType:
        return "unexpectedPathValueType";
    case RillFSEventsCriticalErrorCode::unmatchedEventParameterCounts:
        return "unmatchedEventParameterCounts";
    }
    return "";
}

void print(const Log &log)
{
    std::fprintf(stderr, "quillon: file-system events: %s: %s\n", nameOf(log.code),
                 log.message.c_str());
}

struct ProcessHandler
{
    Mutex mutex;
    Log::Handler handler GUARDED_BY(mutex) = print;
};

ProcessHandler &processHandler()
{
    static ProcessHandler one;
    return one;
}

} // namespace

std::string RillFSEventsEventFlags::description() const
{
    std::string text = "[";
    for (const auto &[bit, name] : FLAG_NAMES)
        if ((rawValue & bit) != 0)
            text.append(text.size() == 1 ? "" : ", ").append(name);
    return text + "]";
}

void RillFSEventsIllogicalErrorLog::report() const
{
    Handler handler;
    {
        const MutexLock lock(processHandler().mutex);
        handler = processHandler().handler;
    }
    if (handler)
        handler(*this);
}

Log::Handler RillFSEventsIllogicalErrorLog::setHandler(Handler handler)
{
    const MutexLock lock(processHandler().mutex);
    return std::exchange(processHandler().handler, std::move(handler));
}

} // namespace quillon
