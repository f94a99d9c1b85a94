#include "indexing/CrawlFolder.h"

namespace quillon {

CrawlFolder::Ref CrawlFolder::make(Ref parent, std::string_view name, CrawlRecord::Folder recorded)
{
    return Ref(new CrawlFolder(std::move(parent), name, recorded)); // owned by its references
}

void CrawlFolder::Ref::release(CrawlFolder *folder)
{
    while (folder != nullptr && folder->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        CrawlFolder *parent = std::exchange(folder->parent_.folder_, nullptr);
        delete folder;
        folder = parent;
    }
}

std::string CrawlFolder::path() const
{
    std::size_t size = name_.size();
    for (const CrawlFolder *folder = parent_.get(); folder != nullptr;
         folder = folder->parent_.get())
        size += folder->name_.size() + 1;
    std::string path(size, '/');
    for (const CrawlFolder *folder = this; folder != nullptr; folder = folder->parent_.get()) {
        size -= folder->name_.size();
        path.replace(size, folder->name_.size(), folder->name_);
        if (size > 0)
            --size; // the slash before it
    }
    return path;
}

} // namespace quillon
