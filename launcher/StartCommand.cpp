#include "launcher/StartCommand.h"

#include "platform/RunningInstance.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdlib>
#include <utility>

namespace quillon {

namespace {

constexpr int USAGE_ERROR = 2;

struct Option
{
    const char *name;
    const char *help;
    bool isGiven = false;

    /// The option has the name of the action.
    std::string action() const { return name + 2; }
};

} // namespace

StartCommand::StartCommand(RunningInstance &instance, BecomeApplication becomeApplication,
                           std::FILE *complaints)
    : instance_(instance), becomeApplication_(std::move(becomeApplication)), complaints_(complaints)
{}

int StartCommand::run(int argc, const char *const *argv) const
{
    std::array options{Option{"--toggle", "Show the panel, or hide it when it is shown"},
                       Option{"--show", "Show the panel"},
                       Option{"--preferences", "Open the preferences"},
                       Option{"--rebuild", "Build the index anew"},
                       Option{"--quit", "End the running instance"},
                       Option{"--background", "Start without showing anything, as at login"}};
    CLI::App parser("Finds folders by a part of their name and opens them.", "quillon");
    parser.set_version_flag("--version", "quillon " QUILLON_VERSION, "Print the version and exit");
    for (Option &option : options)
        parser.add_flag(option.name, option.isGiven, option.help);
    parser.require_option(0, 1);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::Success &success) {
        return parser.exit(success);
    } catch (const CLI::ParseError &error) {
        std::fprintf(complaints_, "quillon: %s\n", error.what());
        return USAGE_ERROR;
    }
    for (const Option &option : options) {
        if (option.isGiven)
            return carryOut(option.action());
    }
    return carryOut("activate");
}

int StartCommand::carryOut(const std::string &action) const
{
    const bool isSeen = action != "background";
    if (!isSeen && instance_.isRunning())
        return EXIT_SUCCESS;
    const auto outcome = isSeen ? instance_.request(action) : RunningInstance::Outcome::notRunning;
    if (outcome == RunningInstance::Outcome::done)
        return EXIT_SUCCESS;
    if (outcome == RunningInstance::Outcome::notAnswering) {
        std::fputs("quillon: the running instance does not answer\n", complaints_);
        return EXIT_FAILURE;
    }
    // Without a bus, plain "quillon" starts the application, which checks by itself whether another
    // instance is running.
    if (outcome == RunningInstance::Outcome::noBus && action != "activate") {
        std::fputs("quillon: there is no session bus, so a running instance cannot be reached\n",
                   complaints_);
        return EXIT_FAILURE;
    }
    if (action == "quit") {
        std::fputs("quillon: nothing to quit, it is not running\n", complaints_);
        return EXIT_FAILURE;
    }
    const std::string reason = becomeApplication_(action);
    std::fprintf(complaints_, "quillon: the application cannot be started: %s\n", reason.c_str());
    return EXIT_FAILURE;
}

} // namespace quillon
