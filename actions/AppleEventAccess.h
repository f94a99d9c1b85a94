#pragma once

#include "base/DefaultsStore.h"
#include "prefs/PreferenceKeys.h"

namespace quillon {

/// Whether the user has been asked about what is sent to the file manager. Safe from every thread.
class AppleEventAccess
{
public:
    /// The error of an event that would need the user's consent first. Carried along: a call that
    /// fails is handled alike whatever the reason.
    // NOLINTNEXTLINE(readability-identifier-naming,bugprone-reserved-identifier)
    static constexpr int _id_errAEEventWouldRequireUserConsent = -1744;

    explicit AppleEventAccess(DefaultsStore &store) : store_(store) {}

    /// True once anything stands under the key, a false as well.
    bool hasAskedForAccess() const
    {
        return store_.contains(PreferenceKeys::PREEMPTIVE_APPLE_EVENT_ACCESS);
    }
    /// The answer stays for good; false when it could not be brought to the disk.
    bool enable()
    {
        return store_.set(PreferenceKeys::PREEMPTIVE_APPLE_EVENT_ACCESS, DefaultsValue{true});
    }

private:
    DefaultsStore &store_;
};

} // namespace quillon
