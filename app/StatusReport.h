#pragma once

#include "base/Mutex.h"
#include "core/SearchBaseBuilder.h"

#include <chrono>
#include <optional>
#include <string>

namespace quillon {

class SearchBase;

/// Tells other processes what the program knows about itself. It lives on the main thread.
class StatusReport : private SearchBaseBuildObserver
{
public:
    StatusReport(const SearchBase &searchBase, SearchBaseBuilder &builder, std::string version);
    ~StatusReport() override;

    /// Returns a JSON object. Its members are those that quillonctl(1) describes; unknown ones are
    /// left out. Any thread may call this.
    std::string json() const EXCLUDES(mutex_);

private:
    void buildBegan() override;
    void indexRestored() override;
    void buildEnded() override;
    void becomeAnswering() REQUIRES(mutex_);

    const SearchBase &searchBase_;
    SearchBaseBuilder &builder_;
    const std::string version_;
    mutable Mutex mutex_;
    const char *state_ GUARDED_BY(mutex_) = "waiting";
    std::optional<SearchBaseBuilder::Build> lastBuild_ GUARDED_BY(mutex_);
    /// The time from the start of the program until it could answer a search.
    std::optional<std::chrono::duration<double>> firstAnswer_ GUARDED_BY(mutex_);
};

} // namespace quillon
