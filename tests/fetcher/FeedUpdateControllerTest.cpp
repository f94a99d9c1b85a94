#include "platform/linux/updates/FeedUpdateController.h"

#include "tests/fetcher/FeedServer.h"
#include "tests/support/Needs.h"
#include "tests/support/SignedFeed.h"
#include "tests/support/TemporaryFolder.h"

#include <QTcpServer>
#include <QTest>

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <memory>
#include <ostream>
#include <regex>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr int PATIENCE = 60000; // milliseconds, for what takes far less
constexpr auto SHORT_PATIENCE = 1000ms;

const char *const RELEASES = R"({"items": [
    {"version": "1.4.0", "channel": "stable", "url": "https://example.org/1.4.0"},
    {"version": "1.5.0", "channel": "beta", "url": "https://example.org/1.5.0"}]}
)";

const char *name(NoUpdate reason)
{
    static constexpr std::array NAMES = {"upToDate", "notConfigured", "unreachable", "tooSlow",
                                         "insecure", "refused",       "notGenuine",  "unreadable"};
    return NAMES.at(static_cast<std::size_t>(reason));
}

class RecordingDelegate : public UpdateControllerDelegate
{
public:
    bool includesBetas = false;
    /// Each outcome is "found VERSION" or the reason, with "!" when the check was interactive.
    std::vector<std::string> outcomes;
    int questions = 0;
    std::function<void()> told;

    std::vector<FeedParameter> feedParameters() override
    {
        ++questions;
        return {{.key = "beta",
                 .value = includesBetas ? "true" : "false",
                 .displayKey = "Betas",
                 .displayValue = "Yes"}};
    }
    void didFindValidUpdate(const UpdateItem &item, bool isInteractive) override
    {
        note("found " + item.version, isInteractive);
    }
    void didNotFindUpdate(NoUpdate reason, bool isInteractive) override
    {
        note(name(reason), isInteractive);
    }

private:
    void note(const std::string &outcome, bool isInteractive)
    {
        outcomes.push_back(outcome + (isInteractive ? "!" : ""));
        if (told)
            told();
    }
};

} // namespace

class UpdateCheck : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (!isInstalled("openssl"))
            return;
        folder = std::make_unique<TemporaryFolder>();
        server = std::make_unique<FeedServer>(folder->path());
        serveReleases();
    }
    void SetUp() override { QUILLON_NEEDS_TOOL("openssl"); }
    static void TearDownTestSuite()
    {
        server.reset();
        folder.reset();
    }
    static void serveReleases();

    std::unique_ptr<FeedUpdateController> controllerFor(const std::string &feed,
                                                        const std::string &version = "1.3.9",
                                                        std::chrono::milliseconds patience = 60s)
    {
        auto controller = std::make_unique<FeedUpdateController>(
            FeedUpdateController::Source{feed, FeedSigner().publicKey(), version},
            FeedUpdateController::Fetching{FETCH_FEED, patience, server->certificate()});
        controller->start(delegate);
        return controller;
    }
    /// Returns the outcome of a background check.
    std::string outcomeOf(FeedUpdateController &controller)
    {
        const std::size_t before = delegate.outcomes.size();
        controller.checkInBackground();
        const bool isTold =
            QTest::qWaitFor([&] { return delegate.outcomes.size() > before; }, PATIENCE);
        return isTold ? delegate.outcomes.back() : "nothing in time";
    }

    static std::unique_ptr<TemporaryFolder> folder;
    static std::unique_ptr<FeedServer> server;
    RecordingDelegate delegate;
};

std::unique_ptr<TemporaryFolder> UpdateCheck::folder;
std::unique_ptr<FeedServer> UpdateCheck::server;

