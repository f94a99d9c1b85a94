#pragma once

#include "platform/DefaultsChanges.h"

#include <utility>

namespace quillon {

/// Tells of changes when the test says so.
class FakeDefaultsChanges : public DefaultsChanges
{
public:
    void onChange(std::function<void()> changed) override { changed_ = std::move(changed); }
    void tell() { changed_(); }

private:
    std::function<void()> changed_;
};

} // namespace quillon
