#include "shortcut/QLNDictionaryTransformer.h"

#include <gmock/gmock.h>

#include <ostream>

namespace quillon {

using testing::Eq;
using testing::Optional;

namespace {

constexpr auto FROM_TEXT = &QLNShortcut::fromText;

DefaultsValue text(const char *value)
{
    return {std::string(value)};
}

DefaultsValue dictionary(DefaultsValue key, DefaultsValue modifiers)
{
    return {DefaultsDictionary{{"key", std::move(key)}, {"modifiers", std::move(modifiers)}}};
}

DefaultsValue list(std::initializer_list<const char *> words)
{
    DefaultsArray array;
    for (const char *word : words)
        array.push_back(text(word));
    return {std::move(array)};
}

struct WrittenCase
{
    const char *name;
    const char *written;
    KeyCombination keys;
    const char *shown;
};

void PrintTo(const WrittenCase &row, std::ostream *out) // NOLINT(readability-identifier-naming)
{
    *out << row.written;
}

class WrittenShortcut : public testing::TestWithParam<WrittenCase>
{};

} // namespace

TEST_P(WrittenShortcut, isReadShownAndStored)
{
    const WrittenCase &row = GetParam();
    const auto shortcut = QLNShortcut::fromText(row.written);
    ASSERT_THAT(shortcut, Optional(QLNShortcut{.keys = row.keys}));
    EXPECT_EQ(shortcut->text(), row.shown);
    EXPECT_THAT(FROM_TEXT(row.shown), Eq(shortcut));
    EXPECT_THAT(QLNDictionaryTransformer::shortcut(QLNDictionaryTransformer::storedForm(*shortcut)),
                Eq(shortcut));
}

INSTANTIATE_TEST_SUITE_P(
    , WrittenShortcut,
    testing::Values(
        WrittenCase{"usual",
                    "Ctrl+Alt+Space",
                    {.control = true, .alt = true, .key = "space"},
                    "Ctrl+Alt+Space"},
        WrittenCase{"anyCaseAndBlanks",
                    " alt + CTRL + z ",
                    {.control = true, .alt = true, .key = "z"},
                    "Ctrl+Alt+Z"},
        WrittenCase{"everyModifier",
                    "Super+Shift+Alt+Ctrl+1",
                    {.control = true, .alt = true, .shift = true, .super = true, .key = "1"},
                    "Ctrl+Alt+Shift+Super+1"},
        WrittenCase{"otherNames",
                    "Control+Option+Meta+PgUp",
                    {.control = true, .alt = true, .super = true, .key = "Prior"},
                    "Ctrl+Alt+Super+PageUp"},
        WrittenCase{"functionKey", "F12", {.key = "F12"}, "F12"},
        WrittenCase{"plus", "Ctrl++", {.control = true, .key = "+"}, "Ctrl++"},
        WrittenCase{"notAscii", "Ctrl+Ü", {.control = true, .key = "ü"}, "Ctrl+Ü"},
        WrittenCase{"withoutACapital", "Ctrl+ß", {.control = true, .key = "ß"}, "Ctrl+ß"},
        WrittenCase{
            "nameOfASymbol", "Super+KP_Add", {.super = true, .key = "KP_Add"}, "Super+KP_Add"}),
    [](const auto &row) { return row.param.name; });

TEST(QLNShortcut, refusesWhatIsNone)
{
    for (const char *written : {"", " ", "Ctrl+", "Ctrl+Alt", "Alt", "Hyper+Z", "+Z", "Ctrl+Alt+ "})
        EXPECT_FALSE(QLNShortcut::fromText(written)) << written;
}

TEST(QLNShortcut, mayBeTheDesktops)
{
    EXPECT_THAT(FROM_TEXT("Desktop"), Optional(QLNShortcut::boundByDesktop()));
    EXPECT_EQ(QLNDictionaryTransformer::storedForm(QLNShortcut::boundByDesktop()), text("desktop"));
}

TEST(QLNDictionaryTransformer, storesNamesThatAPersonCanRead)
{
    const QLNShortcut shortcut{.keys =
                                   KeyCombination{.control = true, .alt = true, .key = "space"}};
    const DefaultsValue stored = dictionary(text("space"), list({"Ctrl", "Alt"}));
    EXPECT_EQ(QLNDictionaryTransformer::storedForm(shortcut), stored);
    EXPECT_THAT(
        QLNDictionaryTransformer::shortcut(dictionary(text("Space"), list({"alt", "Control"}))),
        Optional(shortcut));
    EXPECT_THAT(QLNDictionaryTransformer::shortcut({DefaultsDictionary{{"key", text("F5")}}}),
                Optional(QLNShortcut{.keys = KeyCombination{.key = "F5"}}));
}

TEST(QLNDictionaryTransformer, refusesWhatIsNoShortcut)
{
    for (const DefaultsValue &stored :
         {DefaultsValue{true}, DefaultsValue{std::int64_t{65}}, list({"Ctrl", "Z"}),
          DefaultsValue{DefaultsDictionary{}}, dictionary(text(""), list({"Ctrl"})),
          dictionary({std::int64_t{65}}, list({"Ctrl"})), dictionary(text("z"), text("Ctrl")),
          dictionary(text("z"), list({"Hyper"})), dictionary(text("z"), {DefaultsArray{{true}}})})
        EXPECT_FALSE(QLNDictionaryTransformer::shortcut(stored)) << stored.description();
}

} // namespace quillon
