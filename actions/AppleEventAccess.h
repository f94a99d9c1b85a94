#pragma once

#include "base/DefaultsStore.h"
#include "prefs/PreferenceKeys.h"

namespace quillon {

/// Knows whether the user has been asked for consent to control the file manager. Safe from every
/// thread.
class AppleEventAccess
{
public:
    /// The error of an event that needs the user's consent first. It is not treated differently
    /// from other errors.
    // NOLINTNEXTLINE(readability-identifier-naming,bugprone-reserved-identifier)
    static constexpr int _id_errAEEventWouldRequireUserConsent = -1744;

    explicit AppleEventAccess(DefaultsStore &store) : store_(store) {}

    /// Returns true once the key has any value, even false.
    bool hasAskedForAccess() const
    {
        return store_.contains(PreferenceKeys::PREEMPTIVE_APPLE_EVENT_ACCESS);
    }
    /// Stores the consent for good. Returns false when it could not be written to the disk.
    bool enable()
    {
        return store_.set(PreferenceKeys::PREEMPTIVE_APPLE_EVENT_ACCESS, DefaultsValue{true});
    }

private:
    DefaultsStore &store_;
};

} // namespace quillon
