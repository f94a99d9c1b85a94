#include "platform/linux/settings/StateWindowPlaces.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillon {

namespace {

constexpr WindowPlace PLACE{.left = -20, .top = 10, .width = 640, .height = 480};

TEST(StateWindowPlaces, remembersEachWindow)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("state/windows.json");
    EXPECT_TRUE(StateWindowPlaces(path).remember("one", PLACE));
    StateWindowPlaces places(path);
    EXPECT_EQ(places.place("one"), PLACE);
    EXPECT_EQ(places.place("two"), std::nullopt);
    EXPECT_TRUE(places.remember("two", {.left = 1, .top = 2, .width = 3, .height = 4}));
    EXPECT_EQ(places.place("one"), PLACE);
    EXPECT_EQ(places.place("two")->height, 4);
}

TEST(StateWindowPlaces, takesNothingThatIsNoPlace)
{
    const TemporaryFolder folder;
    for (const std::string text :
         {"[1, 2, 3]", "[1, 2, 3, 4, 5]", "[1, 2, 0, 4]", "[1, 2, 3, -4]", "[1, 2, 3.5, 4]",
          "[1, 2, 3, 99999999999]", R"(["1", 2, 3, 4])", "true"}) {
        const StateWindowPlaces places(folder.writeFile("windows.json", "{\"one\": " + text + "}"));
        EXPECT_EQ(places.place("one"), std::nullopt) << text;
    }
}

TEST(StateWindowPlaces, standApartFromTheSettings)
{
    const char *const former = std::getenv("XDG_STATE_HOME");
    const std::string kept = former ? former : "";
    ::setenv("XDG_STATE_HOME", "/some/state", 1);
    EXPECT_EQ(standardWindowPlacesPath(), "/some/state/quillon/windows.json");
    ::setenv("XDG_STATE_HOME", "not/absolute", 1);
    EXPECT_TRUE(standardWindowPlacesPath().ends_with("/.local/state/quillon/windows.json"));
    if (former)
        ::setenv("XDG_STATE_HOME", kept.c_str(), 1);
    else
        ::unsetenv("XDG_STATE_HOME");
}

} // namespace

} // namespace quillon
