#include "indexing/CrawlWorker.h"

#include "indexing/CrawlTeam.h"

#include <utility>

namespace quillon {

namespace {

bool isShortage(const std::error_code &error)
{
    return error == std::errc::too_many_files_open ||
           error == std::errc::too_many_files_open_in_system;
}

} // namespace

CrawlWorker::CrawlWorker(CrawlTeam &team)
    : team_(team), kept_(*team.task().rules, team.task().extensions)
{}

void CrawlWorker::run(bool isFirst, const std::function<void()> &betweenFolders)
{
    CrawlItem item;
    bool goesOn = !isFirst || visitRoot();
    // Another worker may take away what this one was given before it visits any of it.
    while (goesOn) {
        if (betweenFolders)
            betweenFolders();
        goesOn = take(item) ? visit(item) : team_.waitForWork(*this);
    }
    ended_ = true;
}

template <typename Call>
bool CrawlWorker::inCall(const Call &call)
{
    if (team_.isStopped())
        return false;
    std::uint64_t activity = activity_.load(std::memory_order_relaxed) + STATE + 1;
    activity_.store(activity | IN_CALL);
    activity |= IN_CALL;
    call();
    return activity_.compare_exchange_strong(activity, activity & ~STATE);
}

bool CrawlWorker::giveUp(std::uint64_t activity)
{
    return isInCall(activity) &&
           activity_.compare_exchange_strong(activity, (activity & ~STATE) | GIVEN_UP);
}

bool CrawlWorker::share(CrawlStack &given, bool everything)
{
    const MutexLock lock(mutex_);
    if (stack_.pending() < (everything ? 1U : 2U))
        return false;
    stack_.share(given);
    return true;
}

void CrawlWorker::receive(CrawlStack given)
{
    const MutexLock lock(mutex_);
    given.setMaxOpen(stack_.maxOpen());
    stack_ = std::move(given);
}

bool CrawlWorker::hasFoldersLeft()
{
    const MutexLock lock(mutex_);
    return stack_.pending() > 0;
}

std::string CrawlWorker::currentPath()
{
    const MutexLock lock(mutex_);
    return parent_ ? parent_->path() + "/" + name_ : std::string();
}

bool CrawlWorker::take(CrawlItem &item)
{
    const MutexLock lock(mutex_);
    if (!stack_.take(item))
        return false;
    parent_ = item.parent;
    name_ = item.name;
    recorded_.reset();
    return true;
}

bool CrawlWorker::visitRoot()
{
    const CrawlTeam::Task &task = team_.task();
    CrawlItem root = task.root;
    std::error_code error;
    std::shared_ptr<OpenFolder> folder;
    const auto wanted = task.extensions.isEmpty() ? FolderLister::Wanted::subfolders
                                                  : FolderLister::Wanted::everything;
    if (!inCall([&] { folder = task.folderLister.open(task.rootPath, wanted, error); }))
        return false;
    if (!takeStamp(folder.get()) || !recordBy(root, [&](CrawlRecord &record) {
            return record.enteredRoot(task.rootPath, stamp_);
        }))
        return false;
    if (!folder) {
        if (error) {
            giveUpListing();
            team_.report().rootNotOpened(error);
        } else if (task.names) {
            for (std::size_t i = 0; i < task.names->size(); ++i)
                team_.report().setKind(i, FolderLister::Kind::nothing);
        }
        return true;
    }
    team_.setRoot(folder);
    if (!(task.names ? lookAtNames(*folder, root) : readEntries(*folder, root, error)))
        return false;
    if (error)
        report(root, error, true);
    const bool goesOn = handOver(root);
    if (!error && !task.names)
        task.sink.listed(root.token, stamp_);
    if (goesOn)
        goInto(root, std::move(folder));
    return true;
}

bool CrawlWorker::visit(CrawlItem &item)
{
    if (team_.report().wantsPath())
        team_.report().setProcessing(item.path());
    bool isRecalled = false;
    if (!recall(item, isRecalled))
        return false;
    std::error_code error;
    std::unique_ptr<OpenFolder> folder;
    const bool isOpened = !isRecalled || kept_.leadsOn();
    if (isOpened && !openItem(item, folder, error))
        return false;
    while (isShortage(error) && team_.openFewer()) {
        error.clear();
        if (!openItem(item, folder, error))
            return false;
    }
    // A chain of folders keeps no folder open but the one it has reached.
    item.parentHandle.reset();
    if ((!isRecalled && !takeStamp(folder.get())) || !recordEntered(item))
        return false;
    if (folder && !isRecalled && !readEntries(*folder, item, error))
        return false;
    if (error)
        report(item, error, folder != nullptr);
    if (isOpened && !folder)
        return true;
    const bool goesOn = handOver(item);
    if (!error)
        team_.task().sink.listed(item.token, stamp_);
    if (goesOn)
        goInto(item, std::move(folder));
    return true;
}

template <typename Call>
bool CrawlWorker::recordBy(CrawlItem &item, const Call &call)
{
    CrawlRecord *record = team_.task().record.get();
    if (record == nullptr)
        return true;
    if (!inCall([&] { item.recorded = call(*record); }))
        return false;
    const MutexLock lock(mutex_);
    recorded_ = item.recorded;
    return true;
}

/// The folder is listed only after this call, so the record's stream reports what changes in it.
bool CrawlWorker::recordEntered(CrawlItem &item)
{
    return recordBy(item, [&](CrawlRecord &record) {
        return record.entered(item.parent->recorded(), item.name, stamp_);
    });
}

bool CrawlWorker::takeStamp(const OpenFolder *folder)
{
    stamp_ = {};
    const CrawlTeam::Task &task = team_.task();
    if (folder == nullptr || (!task.record && !task.sink.wantsStamps()))
        return true;
    return inCall([&] { stamp_ = folder->stamp(); });
}

/// Sets isKnown when the sink knows the folder by its stamp, so that it need not be opened.
bool CrawlWorker::recall(const CrawlItem &item, bool &isKnown)
{
    isKnown = false;
    if (!item.parentHandle || !team_.task().sink.remembers(item.token))
        return true;
    if (!inCall([&] { stamp_ = item.parentHandle->childStamp(item.name); }))
        return false;
    isKnown = this->isKnown(item);
    return true;
}

/// Takes the entries of a folder that has not changed from the sink, which remembers them.
bool CrawlWorker::isKnown(const CrawlItem &item)
{
    kept_.clear();
    const auto receive = [&](const CrawlSink::Entry &entry) { kept_.keep(entry, item); };
    return stamp_.isKnown() && team_.task().sink.knows(item.token, stamp_, receive);
}

void CrawlWorker::giveUpListing()
{
    const MutexLock lock(mutex_);
    CrawlRecord *record = team_.task().record.get();
    if (record == nullptr)
        return;
    if (recorded_)
        record->notListed(*recorded_);
    else if (parent_)
        record->notEntered(parent_->recorded(), name_);
}

void CrawlWorker::setMaxOpen(std::size_t count)
{
    const MutexLock lock(mutex_);
    stack_.setMaxOpen(count);
}

bool CrawlWorker::openItem(CrawlItem &item, std::unique_ptr<OpenFolder> &folder,
                           std::error_code &error)
{
    if (!item.parentHandle && !reopenParent(item, error))
        return false;
    return !item.parentHandle ||
           inCall([&] { folder = item.parentHandle->open(item.name, error); });
}

/// Opens the folder above the item again, on the way down from the root.
bool CrawlWorker::reopenParent(CrawlItem &item, std::error_code &error)
{
    std::vector<const CrawlFolder *> way;
    for (const CrawlFolder *folder = item.parent.get(); folder != nullptr;
         folder = folder->parent().get())
        way.push_back(folder);

    std::shared_ptr<const OpenFolder> handle = team_.rootHandle();
    std::size_t position = 0;
    for (auto folder = way.rbegin(); folder != way.rend(); ++folder) {
        if (folder != way.rbegin()) {
            std::unique_ptr<OpenFolder> next;
            if (!inCall([&] { next = handle->open((*folder)->name(), error); }))
                return false;
            if (!next)
                return true;
            handle = std::move(next);
        }
        const MutexLock lock(mutex_);
        stack_.reopened(position, **folder, handle);
    }
    item.parentHandle = std::move(handle);
    return true;
}

bool CrawlWorker::readEntries(OpenFolder &folder, const CrawlItem &item, std::error_code &error)
{
    if (isKnown(item))
        return true;
    kept_.clear();
    for (;;) {
        bool more = false;
        if (!inCall([&] { more = folder.read(batch_, error); }))
            return false;
        if (!more)
            return true;
        for (const FolderEntry &entry : batch_.entries)
            kept_.keep({.name = entry.name, .isFolder = entry.isFolder}, item);
    }
}

/// Keeps the names that the crawl is of, as far as they are there.
bool CrawlWorker::lookAtNames(const OpenFolder &folder, const CrawlItem &item)
{
    kept_.clear();
    const CrawlTeam::Task &task = team_.task();
    for (std::size_t i = 0; i < task.names->size(); ++i) {
        const std::string &name = (*task.names)[i];
        auto kind = FolderLister::Kind::unknown;
        if (!inCall([&] { kind = folder.kind(name); }))
            return false;
        const bool isFolder = kind == FolderLister::Kind::folder;
        const bool counts = (isFolder || kind == FolderLister::Kind::other) &&
                            kept_.keepNamed({.name = name, .isFolder = isFolder}, item);
        const bool isKept = counts || kind == FolderLister::Kind::unknown;
        team_.report().setKind(i, isKept ? kind : FolderLister::Kind::nothing);
    }
    return true;
}

/// Gives the sink what was kept. Returns false when there is no folder in it to go into.
bool CrawlWorker::handOver(const CrawlItem &item)
{
    if (kept_.isEmpty())
        return false;
    const CrawlTeam::Task &task = team_.task();
    const KeptEntries::Counts counts = kept_.handOver(task.sink, item.token);
    counts_.folders += counts.folders;
    counts_.files += counts.files;
    if (task.record && counts.items != 0)
        task.record->listed(item.recorded, counts.items);
    return !kept_.children().empty();
}

void CrawlWorker::goInto(const CrawlItem &item, std::shared_ptr<const OpenFolder> folder)
{
    CrawlFolder::Ref below = CrawlFolder::make(item.parent, item.name, item.recorded);
    bool canShare = false;
    {
        const MutexLock lock(mutex_);
        stack_.push(std::move(below), std::move(folder), kept_.children());
        canShare = stack_.pending() > 1;
    }
    if (canShare)
        team_.workAppeared();
}

void CrawlWorker::report(const CrawlItem &item, const std::error_code &error, bool isOpen)
{
    giveUpListing();
    const std::string path = item.path();
    if (isOpen)
        team_.report().notRead(path.empty() ? "/" : path, error);
    else
        team_.report().notOpened(path, error);
}

} // namespace quillon
