#pragma once

#include <functional>

namespace quillon {

/// Reports how the desktop wants programs to look, where the toolkit does not pass it on. Main
/// thread only.
class Appearance
{
public:
    Appearance() = default;
    virtual ~Appearance() = default;
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;

    /// Returns false until the desktop has asked for dark colours.
    virtual bool prefersDark() const = 0;
    /// Calls back on the main thread each time that the answer changes. There is one receiver.
    virtual void onChange(std::function<void()> changed) = 0;
};

} // namespace quillon
