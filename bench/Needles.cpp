#include "bench/Needles.h"

namespace quillon::bench {

const std::vector<Needle> &needles()
{
    static const std::vector<Needle> NEEDLES = {
        {"e", "one letter"},
        {"q", "one letter"},
        {"/", "one separator"},
        {"7", "one digit"},
        {"do", "prefix"},
        {"doc", "prefix"},
        {"pic", "prefix"},
        {"har", "prefix"},
        {"val", "prefix"},
        {"docs", "word"},
        {"harbour", "word"},
        {"invoices", "word"},
        {"compiler", "word"},
        {"scheduler", "word"},
        {"locale", "word"},
        {"messages", "word"},
        {"aer", "spread letters"},
        {"sln", "spread letters"},
        {"prjsrc", "spread letters"},
        {"hrbpl", "spread letters"},
        {"quickharbour", "several words"},
        {"harbour plans", "several words"},
        {"taxes 2019", "several words"},
        {"great-engine", "several words"},
        {"2019-07", "date"},
        {"2024 lake", "date"},
        {"src/main", "slashes"},
        {"a/b/c", "slashes"},
        {"/home/alex", "slashes"},
        {"doc/tax/20", "slashes"},
        {"lib/core/api", "slashes"},
        {"Documents", "capitals"},
        {"RAW", "capitals"},
        {"LC", "capitals"},
        {"QuickHarbour", "capitals"},
        {"zoo", "rare"},
        {"qwzx", "rare"},
        {"vividzoo", "rare"},
        {"zzzzqqq", "never"},
        {"@#", "never"},
        {"\xc3\xa4\xc3\xb6", "never"},
        {"\xff\xfe", "never"},
        {"/home/alex/Projects/quick-harbour/src/main/java/org", "long"},
        {"projectspackageslibcorecommoninternalapi", "long"},
        {"eeeeee", "each letter frequent"},
        {"aeiou", "each letter frequent"},
        {"s/s/s/s", "each letter frequent"},
        {"erasniterasni", "each letter frequent"},
        {"////////", "each letter frequent"},
    };
    return NEEDLES;
}

const std::vector<Needle> &wordNeedles()
{
    static const std::vector<Needle> NEEDLES = {
        {"plans harbour", "two words"},
        {"main src", "two words"},
        {"api core lib", "three words"},
        {"java src harbour plans", "four words"},
        {"2019 taxes", "word and year"},
        {"e a", "letters"},
        {"s r e", "letters"},
        {"a b c d e f g h", "letters"},
        {"\xc3\x9c\x62\x65rgr\xc3\xb6\xc3\x9f", "accents"},
        {"engine", "one word"},
        {"qwzx zoo", "never"},
    };
    return NEEDLES;
}

} // namespace quillon::bench
