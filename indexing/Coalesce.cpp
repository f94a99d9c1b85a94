#include "indexing/Coalesce.h"

#include <utility>

namespace quillon {

void Coalesce::coalesce(const std::string &key, TaskQueue &queue, Callback callback)
{
    const auto [pending, isNew] = callbacks_.try_emplace(key);
    if (!isNew)
        return;
    pending->second = {std::move(callback), ++lastNumber_};
    queue.postDelayed(delay_, [this, key, number = lastNumber_] { deliver(key, number); });
}

/// The number distinguishes a call that was dropped from a later one that is pending under the same
/// key.
void Coalesce::deliver(const std::string &key, std::uint64_t number)
{
    const auto pending = callbacks_.find(key);
    if (pending == callbacks_.end() || pending->second.number != number)
        return;
    // The key stays pending meanwhile, in case the call itself asks for it again.
    const Callback callback = std::exchange(pending->second.callback, nullptr);
    callback(key);
    callbacks_.erase(key);
}

} // namespace quillon
