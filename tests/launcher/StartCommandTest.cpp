#include "launcher/StartCommand.h"

#include "platform/RunningInstance.h"
#include "tests/support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

namespace quillon {

namespace {

using testing::HasSubstr;
using Outcome = RunningInstance::Outcome;

/// Records what it is asked, and answers as the test says.
class FakeInstance : public RunningInstance
{
public:
    explicit FakeInstance(Outcome outcome) : outcome_(outcome) {}

    bool isRunning() override
    {
        return outcome_ == Outcome::done || outcome_ == Outcome::notAnswering;
    }
    Outcome request(const std::string &action) override
    {
        requested += action;
        return outcome_;
    }
    RemoteAnswer find(const RemoteQuery &) override { return std::nullopt; }
    Outcome use(const std::string &, const std::string &) override { return Outcome::notRunning; }
    Opened open(const std::string &, const std::string &) override { return {}; }
    std::optional<std::string> status() override { return std::nullopt; }

    std::string requested;

private:
    Outcome outcome_;
};

struct Row
{
    const char *name;
    std::vector<const char *> arguments;
    Outcome instance;
    int status;
    /// The action that the running instance is asked for, and the action for which this process
    /// becomes the application.
    const char *requested;
    const char *started;
    const char *complaint = "";

    friend std::ostream &operator<<(std::ostream &out, const Row &row) { return out << row.name; }
};

class StartCommandTest : public testing::TestWithParam<Row>
{};

TEST_P(StartCommandTest, handsOverOrStarts)
{
    const Row &row = GetParam();
    FakeInstance instance(row.instance);
    CapturedOutput complaints;
    std::string started;
    const auto become = [&started](const std::string &action) {
        started += action;
        return std::string("it is gone");
    };
    std::vector<const char *> arguments{"quillon"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    EXPECT_EQ(StartCommand(instance, become, complaints.stream())
                  .run(static_cast<int>(arguments.size()), arguments.data()),
              row.status);
    EXPECT_EQ(instance.requested, row.requested);
    EXPECT_EQ(started, row.started);
    EXPECT_THAT(complaints.take(), HasSubstr(row.complaint));
}

INSTANTIATE_TEST_SUITE_P(
    , StartCommandTest,
    testing::Values(
        Row{"second", {}, Outcome::done, 0, "activate", ""},
        Row{"secondWithAction", {"--rebuild"}, Outcome::done, 0, "rebuild", ""},
        Row{"secondAtLogin", {"--background"}, Outcome::done, 0, "", ""},
        // Becoming another program returns only if it fails.
        Row{"first",
            {},
            Outcome::notRunning,
            1,
            "activate",
            "activate",
            "cannot be started: it is gone"},
        Row{"firstWithAction",
            {"--preferences"},
            Outcome::notRunning,
            1,
            "preferences",
            "preferences"},
        Row{"firstAtLogin", {"--background"}, Outcome::notRunning, 1, "", "background"},
        Row{"firstWithoutBus", {}, Outcome::noBus, 1, "activate", "activate"},
        Row{"toggleWithoutBus",
            {"--toggle"},
            Outcome::noBus,
            1,
            "toggle",
            "",
            "there is no session bus"},
        Row{"nothingToQuit", {"--quit"}, Outcome::notRunning, 1, "quit", "", "nothing to quit"},
        Row{"hangingInstance",
            {"--toggle"},
            Outcome::notAnswering,
            1,
            "toggle",
            "",
            "does not answer"},
        Row{"twoAtOnce", {"--toggle", "--quit"}, Outcome::done, 2, "", "", "quillon: "},
        Row{"unknown", {"--open"}, Outcome::done, 2, "", "", "--open"}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace

} // namespace quillon
