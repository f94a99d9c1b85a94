#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillon {

struct DefaultsValue;
using DefaultsArray = std::vector<DefaultsValue>;
/// Keys are bytes: a path that is not UTF-8 is a key like any other.
using DefaultsDictionary = std::map<std::string, DefaultsValue, std::less<>>;

/// Raw bytes, told apart from text.
struct DefaultsData
{
    std::string bytes;
    friend bool operator==(const DefaultsData &, const DefaultsData &) = default;
};

/// One value of the defaults store.
struct DefaultsValue
{
    /// The null pointer is JSON's null, which only ever stands inside a list or a dictionary.
    using Variant = std::variant<bool, std::int64_t, double, std::string, DefaultsData,
                                 DefaultsArray, DefaultsDictionary, std::nullptr_t>;
    Variant value;

    /// The number, when this is a whole one that fits; a double without a fraction counts.
    std::optional<std::int64_t> asInteger() const;
    /// The bytes, when this is data or a string (its UTF-8 bytes).
    std::optional<std::string> asData() const;
    /// JSON text on one line, for diagnostics.
    std::string description() const;

    friend bool operator==(const DefaultsValue &, const DefaultsValue &) = default;
};

/// The user's settings: a flat map from key to value that outlives the process.
///
/// Safe from every thread. Nothing is cached beyond what is on disk: a change made by another
/// process or by hand is seen by the next read. Reads never fail; a value of another type than
/// the one asked for is absent, except that every present value has a boolean reading.
class DefaultsStore
{
public:
    DefaultsStore() = default;
    virtual ~DefaultsStore() = default;
    DefaultsStore(const DefaultsStore &) = delete;
    DefaultsStore &operator=(const DefaultsStore &) = delete;

    /// Absent when the key was never written or holds null.
    virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
    /// False when the value could not be brought to the disk; what stood there still stands.
    virtual bool set(std::string_view key, const DefaultsValue &value) = 0;
    /// Removing an absent key succeeds and writes nothing. False as for set().
    virtual bool remove(std::string_view key) = 0;
    /// Removes every key at once. False as for set().
    virtual bool removeAll() = 0;
    /// Returns when everything written so far would survive a loss of power; false when not.
    virtual bool synchronize() = 0;

    bool contains(std::string_view key) const;
    /// Booleans as they are, numbers when not zero, the strings "true", "yes" and "1" in any
    /// case; every other present value is false.
    std::optional<bool> boolean(std::string_view key) const;
    std::optional<std::string> string(std::string_view key) const;
    /// Absent unless every element is a string; an empty array is present.
    std::optional<std::vector<std::string>> stringArray(std::string_view key) const;
    std::optional<std::string> data(std::string_view key) const;
    std::optional<DefaultsDictionary> dictionary(std::string_view key) const;
};

} // namespace quillon
