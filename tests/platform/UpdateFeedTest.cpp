#include "platform/linux/updates/UpdateFeed.h"

#include "tests/support/SignedFeed.h"

#include <gmock/gmock.h>

#include <ostream>

namespace quillon {

namespace {

using testing::Optional;

TEST(UpdateFeed, believesOnlyTheSignatureOfTheMakersOverEveryByte)
{
    const FeedSigner signer;
    const std::string feed = signer.sign("{\"items\": []}\n");
    const std::string key = signer.publicKey();
    EXPECT_THAT(signedPart(feed, key), Optional(std::string_view("{\"items\": []}\n")));

    EXPECT_EQ(signedPart(feed, FeedSigner(2).publicKey()), std::nullopt);
    for (std::size_t i = 0; i < feed.size(); ++i) {
        std::string changed = feed;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_EQ(signedPart(changed, key), std::nullopt) << "byte " << i;
        EXPECT_EQ(signedPart(feed.substr(0, i), key), std::nullopt) << "cut at " << i;
    }
    for (const std::string &more : {feed + "\n", "\n" + feed, " " + feed})
        EXPECT_EQ(signedPart(more, key), std::nullopt) << more;
}

TEST(UpdateFeed, refusesAKeyThatIsNone)
{
    const FeedSigner signer;
    const std::string feed = signer.sign("{}");
    const std::string key = signer.publicKey();
    for (const std::string &wrong :
         {std::string(), std::string("AAAA"), key.substr(1), key + "=", key + "\n", key + key})
        EXPECT_EQ(signedPart(feed, wrong), std::nullopt) << wrong;
}

TEST(UpdateFeed, endsAtItsLimitToTheByte)
{
    const FeedSigner signer;
    const std::size_t head = signer.sign("").size();
    const std::string largest(MAX_FEED_BYTES - head, ' ');
    EXPECT_NE(signedPart(signer.sign(largest), signer.publicKey()), std::nullopt);
    EXPECT_EQ(signedPart(signer.sign(largest + ' '), signer.publicKey()), std::nullopt);
}

TEST(UpdateFeed, knowsAListOfReleasesFromAnythingElse)
{
    for (const char *json :
         {"", "{", "[]", "null", "{}", R"({"items": {}})", R"({"items": "1.4.0"})",
          R"([{"version": "1.4.0", "url": "https://example.org/"}])"})
        EXPECT_FALSE(readReleases(json).has_value()) << json;
    for (const char *json : {R"({"items": []})", R"({"items": [null, 1, "x", [], {}]})"}) {
        const auto releases = readReleases(json);
        ASSERT_TRUE(releases.has_value()) << json;
        EXPECT_TRUE(releases->empty()) << json;
    }
}

struct ItemRow
{
    const char *name;
    /// The JSON fields of the one item in the feed.
    const char *fields;
    bool isTaken;

    friend std::ostream &operator<<(std::ostream &out, const ItemRow &row)
    {
        return out << row.name;
    }
};

class FeedItem : public testing::TestWithParam<ItemRow>
{};

TEST_P(FeedItem, isTakenWhenAllOfItIsInOrder)
{
    const auto releases = readReleases(std::string(R"({"items": [{)") + GetParam().fields + "}]}");
    ASSERT_TRUE(releases.has_value());
    EXPECT_EQ(releases->size(), GetParam().isTaken ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FeedItem,
    testing::Values(
        ItemRow{
            "everything",
            R"("version":"1.4","channel":"stable","url":"https://a.org/","notes":"https://b.org")",
            true},
        ItemRow{"withoutNotesAndChannel", R"("version":"1.4","url":"https://a.org/")", true},
        ItemRow{"beta", R"("version":"1.4","url":"https://a.org/","channel":"beta")", true},
        ItemRow{"unknownChannel", R"("version":"1.4","url":"https://a.org/","channel":"x")", false},
        ItemRow{"plainLink", R"("version":"1.4","url":"http://a.org/")", false},
        ItemRow{"linkToAFile", R"("version":"1.4","url":"file:///bin/sh")", false},
        ItemRow{"linkWithoutHost", R"("version":"1.4","url":"https:///a")", false},
        ItemRow{"relativeLink", R"("version":"1.4","url":"a.org")", false},
        ItemRow{"brokenLink", R"("version":"1.4","url":"https://a.org/ x")", false},
        ItemRow{"noLink", R"("version":"1.4")", false},
        ItemRow{"plainNotes", R"("version":"1.4","url":"https://a.org/","notes":"http://b.org/")",
                false},
        ItemRow{"noVersion", R"("url":"https://a.org/")", false},
        ItemRow{"versionAsNumber", R"("version":1.4,"url":"https://a.org/")", false},
        ItemRow{"versionWithATail", R"("version":"1.4-rc1","url":"https://a.org/")", false},
        ItemRow{"versionWithAHead", R"("version":"v1.4","url":"https://a.org/")", false},
        ItemRow{"versionWithAHole", R"("version":"1..4","url":"https://a.org/")", false},
        ItemRow{"versionWithASpace", R"("version":"1. 4","url":"https://a.org/")", false},
        ItemRow{"negativeVersion", R"("version":"1.-4","url":"https://a.org/")", false},
        ItemRow{"endlessVersion", R"("version":"1.99999999999999999999","url":"https://a.org/")",
                false}),
    [](const auto &row) { return std::string(row.param.name); });

struct VersionRow
{
    const char *name;
    const char *running;
    bool includesBetas;
    /// The newest version, or an empty text when nothing is newer.
    const char *newest;

    friend std::ostream &operator<<(std::ostream &out, const VersionRow &row)
    {
        return out << row.name;
    }
};

class NewestUpdate : public testing::TestWithParam<VersionRow>
{};

TEST_P(NewestUpdate, isTheHighestNumberAboveTheRunningOne)
{
    const auto releases = readReleases(R"({"items": [
        {"version": "1.4.0", "url": "https://a.org/"},
        {"version": "1.10.0", "url": "https://a.org/"},
        {"version": "1.9.1", "url": "https://a.org/"},
        {"version": "2.0", "url": "https://a.org/", "channel": "beta"},
        {"version": "1.5", "url": "https://a.org/", "channel": "beta"}]})");
    const auto running = readVersion(GetParam().running);
    ASSERT_TRUE(releases && running);
    const FeedRelease *newest = newestUpdate(*releases, *running, GetParam().includesBetas);
    EXPECT_EQ(newest ? newest->item.version : "", GetParam().newest);
}

INSTANTIATE_TEST_SUITE_P(Rows, NewestUpdate,
                         testing::Values(VersionRow{"older", "1.9.9", false, "1.10.0"},
                                         VersionRow{"same", "1.10.0", false, ""},
                                         VersionRow{"sameWrittenShorter", "1.10", false, ""},
                                         VersionRow{"newer", "1.10.1", false, ""},
                                         VersionRow{"betas", "1.10.1", true, "2.0"},
                                         VersionRow{"betaWrittenLonger", "2.0.0", true, ""}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace

} // namespace quillon