void UpdateCheck::serveReleases()
{
    const std::string feed = FeedSigner().sign(RELEASES);
    const auto redirect = [](const std::string &target) {
        return [target](QSslSocket &socket) {
            FeedServer::reply(socket, "302 Found", "Location: " + target + "\r\n", {});
        };
    };
    server->setBody("/feed", feed);
    server->setBody("/forged", FeedSigner(2).sign(RELEASES));
    std::string changed = feed;
    changed[changed.find("1.4.0")] = '9';
    server->setBody("/changed", changed);
    server->setBody("/truncated", feed.substr(0, feed.size() - 1));
    server->setBody("/empty", {});
    server->setBody("/huge", std::string(400000, '\0'));
    server->setBody("/no-feed", FeedSigner().sign("1.4.0"));
    server->setAnswer("/moved", redirect("/feed"));
    server->setAnswer("/in-the-clear", redirect("http://localhost/feed"));
    server->setAnswer("/round-and-round", redirect("/round-and-round"));
    server->setAnswer("/broken-off", [](QSslSocket &socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nshort");
        socket.disconnectFromHost();
    });
    server->setAnswer("/without-end", [](QSslSocket &socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        QObject::connect(&socket, &QSslSocket::encryptedBytesWritten, &socket,
                         [&socket] { socket.write(QByteArray(65536, 'A')); });
    });
    server->setAnswer("/hanging", [](QSslSocket &) {});
    server->setAnswer("/drop-by-drop", [](QSslSocket &socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        auto *drops = new QTimer(&socket);
        QObject::connect(drops, &QTimer::timeout, &socket, [&socket] { socket.write("A"); });
        drops->start(100);
    });
}

struct CheckRow
{
    const char *name;
    const char *path;
    const char *running;
    bool includesBetas;
    const char *outcome;

    friend std::ostream &operator<<(std::ostream &out, const CheckRow &row)
    {
        return out << row.name;
    }
};

class UpdateCheckOf : public UpdateCheck, public testing::WithParamInterface<CheckRow>
{};

TEST_P(UpdateCheckOf, comesTo)
{
    delegate.includesBetas = GetParam().includesBetas;
    const auto controller = controllerFor(server->address(GetParam().path), GetParam().running);
    EXPECT_EQ(outcomeOf(*controller), GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, UpdateCheckOf,
    testing::Values(CheckRow{"newer", "/feed", "1.3.9", false, "found 1.4.0"},
                    CheckRow{"newerBeta", "/feed", "1.3.9", true, "found 1.5.0"},
                    CheckRow{"same", "/feed", "1.4.0", false, "upToDate"},
                    CheckRow{"sameBeta", "/feed", "1.5.0", true, "upToDate"},
                    CheckRow{"older", "/feed", "1.6", true, "upToDate"},
                    CheckRow{"forged", "/forged", "1.3.9", false, "notGenuine"},
                    CheckRow{"changed", "/changed", "1.3.9", false, "notGenuine"},
                    CheckRow{"truncated", "/truncated", "1.3.9", false, "notGenuine"},
                    CheckRow{"empty", "/empty", "1.3.9", false, "notGenuine"},
                    CheckRow{"huge", "/huge", "1.3.9", false, "refused"},
                    CheckRow{"withoutEnd", "/without-end", "1.3.9", false, "refused"},
                    CheckRow{"noFeed", "/no-feed", "1.3.9", false, "unreadable"},
                    CheckRow{"missing", "/missing", "1.3.9", false, "refused"},
                    CheckRow{"moved", "/moved", "1.3.9", false, "found 1.4.0"},
                    CheckRow{"inTheClear", "/in-the-clear", "1.3.9", false, "insecure"},
                    CheckRow{"roundAndRound", "/round-and-round", "1.3.9", false, "refused"},
                    CheckRow{"brokenOff", "/broken-off", "1.3.9", false, "unreachable"},
                    CheckRow{"ofNoVersion", "/feed", "unknown", false, "unreadable"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(UpdateCheck, endsWhenTheWholeAnswerTakesTooLong)
{
    for (const char *path : {"/hanging", "/drop-by-drop"}) {
        const auto controller = controllerFor(server->address(path), "1.3.9", SHORT_PATIENCE);
        EXPECT_EQ(outcomeOf(*controller), "tooSlow") << path;
    }
}

TEST_F(UpdateCheck, trustsNobodyWhoCannotShowWhoTheyAre)
{
    const auto otherName = controllerFor(server->address("/feed", "127.0.0.1"));
    EXPECT_EQ(outcomeOf(*otherName), "insecure") << "the certificate is for another name";

    FeedUpdateController everyday({server->address("/feed"), FeedSigner().publicKey(), "1.3.9"},
                                  {.program = FETCH_FEED, .patience = 60s});
    everyday.start(delegate);
    EXPECT_EQ(outcomeOf(everyday), "insecure") << "an authority that the system does not know";

    const auto inTheClear = controllerFor("http" + server->address("/feed").substr(5));
    EXPECT_EQ(outcomeOf(*inTheClear), "insecure");
}

TEST_F(UpdateCheck, reachesNobody)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const std::string address = "https://localhost:" + std::to_string(closed.serverPort()) + "/";
    closed.close();
    EXPECT_EQ(outcomeOf(*controllerFor(address)), "unreachable");

    FeedUpdateController crippled({server->address("/feed"), FeedSigner().publicKey(), "1.3.9"},
                                  {.program = "/nonexistent/fetch-feed"});
    crippled.start(delegate);
    EXPECT_EQ(outcomeOf(crippled), "unreachable");
}

TEST_F(UpdateCheck, withoutAFeedStartsNothing)
{
    const std::string trace = folder->path("trace");
    const std::string program = folder->writeFile("program", "#!/bin/sh\ntouch " + trace + "\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    FeedUpdateController controller({}, {.program = program});
    controller.start(delegate);
    controller.checkInteractively();
    EXPECT_THAT(delegate.outcomes, testing::IsEmpty()) << "never within the call";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !delegate.outcomes.empty(); }, PATIENCE));
    EXPECT_THAT(delegate.outcomes, ElementsAre("notConfigured!"));
    EXPECT_EQ(delegate.questions, 1);
    EXPECT_FALSE(std::filesystem::exists(trace));
}

TEST_F(UpdateCheck, runsOnceForAllWhoAskMeanwhile)
{
    const std::size_t before = server->requests().size();
    const auto controller = controllerFor(server->address("/feed?os=linux"));
    controller->checkInBackground();
    controller->checkInteractively();
    controller->checkInBackground();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !delegate.outcomes.empty(); }, PATIENCE));
    delegate.includesBetas = true;
    EXPECT_EQ(outcomeOf(*controller), "found 1.5.0");
    EXPECT_THAT(delegate.outcomes, ElementsAre("found 1.4.0!", "found 1.5.0"));
    EXPECT_EQ(delegate.questions, 2);
    const std::vector<std::string> asked(
        server->requests().begin() + static_cast<std::ptrdiff_t>(before), server->requests().end());
    EXPECT_THAT(asked, ElementsAre("/feed?os=linux&beta=false", "/feed?os=linux&beta=true"));
}

