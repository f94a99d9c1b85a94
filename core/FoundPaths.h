#pragma once

#include "base/Mutex.h"
#include "indexing/CrawlSink.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// What a crawl kept, each path by its name and the folder above, which comes before it. Read once
/// the crawl is over.
class FoundPaths final : public CrawlSink
{
public:
    /// Of the crawled folder itself, whose paths are not counted.
    static constexpr Token ROOT = 0;

    Token root(const std::string &path) override;
    void add(Token parent, std::span<Entry> entries) override;

    /// Paths are numbered from 1 to this.
    Token last() const { return static_cast<Token>(paths_.size()); }
    Token parent(Token path) const { return paths_[path - 1].parent; }
    bool isFolder(Token path) const { return paths_[path - 1].isFolder; }
    std::string_view name(Token path) const;
    std::string text(Token path) const;

private:
    struct Path
    {
        std::size_t nameOffset = 0;
        std::uint32_t nameSize = 0;
        Token parent = ROOT;
        bool isFolder = false;
    };

    // Written under the lock, read when no one writes any more.
    Mutex mutex_;
    std::string root_;
    std::string names_;
    std::vector<Path> paths_;
};

} // namespace quillon
