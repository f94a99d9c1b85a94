#include "indexing/CrawlTeam.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time between two checks of the workers, and between two "Processing" messages.
constexpr auto TICK = 17ms;
/// The time that a stop waits for a call into the file system.
constexpr auto STOP_GRACE = 100ms;
/// At most this many calls that do not return are waited for at the same time.
constexpr std::size_t MAX_MEMBERS = 16;
/// The number of folders that a worker may keep open even when descriptors are scarce.
constexpr std::size_t LEAST_OPEN = 4;

} // namespace

CrawlTeam::CrawlTeam(Task task, const CrawlOptions &options)
    : task_(std::move(task)),
      options_(options),
      report_(task_.rootPath, task_.names, task_.reportsProgress)
{}

CrawlResult CrawlTeam::run(const Crawler::Progress &progress, const std::stop_token &stop)
{
    {
        const std::stop_callback whenStopped(stop, [this] { requestStop(); });
        if (!start())
            crawlAlone(progress);
        while (!isOver()) {
            waitAWhile();
            report_.deliver(progress);
        }
    }
    endThreads();
    report_.deliver(progress);
    return total();
}

/// One thread is enough to crawl. Returns false when the system has none to give.
bool CrawlTeam::start()
{
    const MutexLock lock(mutex_);
    while (!stopped_ && members_.size() < options_.threads && addMember()) {
    }
    return stopped_ || !members_.empty();
}

/// Crawls on the thread that called run(). A call that does not return blocks it, since no other
/// thread is there to notice.
void CrawlTeam::crawlAlone(const Crawler::Progress &progress)
{
    CrawlWorker *worker = nullptr;
    {
        const MutexLock lock(mutex_);
        members_.push_back({.worker = std::make_unique<CrawlWorker>(*this)});
        worker = members_.back().worker.get();
        worker->setMaxOpen(maxOpen_);
    }
    Clock::time_point next = Clock::now();
    worker->run(true, [&] {
        if (Clock::now() < next)
            return;
        report_.deliver(progress);
        next = Clock::now() + TICK;
    });
}

bool CrawlTeam::isOver()
{
    const MutexLock lock(mutex_);
    return finished_ || stopped_;
}

void CrawlTeam::waitAWhile()
{
    const MutexLock lock(mutex_);
    if (!finished_ && !stopped_)
        over_.waitFor(mutex_, TICK);
    if (!finished_ && !stopped_)
        lookAfterMembers();
}

CrawlResult CrawlTeam::total()
{
    const MutexLock lock(mutex_);
    CrawlResult result = report_.result();
    if (!finished_)
        result.outcome = CrawlResult::Outcome::stopped;
    for (const Member &member : members_) {
        result.folders += member.worker->counts().folders;
        result.files += member.worker->counts().files;
    }
    return result;
}

