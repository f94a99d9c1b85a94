#pragma once

#include "base/TextFolding.h"
#include "matching/ByteClasses.h"
#include "matching/FuzzyScore.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// Each of these types says how much of a query the beginning of a path holds, as a number from 0
// on. A search carries the number down the tree, and leaves out what lacks the rest of the query.

/// The query's bytes occur in the whole path in order. The number is that of the bytes so far,
/// since whoever takes each byte at its first occurrence misses no match.
class BytesInOrder
{
public:
    /// Returns the whole query as the only word.
    static std::vector<std::string_view> wordsOf(std::string_view query) { return {query}; }

    explicit BytesInOrder(std::string_view query) : query_(query), needed_(query.size() + 1)
    {
        unsigned slashes = 0;
        for (std::size_t i = query.size(); i-- > 0;) {
            slashes += query[i] == '/' ? 1U : 0U;
            needed_[i] = needed_[i + 1] | classesOf(query[i]) | levelClasses(slashes);
        }
    }

    /// Returns whether the path holds the whole query.
    bool isHeldBy(std::string_view path) const { return isSubsequence(query_, path); }
    bool isWhole(std::size_t held) const { return held == query_.size(); }
    /// Returns the classes of byte that the rest of the query needs.
    ByteClassSet needed(std::size_t held) const { return needed_[held]; }
    std::size_t behindName(std::size_t held, std::string_view name) const
    {
        for (const char byte : name) {
            if (isWhole(held))
                break;
            held += scoring::matchesByte(query_[held], byte) ? 1U : 0U;
        }
        return held;
    }
    std::size_t behindSlash(std::size_t held) const
    {
        return held < query_.size() && query_[held] == '/' ? held + 1 : held;
    }

private:
    std::string_view query_;
    std::vector<ByteClassSet> needed_;
};

/// Each word of the query occurs in some name, its bytes in order. The words are folded, and so are
/// the names. The number has a bit for each word.
class WordsInAnyOrder
{
public:
    /// Searches keep a table of all sets of words.
    static constexpr std::size_t MOST_WORDS = 8;

    /// Returns the words of a query, which are apart by single blanks.
    static std::vector<std::string_view> wordsOf(std::string_view query)
    {
        std::vector<std::string_view> words;
        while (!query.empty()) {
            const std::string_view word = query.substr(0, query.find(' '));
            words.push_back(word);
            query.remove_prefix(std::min(word.size() + 1, query.size()));
        }
        return words;
    }

    /// The query has at most MOST_WORDS words.
    explicit WordsInAnyOrder(std::string_view query)
        : words_(wordsOf(query)), needed_(std::size_t{1} << words_.size())
    {
        for (std::size_t held = 0; held < needed_.size(); ++held)
            for (std::size_t i = 0; i < words_.size(); ++i)
                needed_[held] |= (held >> i & 1) != 0 ? 0 : classesOf(words_[i]);
    }

    bool isHeldBy(std::string_view path) const
    {
        const std::optional<std::string> folded = foldedText(path);
        std::string_view rest = folded ? *folded : path;
        std::size_t held = 0;
        for (std::size_t slash = rest.find('/'); slash != rest.npos; slash = rest.find('/')) {
            held = behindName(held, rest.substr(0, slash));
            rest.remove_prefix(slash + 1);
        }
        return isWhole(behindName(held, rest));
    }
    bool isWhole(std::size_t held) const { return held + 1 == needed_.size(); }
    ByteClassSet needed(std::size_t held) const { return needed_[held]; }
    std::size_t behindName(std::size_t held, std::string_view name) const
    {
        for (std::size_t i = 0; i < words_.size(); ++i)
            if ((held >> i & 1) == 0 && isSubsequence(words_[i], name))
                held |= std::size_t{1} << i;
        return held;
    }
    static std::size_t behindSlash(std::size_t held) { return held; }

private:
    std::vector<std::string_view> words_;
    std::vector<ByteClassSet> needed_;
};

} // namespace quillon
