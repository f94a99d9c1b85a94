#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillon {

/// Keeps a receiver registered for as long as it lives.
using DefaultsReceiver = std::shared_ptr<const std::function<void()>>;

/// Reports that the values in the defaults store may have changed, whoever changed them. It has any
/// number of receivers. Main thread only.
class DefaultsChanges
{
public:
    DefaultsChanges() = default;
    virtual ~DefaultsChanges() = default;
    DefaultsChanges(const DefaultsChanges &) = delete;
    DefaultsChanges &operator=(const DefaultsChanges &) = delete;

    /// Calls back some time after a change, once for several close together, until the returned
    /// receiver is destroyed.
    [[nodiscard]] DefaultsReceiver onChange(std::function<void()> changed)
    {
        auto receiver = std::make_shared<const std::function<void()>>(std::move(changed));
        receivers_.push_back(receiver);
        return receiver;
    }

protected:
    /// Calls every receiver, in the order in which they came.
    void report()
    {
        std::erase_if(receivers_, [](const auto &receiver) { return receiver.expired(); });
        // A receiver may add and remove others.
        const auto receivers = receivers_;
        for (const auto &receiver : receivers)
            if (const DefaultsReceiver present = receiver.lock())
                (*present)();
    }

private:
    std::vector<std::weak_ptr<const std::function<void()>>> receivers_;
};

} // namespace quillon