bool CrawlTeam::addMember()
{
    auto worker = std::make_unique<CrawlWorker>(*this);
    worker->setMaxOpen(maxOpen_);
    const auto life = [team = shared_from_this(), worker = worker.get(),
                       isFirst = members_.empty()] {
        worker->run(isFirst);
        const MutexLock lock(team->mutex_);
        team->over_.notifyAll();
    };
    try {
        std::thread thread(life);
        members_.push_back({std::move(worker), std::move(thread), 0, Clock::now(), false});
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

// Idle workers

bool CrawlTeam::waitForWork(CrawlWorker &worker)
{
    const MutexLock lock(mutex_);
    // The worker is counted before it looks, so that a worker that gets something to share
    // afterwards sees the count and wakes it.
    ++idle_;
    for (;;) {
        told_ = false;
        if (finished_ || stopped_)
            return false;
        if (takeFromOthers(worker)) {
            --idle_;
            return true;
        }
        if (idle_ == aliveMembers()) {
            finish();
            return false;
        }
        work_.wait(mutex_);
    }
}

bool CrawlTeam::takeFromOthers(CrawlWorker &worker)
{
    CrawlStack given;
    for (const Member &member : members_) {
        const bool everything = member.isStalled || member.worker->isGivenUp();
        if (member.worker.get() != &worker && member.worker->share(given, everything)) {
            worker.receive(std::move(given));
            return true;
        }
    }
    return false;
}

void CrawlTeam::workAppeared()
{
    if (idle_ > 0 && !told_.exchange(true)) {
        const MutexLock lock(mutex_);
        work_.notifyAll();
    }
}

bool CrawlTeam::openFewer()
{
    const MutexLock lock(mutex_);
    if (maxOpen_ <= LEAST_OPEN)
        return false;
    maxOpen_ /= 2;
    for (const Member &member : members_)
        member.worker->setMaxOpen(maxOpen_);
    return true;
}

std::size_t CrawlTeam::aliveMembers()
{
    return static_cast<std::size_t>(std::ranges::count_if(
        members_, [](const Member &member) { return !member.worker->isGivenUp(); }));
}

void CrawlTeam::finish()
{
    finished_ = true;
    work_.notifyAll();
    over_.notifyAll();
}

// Workers whose call into the file system does not return

/// Returns how many are stalled.
std::size_t CrawlTeam::observeMembers()
{
    const Clock::time_point now = Clock::now();
    std::size_t stalled = 0;
    for (Member &member : members_) {
        const std::uint64_t activity = member.worker->activity();
        if (member.worker->isGivenUp())
            continue;
        if (activity != member.activity || !CrawlWorker::isInCall(activity)) {
            member.activity = activity;
            member.since = now;
            member.isStalled = false;
        } else if (now - member.since >= options_.stall) {
            if (!member.isStalled)
                work_.notifyAll(); // what it has left is now everyone's
            member.isStalled = true;
            ++stalled;
        }
    }
    return stalled;
}

bool CrawlTeam::isAnythingLeft()
{
    return std::ranges::any_of(
        members_, [](const Member &member) { return member.worker->hasFoldersLeft(); });
}

void CrawlTeam::lookAfterMembers()
{
    const std::size_t stalled = observeMembers();
    if (stalled == 0 && aliveMembers() > 0)
        return;
    const bool isLeft = isAnythingLeft();
    if (isLeft && idle_ == 0 && aliveMembers() - stalled < options_.threads &&
        aliveMembers() < MAX_MEMBERS) {
        addMember();
        return;
    }
    if (idle_ + stalled < aliveMembers())
        return;
    // No worker makes progress. Waiting for several calls costs no more than waiting for one.
    for (Member &member : members_)
        if (member.isStalled && Clock::now() - member.since >= options_.patience)
            giveUp(member);
    if (!isLeft && idle_ == aliveMembers())
        finish();
}

void CrawlTeam::giveUp(Member &member)
{
    if (!member.worker->giveUp(member.activity))
        return;
    member.isStalled = false;
    member.worker->giveUpListing();
    const std::string path = member.worker->currentPath();
    if (path.empty())
        report_.rootTimedOut();
    else
        report_.notRead(path, std::make_error_code(std::errc::timed_out));
}

// The end

void CrawlTeam::requestStop()
{
    const MutexLock lock(mutex_);
    stopped_ = true;
    work_.notifyAll();
    over_.notifyAll();
}

bool CrawlTeam::isEveryoneGone()
{
    return std::ranges::all_of(members_, [](const Member &member) {
        return member.worker->hasEnded() || member.worker->isGivenUp();
    });
}

void CrawlTeam::endThreads()
{
    const Clock::time_point deadline = Clock::now() + STOP_GRACE;
    std::vector<std::thread> threads;
    {
        const MutexLock lock(mutex_);
        while (!isEveryoneGone()) {
            over_.waitFor(mutex_, TICK);
            if (Clock::now() < deadline)
                continue;
            for (const Member &member : members_)
                member.worker->giveUp(member.worker->activity());
        }
        for (Member &member : members_) {
            if (member.worker->isGivenUp())
                member.thread.detach();
            else if (member.thread.joinable())
                threads.push_back(std::move(member.thread));
        }
    }
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace quillon
