#include "shortcut/QLNShortcutValidator.h"

#include "tests/support/FakeHotKey.h"

#include <gmock/gmock.h>

namespace quillon {

using testing::HasSubstr;
using testing::Optional;
using Fault = QLNShortcutValidator::Fault;

namespace {

const KeyCombination PLAIN_CTRL_Z{.control = true, .key = "z"};

} // namespace

TEST(QLNShortcutValidator, wantsAModifierOrAFunctionKey)
{
    FakeHotKey keyboard;
    const QLNShortcutValidator validator(keyboard);
    for (const KeyCombination &keys :
         {KeyCombination{.key = "z"}, KeyCombination{.shift = true, .key = "z"},
          KeyCombination{.key = "Return"}, KeyCombination{.key = "f"}})
        EXPECT_THAT(validator.fault(keys), Optional(Fault::needsModifier)) << keys.key;
    for (const KeyCombination &keys :
         {PLAIN_CTRL_Z, KeyCombination{.alt = true, .key = "z"},
          KeyCombination{.super = true, .key = "z"}, KeyCombination{.key = "F12"},
          KeyCombination{.shift = true, .key = "F1"}, KeyCombination{.key = "XF86Search"}})
        EXPECT_FALSE(validator.fault(keys)) << keys.key;
}

TEST(QLNShortcutValidator, triesTheKeyAndGivesItBack)
{
    FakeHotKey keyboard;
    keyboard.taken = PLAIN_CTRL_Z;
    const QLNShortcutValidator validator(keyboard);
    EXPECT_THAT(validator.fault(PLAIN_CTRL_Z), Optional(Fault::inUse));
    EXPECT_FALSE(validator.fault(KeyCombination{.key = "F1"}));
    EXPECT_FALSE(keyboard.grabbed());
    EXPECT_EQ(keyboard.grabs, 2);
}

TEST(QLNShortcutValidator, triesNothingWhereTheUserWouldBeAsked)
{
    FakeHotKey keyboard;
    keyboard.isAnswering = false;
    const QLNShortcutValidator validator(keyboard);
    EXPECT_FALSE(validator.fault(PLAIN_CTRL_Z));
    keyboard.possible = false;
    EXPECT_THAT(validator.fault(PLAIN_CTRL_Z), Optional(Fault::impossible));
    EXPECT_EQ(keyboard.grabs, 0);
}

TEST(QLNShortcutValidator, saysWhatIsWrongAboutWhichKeys)
{
    const QLNShortcut shortcut{.keys = PLAIN_CTRL_Z};
    for (const Fault fault : {Fault::needsModifier, Fault::inUse, Fault::noSuchKey, Fault::refused})
        EXPECT_THAT(QLNShortcutValidator::words(fault, shortcut).toStdString(),
                    HasSubstr("Ctrl+Z"));
    EXPECT_THAT(QLNShortcutValidator::words(Fault::impossible, shortcut).toStdString(),
                HasSubstr("quillon --toggle"));
}

} // namespace quillon
