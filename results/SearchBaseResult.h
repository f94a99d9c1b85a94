#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

enum class SearchBaseResultType : std::uint8_t
{
    /// The row is a match among the items that the front file manager window shows.
    inFrontFinder,
    /// The row is a match from the index, or one of the most used folders.
    standard,
    /// The row is the query itself, offered as a path to go to.
    goToPath,
};

/// A run of characters, which are Unicode code points. An invalid byte counts as one.
struct TextRange
{
    std::int64_t location = 0;
    std::int64_t length = 0;
    friend bool operator==(const TextRange &, const TextRange &) = default;
};

/// One row of an answer. Rows are immutable and shared between threads, and nothing compares them
/// by value.
class SearchBaseResult
{
public:
    SearchBaseResult(std::string text, std::string path, std::vector<TextRange> highlightRanges,
                     SearchBaseResultType type, std::string awayFolder = {});
    SearchBaseResult(const SearchBaseResult &) = delete;
    SearchBaseResult &operator=(const SearchBaseResult &) = delete;

    /// Returns the bytes that are shown and matched. They are not necessarily valid UTF-8.
    const std::string &text() const { return text_; }
    /// Returns the ranges of text() to mark. They may overlap.
    const std::vector<TextRange> &highlightRanges() const { return highlightRanges_; }
    /// Returns the file or folder that an action works on.
    const std::string &path() const { return path_; }
    SearchBaseResultType type() const { return type_; }
    /// Returns the include folder, at or above the path, that is away, so that the path is not
    /// there now. While it is not known which folder is away, this is the path. The text is empty
    /// for every other row.
    const std::string &awayFolder() const { return awayFolder_; }

private:
    std::string text_;
    std::vector<TextRange> highlightRanges_;
    std::string path_;
    SearchBaseResultType type_;
    std::string awayFolder_;
};

using SearchBaseResultRef = std::shared_ptr<const SearchBaseResult>;

/// Returns the rows with those of the kept paths first, in the order of the paths. A kept path that
/// has no row gets one.
std::vector<SearchBaseResultRef> withKeptFirst(const std::vector<std::string> &kept,
                                               const std::vector<SearchBaseResultRef> &rows);

} // namespace quillon