TEST_F(UpdateCheck, canBeAskedForAgainByWhoIsTold)
{
    const auto controller = controllerFor(server->address("/feed"));
    delegate.told = [&] {
        if (delegate.outcomes.size() == 1)
            controller->checkInteractively();
    };
    controller->checkInBackground();
    ASSERT_TRUE(QTest::qWaitFor([&] { return delegate.outcomes.size() == 2; }, PATIENCE));
    EXPECT_THAT(delegate.outcomes, ElementsAre("found 1.4.0", "found 1.4.0!"));
}

TEST_F(UpdateCheck, endsWithItsController)
{
    const std::size_t requests = server->requests().size();
    auto controller = controllerFor(server->address("/hanging"));
    controller->checkInBackground();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server->requests().size() > requests; }, PATIENCE));
    const int departures = server->departures();
    controller.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->departures() > departures; }, PATIENCE));
    EXPECT_THAT(delegate.outcomes, testing::IsEmpty());
}

TEST_F(UpdateCheck, acceptsWhatTheCommandsOfTheManualSign)
{
    std::ifstream manual(UPDATES_MANUAL);
    const std::string text(std::istreambuf_iterator<char>(manual), {});
    const auto blocks = [&text](const std::string &kind) {
        const std::regex block("```" + kind + "\n([^`]*)```");
        std::string all;
        for (std::sregex_iterator match(text.begin(), text.end(), block), end; match != end;
             ++match)
            all += (*match)[1];
        return all;
    };
    const TemporaryFolder place;
    place.writeFile("items.json", blocks("json"));
    QProcess shell;
    shell.setWorkingDirectory(QString::fromStdString(place.path()));
    shell.start(u"sh"_s, {u"-e"_s, u"-c"_s, QString::fromStdString(blocks("sh"))});
    ASSERT_TRUE(shell.waitForFinished(PATIENCE));
    ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString();
    std::string key = shell.readAllStandardOutput().trimmed().toStdString();

    server->setBody("/manual", place.readFile("feed"));
    FeedUpdateController controller({server->address("/manual"), key, "1.3.9"},
                                    {FETCH_FEED, 60s, server->certificate()});
    controller.start(delegate);
    EXPECT_EQ(outcomeOf(controller), "found 1.4.0");
}

} // namespace quillon
