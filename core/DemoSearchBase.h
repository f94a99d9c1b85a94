#pragma once

#include "core/SearchBase.h"

namespace quillon {

/// A search base that shows made-up folders and never reads the disk for a build. It serves for
/// screenshots and for trying things out.
class DemoSearchBase final : public SearchBase
{
public:
    using SearchBase::SearchBase;

    void build(const Progress &progress, const std::stop_token &stop = {}) override;
};

} // namespace quillon
