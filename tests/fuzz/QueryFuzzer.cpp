// Types any text into the panel's search, over an index of odd names. Every row is an indexed path
// or the text itself, and what is marked in it can be drawn.

#include "base/Require.h"
#include "results/RowText.h"
#include "tests/core/SearchBaseSupport.h"

#include <algorithm>
#include <cstdint>

namespace {

using namespace quillon;

constexpr std::size_t MOST_ROWS = 25;

const SearchBase &oddIndex()
{
    static SearchBaseOver<FakeFolderLister> base;
    static const bool IS_BUILT = [] {
        for (const char *name : {"a", "A B/c", "Übergröße/straße", "e\xcc\x81t\xc3\xa9",
                                 "\xff\xfe/odd\xc3", "tab\there",
                                 "\xe2\x80\xae"
                                 "turned",
                                 "日本語/フォルダ", "~", "-rf/--", "x.y/z_1/Q2024-05"})
            base.lister.add(std::string("/home/") + name);
        base.lister.add("/home/" + std::string(255, 'n'));
        base.includeFolders({"/home"});
        base.build();
        return true;
    }();
    require(IS_BUILT, "there is an index");
    return base.searchBase;
}

void checkRow(const SearchBaseResult &row, const std::string &query)
{
    if (row.type() == SearchBaseResultType::goToPath)
        require(query.find(row.path()) != std::string::npos, "a path to go to is what was typed");
    else
        require(row.path().starts_with("/home"), "a row is an indexed path");
    const RowText text = rowText(row, "/home");
    require(text.nameStart >= 0 && text.nameStart <= text.text.size(), "the name is in the text");
    int end = 0;
    for (const RowText::Span &span : text.matches) {
        require(span.start >= end && span.length > 0, "marks are in order");
        end = span.start + span.length;
    }
    require(end <= text.text.size(), "marks are in the text");
    require(!spokenText(row).isEmpty(), "every row can be read out");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string query(reinterpret_cast<const char *>(data), size);
    for (const MatchOrder order : {MatchOrder::path, MatchOrder::names}) {
        const auto plain = oddIndex().search(query, order);
        const auto withWords = oddIndex().searchWithWords(query, order);
        require(plain.size() <= MOST_ROWS && withWords.size() <= MOST_ROWS, "the list has an end");
        for (const auto &row : withWords)
            checkRow(*row, query);
        for (const auto &row : plain)
            require(std::ranges::any_of(withWords,
                                        [&](const auto &other) {
                                            return other->type() == row->type() &&
                                                   other->path() == row->path();
                                        }),
                    "words only add rows");
    }
    return 0;
}
