#include "shortcut/QLNShortcut.h"
#include "tests/support/SpokenLanguage.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;

struct Spoken
{
    const char *name;
    QStringList languages;
    const char16_t *placeholder;
    const char16_t *countOfOne;
    /// The text of one of the toolkit's own buttons.
    const char16_t *cancel;
    const char16_t *shortcut;
};

std::ostream &operator<<(std::ostream &stream, const Spoken &spoken)
{
    return stream << spoken.name;
}

class Translations : public testing::TestWithParam<Spoken>
{
private:
    const SpokenLanguage language_{GetParam().languages};
};

} // namespace

TEST_P(Translations, speakTheFirstLanguageThatThereIs)
{
    const Spoken &spoken = GetParam();
    EXPECT_EQ(QCoreApplication::translate("quillon::SearchPanelView", "Find a folder"),
              spoken.placeholder);
    EXPECT_EQ(QCoreApplication::translate("PanelTexts", "%Ln folder(s)", nullptr, 1),
              spoken.countOfOne);
    const bool isEnglish = spoken.placeholder == QStringView(u"Find a folder");
    EXPECT_EQ(QLocale().decimalPoint(), isEnglish ? u"."_s : u","_s);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), spoken.cancel);
    EXPECT_EQ(QLNShortcut::fromText("Ctrl+Alt+Space")->keyNames().join(u'+'), spoken.shortcut);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Translations,
    testing::Values(
        Spoken{"German",
               {u"de"_s},
               u"Ordner suchen",
               u"1 Ordner",
               u"Abbrechen",
               u"Strg+Alt+Leertaste"},
        Spoken{"Austrian",
               {u"de-AT"_s, u"en"_s},
               u"Ordner suchen",
               u"1 Ordner",
               u"Abbrechen",
               u"Strg+Alt+Leertaste"},
        Spoken{"Second",
               {u"tlh"_s, u"de"_s},
               u"Ordner suchen",
               u"1 Ordner",
               u"Abbrechen",
               u"Strg+Alt+Leertaste"},
        Spoken{"EnglishFirst",
               {u"en-GB"_s, u"de"_s},
               u"Find a folder",
               u"1 folder",
               u"Cancel",
               u"Ctrl+Alt+Space"},
        // A French button in an English window would be worse than an English one.
        Spoken{
            "Unknown", {u"fr-FR"_s}, u"Find a folder", u"1 folder", u"Cancel", u"Ctrl+Alt+Space"},
        Spoken{"None", {}, u"Find a folder", u"1 folder", u"Cancel", u"Ctrl+Alt+Space"}),
    testing::PrintToStringParamName());

} // namespace quillon
