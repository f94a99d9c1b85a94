#pragma once

#include <functional>

namespace quillon {

/// What the desktop wishes of the looks of programs, beyond what the toolkit passes on. Main thread
/// only.
class Appearance
{
public:
    Appearance() = default;
    virtual ~Appearance() = default;
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;

    /// False where the desktop says nothing, or not yet.
    virtual bool prefersDark() const = 0;
    /// Calls back on the main thread each time that the answer changes. One receiver.
    virtual void onChange(std::function<void()> changed) = 0;
};

} // namespace quillon
