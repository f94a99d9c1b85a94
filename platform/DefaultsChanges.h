#pragma once

#include <functional>

namespace quillon {

/// Tells that the defaults store may hold other values than before, whoever changed them. Main
/// thread only.
class DefaultsChanges
{
public:
    DefaultsChanges() = default;
    virtual ~DefaultsChanges() = default;
    DefaultsChanges(const DefaultsChanges &) = delete;
    DefaultsChanges &operator=(const DefaultsChanges &) = delete;

    /// Calls back some time after a change, once for several close together. One receiver.
    virtual void onChange(std::function<void()> changed) = 0;
};

} // namespace quillon
