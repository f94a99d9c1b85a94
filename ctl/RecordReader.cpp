#include "ctl/RecordReader.h"

#include <cerrno>
#include <string>
#include <vector>

namespace quillon {

namespace {

constexpr std::size_t BLOCK = std::size_t{1} << 20;

} // namespace

std::error_code readRecords(std::FILE *stream, char separator,
                            const std::function<void(std::span<const std::string_view>)> &take)
{
    std::string buffer;
    std::vector<std::string_view> records;
    const auto addRecord = [&](std::string_view record) {
        if (!record.empty())
            records.push_back(record);
    };
    for (bool atEnd = false; !atEnd;) {
        // The buffer holds the beginning of a record whose end has not been read yet.
        const std::size_t begun = buffer.size();
        buffer.resize(begun + BLOCK);
        const std::size_t size = std::fread(buffer.data() + begun, 1, BLOCK, stream);
        buffer.resize(begun + size);
        if (size < BLOCK && std::ferror(stream) != 0)
            return {errno, std::generic_category()};
        atEnd = size < BLOCK;

        const std::string_view text = buffer;
        std::size_t start = 0;
        for (std::size_t end = text.find(separator, begun); end != std::string_view::npos;
             end = text.find(separator, start)) {
            addRecord(text.substr(start, end - start));
            start = end + 1;
        }
        if (atEnd)
            addRecord(text.substr(start));
        take(records);
        records.clear();
        buffer.erase(0, start);
    }
    return {};
}

} // namespace quillon
