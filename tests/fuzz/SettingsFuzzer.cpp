// Reads any file as settings. What is read is written so that the same is read again, and any bytes
// survive being JSON text.

#include "base/JsonValues.h"
#include "base/Require.h"

#include <QJsonDocument>
#include <QJsonObject>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quillon;
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    require(textToBytes(bytesToText(bytes)) == bytes, "bytes survive being text");

    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(bytes)).object();
    for (const QJsonValue entry : object) {
        const std::optional<DefaultsValue> value = fromJson(entry);
        if (!value)
            continue;
        const QByteArray written =
            QJsonDocument(QJsonObject{{QStringLiteral("key"), toJson(*value)}}).toJson();
        const QJsonValue again =
            QJsonDocument::fromJson(written).object().value(QStringLiteral("key"));
        require(fromJson(again) == value, "a setting is read as it was written");
    }
    return 0;
}
