#include "actions/AppleScriptRunner.h"

#include "tests/support/FakeFileManager.h"

#include <QCryptographicHash>

#include <gmock/gmock.h>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

std::string sha256(const std::string &text)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

Texts texts(const AppleEventDescriptor &list)
{
    Texts found;
    for (std::size_t place = 1; place <= list.numberOfItems(); ++place)
        found.push_back(list.at(place).stringValue().value_or("no text"));
    return found;
}

class Scripts : public testing::Test
{
protected:
    FakeFileManager fileManager_;
    AppleScriptRunner runner_{fileManager_};
};

TEST_F(Scripts, keepTheirTexts)
{
    struct Row
    {
        const AppleScript &script;
        std::size_t characters;
        const char *hash;
    };
    for (const Row &row :
         {Row{runner_.openInExistingFinderWindowAppleScript, 400,
              "b85c0050d624b4f5952c1129732cca427b6354f8d529ef185cdc501009783fe8"},
          Row{runner_.getPathsInCurrentFinderWindowAppleScript, 427,
              "46ffcc05cefc625e12b1db74992ed533630a979b1fedbec2ec50d1e10be1700c"},
          Row{runner_.testAccessToFinderAppleScript, 151,
              "e38f050c17436fc90867c28ed44f6a8a442c1b1e3ea1f40c0f2b8bd9ba51b174"}}) {
        EXPECT_EQ(row.script.source().size(), row.characters);
        EXPECT_EQ(sha256(row.script.source()), row.hash) << row.script.source();
        EXPECT_TRUE(row.script.isCompiled());
    }
}

TEST_F(Scripts, doWhatTheirHandlersAreNamedFor)
{
    const std::string folder = "/a \"b\"\n\xff";
    const auto opened = AppleScriptRunner::callHandler(
        runner_.openInExistingFinderWindowAppleScript, "openInExistingFinderWindow", {folder});
    EXPECT_EQ(opened, AppleEventDescriptor());
    EXPECT_THAT(fileManager_.takeCalls(), ElementsAre("front " + folder));

    for (const Texts &items : {Texts{}, Texts{"/a/", "/b.txt", "/\xff\n"}}) {
        fileManager_.items = items;
        auto listed =
            AppleScriptRunner::callHandler(runner_.getPathsInCurrentFinderWindowAppleScript,
                                           "getPathsInCurrentFinderWindow", {""});
        ASSERT_TRUE(listed);
        listed = std::move(*listed).coerceToList();
        ASSERT_TRUE(listed);
        EXPECT_EQ(texts(*listed), items);
    }

    fileManager_.takeCalls();
    EXPECT_TRUE(AppleScriptRunner::callHandler(runner_.testAccessToFinderAppleScript,
                                               "testAccessToFinderAppleScript", {""}));
    EXPECT_THAT(fileManager_.takeCalls(), ElementsAre("probe"));
}

TEST_F(Scripts, giveNothingBackOnFailure)
{
    const auto &script = runner_.openInExistingFinderWindowAppleScript;
    const std::string handler = "openInExistingFinderWindow";
    EXPECT_FALSE(AppleScriptRunner::callHandler(script, "getPathsInCurrentFinderWindow", {"/a"}));
    EXPECT_FALSE(AppleScriptRunner::callHandler(script, handler, {})) << "an argument is missing";
    EXPECT_THAT(fileManager_.takeCalls(), IsEmpty());

    fileManager_.isWorking = false;
    EXPECT_FALSE(AppleScriptRunner::callHandler(script, handler, {"/a"}));
    EXPECT_FALSE(AppleScriptRunner::callHandler(runner_.testAccessToFinderAppleScript,
                                                "testAccessToFinderAppleScript", {""}));
}

TEST(AppleScript, compilesOnlyTheHandlersThatAreKnown)
{
    const AppleScript::Operations operations = {
        {"known", [](const AppleEvent &) { return AppleEventDescriptor(); }}};
    for (const char *source : {"on known()", "on known(a)\nend known", "on known(a, b)"})
        EXPECT_TRUE(AppleScript(source, operations).isCompiled()) << source;
    for (const char *source : {"", "known(a)", "on unknown(a)", "on known", "on known(a) then",
                               "tell Finder\non known(a)", "on knownToo(a)"}) {
        const AppleScript script(source, operations);
        EXPECT_FALSE(script.isCompiled()) << source;
        EXPECT_FALSE(AppleScriptRunner::callHandler(script, "known", {"x", "y"})) << source;
    }
}

TEST(AppleScript, isCalledByASubroutineEventWithTheArgumentsInOrder)
{
    std::optional<AppleEvent> received;
    const AppleScript script("on f(a, b)\nend f", {{"f", [&received](const AppleEvent &event) {
                                                        received = event;
                                                        return AppleEventDescriptor("done");
                                                    }}});
    auto result = AppleScriptRunner::callHandler(script, "f", {"one", "two", "three"});
    ASSERT_TRUE(received);
    EXPECT_EQ(received->eventClass, "ascr");
    EXPECT_EQ(received->eventId, "psbr");
    EXPECT_EQ(received->returnId, -1);
    EXPECT_EQ(received->transactionId, 0);
    ASSERT_EQ(received->parameters.size(), 2U);
    EXPECT_EQ(received->parameters["snam"], AppleEventDescriptor("f"));
    EXPECT_THAT(texts(received->parameters["----"]), ElementsAre("one", "two", "three"));

    ASSERT_TRUE(result);
    result = std::move(*result).coerceToList();
    ASSERT_TRUE(result);
    EXPECT_THAT(texts(*result), ElementsAre("done")) << "a text is a list of one";
    EXPECT_FALSE(AppleEventDescriptor().coerceToList());

    received->eventId = "none";
    EXPECT_FALSE(script.executeAppleEvent(*received));
}

} // namespace

} // namespace quillon
