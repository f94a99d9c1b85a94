#pragma once

#include "app/widgets/NoticeWindow.h"

#include <string>

namespace quillon {

class Notifications;
class RecentAccessScore;
class SearchBase;
class SearchBaseBuilder;
class TaskQueue;
class WindowSystem;
struct ActionFailure;

/// Says what could not be opened and what to do about it, in a notification of the desktop or, if
/// the desktop shows none, in a small window. The counted use is taken back, and a folder that is
/// gone is removed from the index. Main thread only.
class ActionFailures
{
public:
    struct Services
    {
        RecentAccessScore &recentAccessScore;
        /// Has counted the use before.
        TaskQueue &useQueue;
        SearchBase &searchBase;
        const SearchBaseBuilder &builder;
        Notifications &notifications;
        WindowSystem &windowSystem;
        /// The index is brought up to date on this queue, which must end before this object does.
        TaskQueue &background;
    };

    explicit ActionFailures(const Services &services);

    void report(const ActionFailure &failure);

private:
    void forgetInIndex(const std::string &path);

    Services services_;
    NoticeWindow window_;
};

} // namespace quillon
