#pragma once

#include "base/DefaultsStore.h"

#include <mutex>

namespace quillon {

/// A defaults store in memory.
class FakeDefaultsStore final : public DefaultsStore
{
public:
    FakeDefaultsStore() = default;
    explicit FakeDefaultsStore(DefaultsDictionary contents) : contents_(std::move(contents)) {}

    std::optional<DefaultsValue> value(std::string_view key) const override
    {
        const std::lock_guard lock(mutex_);
        const auto found = contents_.find(key);
        if (found == contents_.end())
            return std::nullopt;
        return found->second;
    }
    bool set(std::string_view key, const DefaultsValue &value) override
    {
        return write([&] { contents_.insert_or_assign(std::string(key), value); });
    }
    bool remove(std::string_view key) override
    {
        return write([&] { contents_.erase(std::string(key)); });
    }
    bool removeAll() override
    {
        return write([&] { contents_.clear(); });
    }
    bool synchronize() override { return !failing_; }

    /// Returns how often something was written, including equal values.
    int writes() const
    {
        const std::lock_guard lock(mutex_);
        return writes_;
    }
    /// From now on writes change nothing and report failure, as on a full disk.
    void failWrites(bool failing = true) { failing_ = failing; }

private:
    template <typename Change>
    bool write(const Change &change)
    {
        const std::lock_guard lock(mutex_);
        if (failing_)
            return false;
        ++writes_;
        change();
        return true;
    }

    mutable std::mutex mutex_;
    DefaultsDictionary contents_;
    int writes_ = 0;
    bool failing_ = false;
};

} // namespace quillon
