#include "platform/linux/applications/GioProcessRunner.h"

#include "base/Utf8.h"
#include "platform/linux/applications/StartedProgram.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/GioPointers.h"

#include <atomic>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

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

std::string text(GBytes *bytes)
{
    gsize size = 0;
    const auto *data = static_cast<const char *>(g_bytes_get_data(bytes, &size));
    return size == 0 ? std::string() : replacingInvalidUtf8({data, size});
}

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
        GBytes *output = nullptr;
        GBytes *error = nullptr;
        if (!g_subprocess_communicate(process_.get(), nullptr, cancellable_.get(), &output, &error,
                                      nullptr))
            return;
        ended({.standardOutput = text(output),
               .standardError = text(error),
               .isSuccess = g_subprocess_get_successful(process_.get()) != FALSE});
        g_bytes_unref(output);
        g_bytes_unref(error);
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
