#include "base/JsonValues.h"

#include "base/Require.h"
#include "base/Utf8.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

#include <array>
#include <cmath>

namespace quillon {
namespace {

constexpr QLatin1StringView DATA_KEY("$data");
constexpr char32_t ESCAPE_BASE = 0xDC00;

void appendUtf8(std::string &bytes, char32_t character)
{
    const auto append = [&](char32_t byte) { bytes += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
        return;
    }
    const int continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::array<char32_t, 4> LEADS = {0, 0xC0, 0xE0, 0xF0};
    append(LEADS.at(static_cast<std::size_t>(continuations)) | (character >> (6 * continuations)));
    for (int i = continuations - 1; i >= 0; --i)
        append(0x80 | ((character >> (6 * i)) & 0x3F));
}

QJsonValue fromDictionary(const DefaultsDictionary &dictionary)
{
    QJsonObject object;
    for (const auto &[key, value] : dictionary) {
        const std::string_view escape = key.starts_with('$') ? "$" : "";
        object.insert(bytesToText(std::string(escape) + key), toJson(value));
    }
    return object;
}

std::optional<DefaultsData> toData(const QJsonObject &object)
{
    const QJsonValue encoded = object.value(DATA_KEY);
    if (object.size() != 1 || !encoded.isString())
        return std::nullopt;
    const auto decoded = QByteArray::fromBase64Encoding(encoded.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return DefaultsData{decoded.decoded.toStdString()};
}

/// Does what fromJson() does, for an element of a list or a dictionary, where null is a value.
DefaultsValue elementFromJson(const QJsonValue &json)
{
    return fromJson(json).value_or(DefaultsValue{nullptr});
}

DefaultsDictionary toDictionary(const QJsonObject &object)
{
    DefaultsDictionary dictionary;
    for (auto entry = object.constBegin(); entry != object.constEnd(); ++entry) {
        std::string key = textToBytes(entry.key());
        if (key.starts_with("$$"))
            key.erase(0, 1);
        dictionary.insert_or_assign(std::move(key), elementFromJson(entry.value()));
    }
    return dictionary;
}

DefaultsValue fromNumber(const QJsonValue &json)
{
    // toInteger() returns the fallback for everything that is not a whole number in range.
    const qint64 number = json.toInteger(0);
    if (number == json.toInteger(1))
        return {std::int64_t{number}};
    return {json.toDouble()};
}

struct ToJson
{
    QJsonValue operator()(bool value) const { return value; }
    QJsonValue operator()(std::int64_t value) const { return qint64{value}; }
    QJsonValue operator()(double value) const
    {
        require(std::isfinite(value), "a number among the settings is finite");
        return value;
    }
    QJsonValue operator()(const std::string &value) const { return bytesToText(value); }
    QJsonValue operator()(const DefaultsData &value) const
    {
        const auto bytes = QByteArray::fromStdString(value.bytes);
        return QJsonObject{{DATA_KEY, QString::fromLatin1(bytes.toBase64())}};
    }
    QJsonValue operator()(const DefaultsArray &value) const
    {
        QJsonArray array;
        for (const DefaultsValue &element : value)
            array.append(toJson(element));
        return array;
    }
    QJsonValue operator()(const DefaultsDictionary &value) const { return fromDictionary(value); }
    QJsonValue operator()(std::nullptr_t) const { return QJsonValue::Null; }
};

} // namespace

QString bytesToText(std::string_view bytes)
{
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    while (!bytes.empty()) {
        const Utf8Character first = firstUtf8Character(bytes);
        const auto escaped = ESCAPE_BASE + static_cast<unsigned char>(bytes.front());
        const char32_t character = first.isValid ? first.codePoint : escaped;
        bytes.remove_prefix(first.length);
        if (QChar::requiresSurrogates(character)) {
            text += QChar(QChar::highSurrogate(character));
            text += QChar(QChar::lowSurrogate(character));
        } else {
            text += QChar(static_cast<char16_t>(character));
        }
    }
    return text;
}

std::string textToBytes(const QString &text)
{
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const bool paired = i + 1 < text.size() && QChar::isHighSurrogate(unit) &&
                            QChar::isLowSurrogate(text[i + 1].unicode());
        if (paired)
            appendUtf8(bytes, QChar::surrogateToUcs4(unit, text[++i].unicode()));
        else if (unit >= ESCAPE_BASE + 0x80 && unit <= ESCAPE_BASE + 0xFF)
            bytes += static_cast<char>(unit - ESCAPE_BASE);
        else // Any other lone surrogate keeps its bits, as three bytes that are not UTF-8.
            appendUtf8(bytes, unit);
    }
    return bytes;
}

QJsonValue toJson(const DefaultsValue &value)
{
    return std::visit(ToJson(), value.value);
}

std::optional<DefaultsValue> fromJson(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return std::nullopt;
    case QJsonValue::Bool:
        return DefaultsValue{json.toBool()};
    case QJsonValue::Double:
        return fromNumber(json);
    case QJsonValue::String:
        return DefaultsValue{textToBytes(json.toString())};
    case QJsonValue::Array: {
        DefaultsArray elements;
        const QJsonArray array = json.toArray();
        for (const QJsonValue element : array)
            elements.push_back(elementFromJson(element));
        return DefaultsValue{std::move(elements)};
    }
    case QJsonValue::Object: {
        const QJsonObject object = json.toObject();
        if (auto data = toData(object))
            return DefaultsValue{std::move(*data)};
        return DefaultsValue{toDictionary(object)};
    }
    }
    return std::nullopt;
}

} // namespace quillon
