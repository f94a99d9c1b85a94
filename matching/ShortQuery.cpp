#include "matching/ShortQuery.h"

#include "base/Require.h"
#include "matching/FuzzyScore.h"

#include <bit>

namespace quillon {

ShortQuery::ShortQuery(std::string_view query)
    : rows_(query.size()), vectors_(std::bit_ceil((query.size() + lanes::COUNT - 1) / lanes::COUNT)), masks_(1)
{
    require(rows_ >= 1 && rows_ <= LONGEST, "a query reckoned in units has 1 to 32 bytes");
    for (std::size_t i = 0; i < rows_; ++i) {
        const char wanted = scoring::lower(query[i]);
        std::uint8_t &mask = maskOf_[static_cast<unsigned char>(wanted)];
        if (mask == 0) {
            mask = static_cast<std::uint8_t>(masks_.size());
            masks_.emplace_back();
        }
        masks_[mask][i / lanes::COUNT][i % lanes::COUNT] = -1;
    }
    for (unsigned char capital = 'A'; capital <= 'Z'; ++capital)
        maskOf_[capital] = maskOf_[static_cast<unsigned char>(capital - 'A' + 'a')];
    unsigned slashes = 0;
    for (std::size_t i = rows_; i-- > 0;) {
        const char byte = scoring::lower(query[i]);
        Row &row = queryRows_[i];
        slashes += byte == '/' ? 1U : 0U;
        row.needed = classesOf(byte) | levelClasses(slashes) | (i + 1 < rows_ ? queryRows_[i + 1].needed : 0);
        row.behindPrevious = i > 0 ? pairOf(query[i - 1], byte) : 0;
        for (const char separator : WORD_SEPARATORS) {
            row.behindAnySeparator |= pairOf(separator, byte);
            row.separatorBehindPrevious |= i > 0 ? pairOf(query[i - 1], separator) : 0;
        }
        row.isSlash = byte == '/';
        row.isSlashBehind = row.isSlash || (i + 1 < rows_ && queryRows_[i + 1].isSlashBehind);
        // Only letters and digits earn a bonus.
        if (scoring::bonus(byte, '/') > 0) {
            row.behindSlash = pairOf('/', byte);
            row.startsWord = wordStart(byte);
        }
    }
}

} // namespace quillon
