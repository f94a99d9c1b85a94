#include "matching/ShortQuery.h"

#include "base/Require.h"
#include "matching/FuzzyScore.h"

#include <bit>

namespace quillon {

ShortQuery::ShortQuery(const std::vector<std::string_view> &words) : masks_(1)
{
    for (const std::string_view word : words) {
        firstRowOf_[words_++] = static_cast<std::uint8_t>(rows_);
        addWord(word);
    }
    require(rows_ >= 1, "a query reckoned in units has a byte");
    vectors_ = std::bit_ceil((rows_ + lanes::COUNT - 1) / lanes::COUNT);
    for (unsigned char capital = 'A'; capital <= 'Z'; ++capital)
        maskOf_[capital] = maskOf_[static_cast<unsigned char>(capital - 'A' + 'a')];
}

void ShortQuery::addWord(std::string_view word)
{
    require(rows_ + word.size() <= LONGEST, "a query reckoned in units has up to 32 bytes");
    unsigned slashes = 0;
    for (std::size_t i = word.size(); i-- > 0;) {
        const char byte = scoring::lower(word[i]);
        const std::size_t at = rows_ + i;
        Row &row = queryRows_[at];
        row.isFirst = i == 0;
        row.isLast = i + 1 == word.size();
        firstRows_[at / lanes::COUNT][at % lanes::COUNT] = row.isFirst ? -1 : 0;
        lastRows_[at / lanes::COUNT][at % lanes::COUNT] = row.isLast ? -1 : 0;
        std::uint8_t &mask = maskOf_[static_cast<unsigned char>(byte)];
        if (mask == 0) {
            mask = static_cast<std::uint8_t>(masks_.size());
            masks_.emplace_back();
        }
        masks_[mask][at / lanes::COUNT][at % lanes::COUNT] = -1;

        slashes += byte == '/' ? 1U : 0U;
        row.needed =
            classesOf(byte) | levelClasses(slashes) | (row.isLast ? 0 : queryRows_[at + 1].needed);
        for (const char separator : WORD_SEPARATORS) {
            row.behindAnySeparator.add(pairOf(separator, byte));
            if (!row.isFirst)
                row.separatorBehindPrevious.add(pairOf(word[i - 1], separator));
        }
        if (!row.isFirst)
            row.behindPrevious = pairOf(word[i - 1], byte);
        row.behindSlash = pairOf('/', byte);
        row.startsWord = wordStart(byte);
        row.earnsBonus = scoring::bonus(byte, '/') > 0;
        row.isSlash = byte == '/';
        row.isSlashBehind = slashes > 0;
    }
    rows_ += word.size();
}

int ShortQuery::sumOfHighest(const Vectors &vectors) const
{
    int sum = 0;
    for (std::size_t word = 0; word < words_; ++word) {
        const std::size_t end = word + 1 < words_ ? firstRowOf_[word + 1] : rows_;
        int highest = at(vectors, firstRowOf_[word]);
        for (std::size_t i = firstRowOf_[word] + std::size_t{1}; i < end; ++i)
            highest = std::max(highest, at(vectors, i));
        sum += highest;
    }
    return sum;
}

} // namespace quillon
