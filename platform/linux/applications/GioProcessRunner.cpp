#include "platform/linux/applications/GioProcessRunner.h"

#include "base/Utf8.h"
#include "platform/linux/applications/StartedProgram.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/GioPointers.h"

#include <gio/gunixinputstream.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

namespace quillon {

namespace {

/// Shells use this PATH when there is none.
constexpr std::string_view USUAL_PATH = "/usr/local/bin:/usr/bin:/bin";

std::string pathBeginningWith(const std::string &folder)
{
    const char *path = g_getenv("PATH");
    return folder + ":" + (path ? path : std::string(USUAL_PATH));
}

ObjectRef<GSubprocess> start(const ProcessRunner::Command &command, const std::string &token,
                             ErrorRef &error)
{
    const ObjectRef<GSubprocessLauncher> launcher(g_subprocess_launcher_new(
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDIN_INHERIT | G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                         G_SUBPROCESS_FLAGS_STDERR_PIPE)));
    g_subprocess_launcher_set_child_setup(
        launcher.get(), [](gpointer) { takeAllSignals(); }, nullptr, nullptr);
    if (!command.firstOnPath.empty())
        g_subprocess_launcher_setenv(launcher.get(), "PATH",
                                     pathBeginningWith(command.firstOnPath).c_str(), true);
    for (const char *variable : ACTIVATION_VARIABLES) {
        if (!token.empty())
            g_subprocess_launcher_setenv(launcher.get(), variable, token.c_str(), true);
    }
    std::vector<const char *> words{command.executable.c_str()};
    for (const std::string &argument : command.arguments)
        words.push_back(argument.c_str());
    words.push_back(nullptr);
    GError *failure = nullptr;
    ObjectRef<GSubprocess> process(
        g_subprocess_launcher_spawnv(launcher.get(), words.data(), &failure));
    error.reset(failure);
    return process;
}

/// Reads what a program writes into its two outputs.
class Outputs
{
public:
    explicit Outputs(GSubprocess *process)
        : files_{{{fileOf(g_subprocess_get_stdout_pipe(process)), G_IO_IN, 0},
                  {fileOf(g_subprocess_get_stderr_pipe(process)), G_IO_IN, 0},
                  {-1, 0, 0}}}
    {}

    /// Returns when no process holds the outputs open any more, or when that is cancelled.
    void read(GCancellable *cancellable)
    {
        const bool canBeCancelled = g_cancellable_make_pollfd(cancellable, &files_.back()) != FALSE;
        while ((files_[0].fd >= 0 || files_[1].fd >= 0) &&
               !g_cancellable_is_cancelled(cancellable)) {
            // The kernel lacks memory where this fails for another reason than a signal.
            if (g_poll(files_.data(), static_cast<guint>(files_.size()), -1) < 0) {
                std::this_thread::sleep_for(PAUSE);
                continue;
            }
            for (std::size_t i = 0; i < texts_.size(); ++i)
                if (files_[i].fd >= 0 && files_[i].revents != 0)
                    readOne(files_[i], texts_[i]);
        }
        if (canBeCancelled)
            g_cancellable_release_fd(cancellable);
    }
    std::string text(std::size_t number) const { return replacingInvalidUtf8(texts_[number]); }

private:
    static constexpr std::chrono::milliseconds PAUSE{10};

    static int fileOf(GInputStream *pipe)
    {
        return g_unix_input_stream_get_fd(G_UNIX_INPUT_STREAM(pipe));
    }
    /// Reads a piece of what is there. Without anything there, a pipe would block.
    static void readOne(GPollFD &file, std::string &text)
    {
        constexpr std::size_t PIECE = 65536; // as much as a pipe holds
        std::array<char, PIECE> piece{};
        const ssize_t count = ::read(file.fd, piece.data(), piece.size());
        if (count > 0)
            text.append(piece.data(), static_cast<std::size_t>(count));
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            file.fd = -1;
    }

    /// The two outputs, and what reports that reading is cancelled.
    std::array<GPollFD, 3> files_;
    std::array<std::string, 2> texts_;
};

} // namespace

/// One running program and the thread that reads its outputs while it waits for its end.
class GioProcessRunner::Watch
{
public:
    Watch(ObjectRef<GSubprocess> process, const Ended &ended)
        : process_(std::move(process)), cancellable_(g_cancellable_new())
    {
        try {
            thread_ = std::thread([this, ended] {
                collect(ended);
                hasEnded_ = true;
            });
        } catch (const std::system_error &) {
            // Where the system has no thread to give, the caller waits for the program's end.
            collect(ended);
            hasEnded_ = true;
        }
    }
    ~Watch()
    {
        g_cancellable_cancel(cancellable_.get());
        if (thread_.joinable())
            thread_.join();
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    bool hasEnded() const { return hasEnded_; }

private:
    void collect(const Ended &ended)
    {
        Outputs outputs(process_.get());
        outputs.read(cancellable_.get());
        if (!g_subprocess_wait(process_.get(), cancellable_.get(), nullptr))
            return;
        ended({.standardOutput = outputs.text(0),
               .standardError = outputs.text(1),
               .isSuccess = g_subprocess_get_successful(process_.get()) != FALSE});
    }

    ObjectRef<GSubprocess> process_;
    ObjectRef<GCancellable> cancellable_;
    std::atomic<bool> hasEnded_ = false;
    /// This is the last member, since the thread uses the others from its start.
    std::thread thread_;
};

GioProcessRunner::GioProcessRunner(const LaunchToken &token) : token_(token) {}
GioProcessRunner::~GioProcessRunner() = default;

std::optional<std::string> GioProcessRunner::run(const Command &command, Ended ended)
{
    ErrorRef error;
    ObjectRef<GSubprocess> process = start(command, token_.text(), error);
    if (!process)
        return error->message;
    const MutexLock lock(mutex_);
    std::erase_if(watches_, [](const auto &watch) { return watch->hasEnded(); });
    watches_.push_back(std::make_unique<Watch>(std::move(process), ended));
    return std::nullopt;
}

} // namespace quillon
