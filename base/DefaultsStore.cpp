#include "base/DefaultsStore.h"

#include "base/JsonValues.h"
#include "base/Utf8.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quillon {
namespace {

bool equalInAnyCase(std::string_view text, std::string_view lowerCase)
{
    return std::ranges::equal(text, lowerCase, [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

struct ToBoolean
{
    bool operator()(bool value) const { return value; }
    bool operator()(std::int64_t value) const { return value != 0; }
    bool operator()(double value) const { return std::fpclassify(value) != FP_ZERO; }
    bool operator()(const std::string &value) const
    {
        constexpr std::array<std::string_view, 3> TRUE_TEXTS = {"true", "yes", "1"};
        return std::ranges::any_of(
            TRUE_TEXTS, [&](std::string_view text) { return equalInAnyCase(value, text); });
    }
    template <typename Other>
    bool operator()(const Other &) const
    {
        return false;
    }
};

/// Returns the value as that type. Returns nothing when there is no value or when it has another
/// type.
template <typename Type>
std::optional<Type> as(std::optional<DefaultsValue> value)
{
    Type *const typed = value ? std::get_if<Type>(&value->value) : nullptr;
    if (!typed)
        return std::nullopt;
    return std::move(*typed);
}

} // namespace

std::optional<std::int64_t> DefaultsValue::asInteger() const
{
    if (const auto *number = std::get_if<std::int64_t>(&value))
        return *number;
    const auto *number = std::get_if<double>(&value);
    constexpr double LIMIT = 0x1p63;
    const bool whole = number && *number >= -LIMIT && *number < LIMIT &&
                       std::fpclassify(*number - std::trunc(*number)) == FP_ZERO;
    if (!whole)
        return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

std::optional<std::string> DefaultsValue::asData() const
{
    if (const auto *data = std::get_if<DefaultsData>(&value))
        return data->bytes;
    if (const auto *text = std::get_if<std::string>(&value))
        return *text;
    return std::nullopt;
}

DefaultsValue DefaultsValue::ofData(std::string bytes)
{
    if (replacingInvalidUtf8(bytes) == bytes)
        return {std::move(bytes)};
    return {DefaultsData{std::move(bytes)}};
}

std::string DefaultsValue::description() const
{
    // A document is a list or an object, so the value is wrapped and the brackets taken off.
    const QByteArray json = QJsonDocument(QJsonArray{toJson(*this)}).toJson(QJsonDocument::Compact);
    return json.mid(1, json.size() - 2).toStdString();
}

std::string DefaultsFault::description() const
{
    const std::string place =
        line > 0 ? ":" + std::to_string(line) + ":" + std::to_string(column) : std::string();
    return file + place + ": " + reason;
}

bool DefaultsStore::contains(std::string_view key) const
{
    return value(key).has_value();
}

std::optional<bool> DefaultsStore::boolean(std::string_view key) const
{
    const auto found = value(key);
    if (!found)
        return std::nullopt;
    return std::visit(ToBoolean(), found->value);
}

std::optional<std::string> DefaultsStore::string(std::string_view key) const
{
    return as<std::string>(value(key));
}

std::optional<std::vector<std::string>> DefaultsStore::stringArray(std::string_view key) const
{
    auto array = as<DefaultsArray>(value(key));
    if (!array)
        return std::nullopt;
    std::vector<std::string> strings;
    for (DefaultsValue &element : *array) {
        auto *const text = std::get_if<std::string>(&element.value);
        if (!text)
            return std::nullopt;
        strings.push_back(std::move(*text));
    }
    return strings;
}

std::optional<std::string> DefaultsStore::data(std::string_view key) const
{
    const auto found = value(key);
    return found ? found->asData() : std::nullopt;
}

std::optional<DefaultsDictionary> DefaultsStore::dictionary(std::string_view key) const
{
    return as<DefaultsDictionary>(value(key));
}

} // namespace quillon
