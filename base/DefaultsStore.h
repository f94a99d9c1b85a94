#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
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

/// Raw bytes. They are a type of their own, so that they are never taken for text.
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
    /// Returns a value that asData() reads as these bytes: a string where they are UTF-8, so that
    /// the user can read and change it in the settings file, and data otherwise.
    static DefaultsValue ofData(std::string bytes);
    /// JSON text on one line, for diagnostics.
    std::string description() const;

    friend bool operator==(const DefaultsValue &, const DefaultsValue &) = default;
};

/// Why the settings in force are not the ones on the disk.
struct DefaultsFault
{
    /// The absolute path of the settings file.
    std::string file = {};
    /// Where the mistake is, counted from one, columns in characters. Both are 0 for a file whose
    /// bytes could not be read, as one that the user may not open.
    int line = 0;
    int column = 0;
    /// What is wrong, on one line and without a full stop.
    std::string reason = {};
    /// It is true when this process has never read the file without a fault: no settings are in
    /// force then, and writes fail. False when the settings that were read last are in force.
    bool nothingRead = false;

    /// "FILE:LINE:COLUMN: REASON", or "FILE: REASON" where there is no line.
    std::string description() const;

    friend bool operator==(const DefaultsFault &, const DefaultsFault &) = default;
};

/// The user's settings: a flat map from key to value that outlives the process.
///
/// Safe from every thread. A change made by another process or by hand is seen by the next read.
/// Reads never fail; a value of another type than the one asked for is absent, except that every
/// present value has a boolean reading.
///
/// A start asks for fault() before it relies on any value: with a fault and nothing read, every
/// value is absent and every write fails until the file was mended by hand or beginAnew() was
/// called.
class DefaultsStore
{
public:
    DefaultsStore() = default;
    virtual ~DefaultsStore() = default;
    DefaultsStore(const DefaultsStore &) = delete;
    DefaultsStore &operator=(const DefaultsStore &) = delete;

    /// The result is absent when the key was never written or holds null.
    virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
    /// Returns false when the value could not be brought to the disk; what stood there still
    /// stands.
    virtual bool set(std::string_view key, const DefaultsValue &value) = 0;
    /// Replaces the value under the key by what `made` returns for it. `made` may be called more
    /// than once and uses no store. Returns false as set() does.
    using Made = std::function<DefaultsValue(const std::optional<DefaultsValue> &)>;
    virtual bool edit(std::string_view key, const Made &made) { return set(key, made(value(key))); }
    /// Removing an absent key succeeds and writes nothing. False as for set().
    virtual bool remove(std::string_view key) = 0;
    /// Removes every key at once. False as for set().
    virtual bool removeAll() = 0;
    /// Returns when everything written so far would survive a loss of power; false when not.
    virtual bool synchronize() = 0;

    /// What is wrong with the settings on the disk now; absent when they are in force. The file
    /// is looked at again by each call, so that a mended file has no fault. A file that somebody
    /// is just writing is waited for, some 100 ms, as long as no settings were read.
    virtual std::optional<DefaultsFault> fault() const { return std::nullopt; }
    /// Renames a file with a fault and begins without any settings. Returns the absolute path of
    /// the renamed file, which is kept for good; an empty text when there was no fault any more
    /// and nothing was done; absent when the file could not be renamed, which is said on standard
    /// error.
    virtual std::optional<std::string> beginAnew() { return std::string(); }

    bool contains(std::string_view key) const;
    /// Booleans as they are, numbers when not zero, the strings "true", "yes" and "1" in any
    /// case; every other present value is false.
    std::optional<bool> boolean(std::string_view key) const;
    std::optional<std::string> string(std::string_view key) const;
    /// The result is absent unless every element is a string; an empty array is present.
    std::optional<std::vector<std::string>> stringArray(std::string_view key) const;
    std::optional<std::string> data(std::string_view key) const;
    std::optional<DefaultsDictionary> dictionary(std::string_view key) const;
};

} // namespace quillon
