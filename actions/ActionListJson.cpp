#include "actions/ActionListJson.h"

#include "base/JsonValues.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillon {

namespace {

QString literal(bool value)
{
    return QLatin1StringView(value ? "true" : "false");
}

/// Returns the text in quotes, escaped as JSON requires.
QString literal(std::string_view bytes)
{
    const QJsonDocument document(QJsonArray{bytesToText(bytes)});
    QString array = QString::fromUtf8(document.toJson(QJsonDocument::Compact));
    return array.sliced(1, array.size() - 2);
}

/// QJsonObject sorts its members, and people who read the settings expect the flags first.
QString toJson(const ActionModel &action)
{
    static constexpr QLatin1StringView FORM(
        R"({"flags":{"option":%1,"shift":%2,"command":%3},)"
        R"("actionType":{"key":%4,"requiresTarget":%5},"actionTarget":{"key":%6}})");
    return QString(FORM).arg(literal(action.flags.option), literal(action.flags.shift),
                             literal(action.flags.command), literal(action.actionType.key()),
                             literal(action.actionType.requiresTarget()),
                             literal(action.actionTarget.key()));
}

std::optional<ActionShortcutFlags> flagsFrom(const QJsonObject &json)
{
    const QJsonValue option = json.value(QLatin1StringView("option"));
    const QJsonValue shift = json.value(QLatin1StringView("shift"));
    const QJsonValue command = json.value(QLatin1StringView("command"));
    if (!option.isBool() || !shift.isBool() || !command.isBool())
        return std::nullopt;
    return ActionShortcutFlags{
        .option = option.toBool(), .shift = shift.toBool(), .command = command.toBool()};
}

std::optional<ActionModel> actionFrom(const QJsonObject &json)
{
    // A value that is not an object is read as an empty one, in which members are missing.
    const auto object = [&](QLatin1StringView name) { return json.value(name).toObject(); };
    const auto flags = flagsFrom(object(QLatin1StringView("flags")));
    const QJsonObject type = object(QLatin1StringView("actionType"));
    const QJsonValue typeKey = type.value(QLatin1StringView("key"));
    const QJsonValue requiresTarget = type.value(QLatin1StringView("requiresTarget"));
    const QJsonValue targetKey =
        object(QLatin1StringView("actionTarget")).value(QLatin1StringView("key"));
    if (!flags || !typeKey.isString() || !requiresTarget.isBool() || !targetKey.isString())
        return std::nullopt;
    return ActionModel{.flags = *flags,
                       .actionType =
                           ActionType(textToBytes(typeKey.toString()), requiresTarget.toBool()),
                       .actionTarget = ActionTarget(textToBytes(targetKey.toString()))};
}

} // namespace

std::string encodeActions(const std::vector<ActionModel> &actions)
{
    QStringList elements;
    for (const ActionModel &action : actions)
        elements.append(toJson(action));
    return QString(u'[' + elements.join(u',') + u']').toStdString();
}

std::optional<std::vector<ActionModel>> decodeActions(std::string_view bytes)
{
    const auto document = QJsonDocument::fromJson(
        QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!document.isArray())
        return std::nullopt;
    std::vector<ActionModel> actions;
    const QJsonArray array = document.array();
    for (const QJsonValue element : array) {
        auto action = actionFrom(element.toObject());
        if (!action)
            return std::nullopt;
        actions.push_back(std::move(*action));
    }
    return actions;
}

} // namespace quillon
