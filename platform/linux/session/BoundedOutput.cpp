#include "platform/linux/session/BoundedOutput.h"

#include "base/Mutex.h"
#include "platform/linux/bus/Deadline.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The most bytes that wait, which is as much as a pipe holds.
constexpr std::size_t MOST_WAITING = 65536;
constexpr auto OUTPUT_DRAIN_TIME = 20ms;

void writeAll(int descriptor, const std::string &bytes)
{
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t count = write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno != EINTR)
            return; // the reader is gone
        written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

} // namespace

struct BoundedOutput::Lines
{
    explicit Lines(int of) : descriptor(of) {}

    const int descriptor;
    Mutex mutex;
    Condition changed;
    std::string waiting GUARDED_BY(mutex);
    bool isWriting GUARDED_BY(mutex) = false;
    bool isEnding GUARDED_BY(mutex) = false;
};

BoundedOutput::BoundedOutput(int descriptor) : lines_(new Lines(descriptor)), former_(stdout)
{
    cookie_io_functions_t functions{};
    functions.write = take;
    stream_ = fopencookie(lines_, "w", functions);
    if (!stream_)
        return;
    setvbuf(stream_, nullptr, _IOLBF, BUFSIZ);
    try {
        // A thread that hangs is left behind with what it uses until the process ends.
        std::thread([lines = lines_] { carryOn(*lines); }).detach();
    } catch (const std::system_error &) {
        // Without a thread, stdout stays as it was, and writers wait for the reader.
        std::fclose(std::exchange(stream_, nullptr));
        return;
    }
    stdout = stream_;
}

BoundedOutput::~BoundedOutput()
{
    if (!stream_)
        return;
    std::fflush(stream_);
    stdout = former_;
    const Deadline deadline(OUTPUT_DRAIN_TIME);
    const MutexLock lock(lines_->mutex);
    lines_->isEnding = true;
    lines_->changed.notifyAll();
    while ((lines_->isWriting || !lines_->waiting.empty()) && !deadline.hasPassed())
        lines_->changed.waitFor(lines_->mutex, deadline.remaining());
}

ssize_t BoundedOutput::take(void *lines, const char *bytes, std::size_t count)
{
    auto &all = *static_cast<Lines *>(lines);
    const MutexLock lock(all.mutex);
    if (all.waiting.size() + count <= MOST_WAITING)
        all.waiting.append(bytes, count);
    all.changed.notifyAll();
    return static_cast<ssize_t>(count);
}

void BoundedOutput::carryOn(Lines &lines)
{
    // The program must not end because the reader of its output is gone.
    sigset_t ignored;
    sigemptyset(&ignored);
    sigaddset(&ignored, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &ignored, nullptr);
    for (;;) {
        std::string bytes;
        {
            const MutexLock lock(lines.mutex);
            lines.isWriting = false;
            lines.changed.notifyAll();
            while (lines.waiting.empty() && !lines.isEnding)
                lines.changed.wait(lines.mutex);
            if (lines.waiting.empty())
                return;
            bytes.swap(lines.waiting);
            lines.isWriting = true;
        }
        writeAll(lines.descriptor, bytes);
    }
}

} // namespace quillon
