#include "platform/linux/applications/GioProcessRunner.h"

#include "platform/linux/bus/ActivationToken.h"
#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QtGlobal>

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <string>

#include <sys/stat.h>

namespace quillon {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::HasSubstr;

namespace {

using Output = ProcessRunner::Output;

constexpr auto PATIENCE = 60s;

const LaunchToken NO_TOKEN;

/// Returns the outputs of a program that ends.
Output outputOf(ProcessRunner &runner, const ProcessRunner::Command &command)
{
    auto ended = std::make_shared<std::promise<Output>>();
    std::future<Output> output = ended->get_future();
    const auto failure = runner.run(command, [ended](const Output &all) { ended->set_value(all); });
    EXPECT_EQ(failure, std::nullopt);
    if (output.wait_for(PATIENCE) != std::future_status::ready) {
        ADD_FAILURE() << command.executable << " never ended";
        return {};
    }
    return output.get();
}

ProcessRunner::Command shell(const std::string &script, std::vector<std::string> arguments = {})
{
    arguments.insert(arguments.begin(), {"-c", script, "sh"});
    return {.executable = "/bin/sh", .arguments = std::move(arguments)};
}

} // namespace

TEST(GioProcessRunner, handsOverArgumentsAndCollectsBothOutputs)
{
    GioProcessRunner runner(NO_TOKEN);
    const Output output =
        outputOf(runner, shell(R"(printf '%s|' "$@"; printf 'oops\n' >&2; exit 3)",
                               {"a  \"b\"", "", "$c\n"}));
    EXPECT_EQ(output.standardOutput, "a  \"b\"||$c\n|");
    EXPECT_EQ(output.standardError, "oops\n");
    EXPECT_FALSE(output.isSuccess);
    EXPECT_EQ(
        outputOf(runner, shell(R"(printf '%s' "$1" | od -An -tx1)", {"\xff\n"})).standardOutput,
        " ff 0a\n");
}

TEST(GioProcessRunner, replacesWhatIsNoText)
{
    GioProcessRunner runner(NO_TOKEN);
    const Output output = outputOf(runner, shell(R"(printf 'caf\351 \303\251 \000.\342\202')"));
    EXPECT_EQ(output.standardOutput, "caf\uFFFD é \0.\uFFFD\uFFFD"s);
    EXPECT_EQ(output.standardError, "");
    EXPECT_TRUE(output.isSuccess);
}

TEST(GioProcessRunner, drainsMoreThanPipesHold)
{
    GioProcessRunner runner(NO_TOKEN);
    const Output output =
        outputOf(runner, shell("for i in 1 2 3 4; do head -c 200000 /dev/zero | tr '\\0' x;"
                               " head -c 200000 /dev/zero | tr '\\0' y >&2; done"));
    EXPECT_EQ(output.standardOutput, std::string(800000, 'x'));
    EXPECT_EQ(output.standardError, std::string(800000, 'y'));
}

TEST(GioProcessRunner, putsAFolderFirstOnThePathOfThatProgramAlone)
{
    const std::string path = qgetenv("PATH").toStdString();
    GioProcessRunner runner(NO_TOKEN);
    auto command = shell("printf '%s' \"$PATH\"");
    command.firstOnPath = "/first one";
    EXPECT_EQ(outputOf(runner, command).standardOutput, "/first one:" + path);
    EXPECT_EQ(outputOf(runner, shell("printf '%s' \"$PATH\"")).standardOutput, path);
}

TEST(GioProcessRunner, passesTheRightToTheKeyboardOn)
{
    LaunchToken token;
    GioProcessRunner runner(token);
    const auto command = shell("printf '%s' \"$XDG_ACTIVATION_TOKEN,$DESKTOP_STARTUP_ID\"");
    EXPECT_EQ(outputOf(runner, command).standardOutput, ",");
    token.set("a token");
    EXPECT_EQ(outputOf(runner, command).standardOutput, "a token,a token");
}

TEST(GioProcessRunner, tellsWhyAProgramDoesNotStart)
{
    const TemporaryFolder tree;
    const std::string plain = tree.writeFile("plain");
    GioProcessRunner runner(NO_TOKEN);
    for (const std::string &executable : {plain, tree.path("none"), tree.path()}) {
        const auto failure =
            runner.run({.executable = executable, .arguments = {}}, [](const Output &) { FAIL(); });
        ASSERT_TRUE(failure);
        EXPECT_THAT(*failure, HasSubstr(executable));
    }
}

TEST(GioProcessRunner, letsNothingWaitForAProgramThatNeverEnds)
{
    const TemporaryFolder tree;
    const std::string question = tree.path("question");
    const std::string answer = tree.path("answer");
    ASSERT_EQ(mkfifo(question.c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(answer.c_str(), 0600), 0);
    auto runner = std::make_unique<GioProcessRunner>(NO_TOKEN);
    ASSERT_EQ(
        runner->run(shell("read line <\"$1\"; echo \"still $line\" >\"$2\"", {question, answer}),
                    [](const Output &) { FAIL(); }),
        std::nullopt);
    EXPECT_EQ(outputOf(*runner, shell("echo on")).standardOutput, "on\n");
    runner.reset();

    std::ofstream(question) << "there\n";
    std::string line;
    std::ifstream stream(answer);
    std::getline(stream, line);
    EXPECT_EQ(line, "still there") << "the program outlives its watch";
}

} // namespace quillon
