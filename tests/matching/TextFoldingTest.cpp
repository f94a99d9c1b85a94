#include "base/TextFolding.h"

#include <gmock/gmock.h>

namespace quillon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Returns the folded text without the bytes that are left over, or the text where nothing changes.
std::string lettersOf(const std::string &text)
{
    std::string folded = foldedText(text).value_or(text);
    EXPECT_EQ(folded.size(), text.size()) << text;
    std::erase(folded, '\0');
    return folded;
}

TEST(TextFolding, takesAccentsOffAndKeepsTheLength)
{
    struct Row
    {
        const char *text;
        const char *folded;
    };
    for (const Row &row : std::initializer_list<Row>{
             {"Übergröße", "Ubergrosse"},
             {"u\u0308ber", "uber"},
             {"/home/Łódź/Œuvre", "/home/lodz/oeuvre"},
             {"Čeština ñandú", "Cestina nandu"},
             {"ЁЛКА", "елка"},
             {"ΑΘΉΝΑ", "αθηνα"},
             {"が", "か"},
             {"ﬁle", "file"},
             {"Ⅵ", "VI"},
         })
        EXPECT_EQ(lettersOf(row.text), row.folded) << row.text;
}

TEST(TextFolding, leavesAloneWhatItCannotFold)
{
    for (const char *text : {"", "plain ASCII", "Capitals STAY", "北京", "\xff\xfe", "a\xc3",
                             "\xed\xa0\x80", "한국", "Ⅷ", "／", "℀", "´", "\U0001f4c1"})
        EXPECT_EQ(foldedText(text), std::nullopt) << text;
    EXPECT_EQ(lettersOf("\xffÄ\xc3"), "\xff"
                                      "A"
                                      "\xc3")
        << "around bytes that are no characters";
}

TEST(TextFolding, cutsAQueryIntoWords)
{
    EXPECT_THAT(foldedWords("  Plans\u00a0HARBOUR\t/Übergröße//x "),
                ElementsAre("plans", "harbour", "ubergrosse", "x"));
    EXPECT_THAT(foldedWords(" /\u3000/\u0301"), IsEmpty());
    EXPECT_THAT(foldedWords("\xff \xc3"), ElementsAre("\xff", "\xc3"));
    EXPECT_THAT(foldedWords("a´b／c"), ElementsAre("a´b／c"));
}

} // namespace
} // namespace quillon
