#pragma once

#include "platform/FSEventStream.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace quillon {

/// A folder that a crawl has visited, given by its name and the folder above it. It never changes.
/// Threads share it, and whatever is still to be visited below it holds it.
class CrawlFolder
{
public:
    /// Shares a folder. Releasing the last reference below a long chain of folders uses no
    /// recursion.
    class Ref
    {
    public:
        Ref() = default;
        Ref(const Ref &other) : folder_(other.folder_) { acquire(); }
        Ref(Ref &&other) noexcept : folder_(std::exchange(other.folder_, nullptr)) {}
        Ref &operator=(Ref other) noexcept
        {
            std::swap(folder_, other.folder_);
            return *this;
        }
        ~Ref() { release(std::exchange(folder_, nullptr)); }

        explicit operator bool() const { return folder_ != nullptr; }
        const CrawlFolder *operator->() const { return folder_; }
        const CrawlFolder *get() const { return folder_; }

    private:
        friend class CrawlFolder;
        explicit Ref(CrawlFolder *folder) : folder_(folder) { acquire(); }
        void acquire() const
        {
            if (folder_ != nullptr)
                folder_->references_.fetch_add(1, std::memory_order_relaxed);
        }
        static void release(CrawlFolder *folder);

        CrawlFolder *folder_ = nullptr;
    };

    /// The name of a root, which has no folder above, is its path; the name of "/" is empty.
    static Ref make(Ref parent, std::string_view name, CrawlRecord::Folder recorded = 0);

    const Ref &parent() const { return parent_; }
    const std::string &name() const { return name_; }
    /// Returns the record's number for the folder. It means nothing in a crawl that is not
    /// recorded.
    CrawlRecord::Folder recorded() const { return recorded_; }
    /// Returns what comes before "/" in the path of anything in the folder; empty for "/".
    std::string path() const;

private:
    CrawlFolder(Ref parent, std::string_view name, CrawlRecord::Folder recorded)
        : recorded_(recorded), parent_(std::move(parent)), name_(name)
    {}

    std::atomic<std::uint32_t> references_ = 0;
    CrawlRecord::Folder recorded_;
    Ref parent_;
    std::string name_;
};

} // namespace quillon
