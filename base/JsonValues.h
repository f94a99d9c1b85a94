#pragma once

#include "base/DefaultsStore.h"

#include <QJsonValue>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// Settings are written as JSON in this form.
///
/// Bytes that are not valid UTF-8 become U+DC80 to U+DCFF, one for each byte, so that every string
/// of bytes comes back as it was. Data is {"$data": BASE64}; a dictionary key of ours that starts
/// with "$" is written with one more.
QString bytesToText(std::string_view bytes);
std::string textToBytes(const QString &text);

/// Numbers in the value are finite.
QJsonValue toJson(const DefaultsValue &value);
/// The value is absent for null and undefined.
std::optional<DefaultsValue> fromJson(const QJsonValue &json);

} // namespace quillon
