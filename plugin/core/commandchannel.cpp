#include "commandchannel.h"

#include "logline.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QJsonObject>

#include <cmath>
#include <limits>

namespace kellaser {

namespace {

const QString &pluginKey()
{
    static const QString key = QStringLiteral("kellaserweld");
    return key;
}

const QString &returnKey()
{
    static const QString key = QStringLiteral("return");
    return key;
}

// A double truncated toward zero, saturated: a controller may send any number.
int truncateToInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (value <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(value);
}

} // namespace

QJsonArray CommandChannel::send(QObject *sender, const QString &command, const QJsonValue &payload)
{
    return kelplugin::kelPluginInterface().commandCustomData(
        sender, pluginKey(), QJsonObject {{command, payload}});
}

CommandChannel::Entry CommandChannel::findReturn(const QJsonArray &reply, const QString &command)
{
    for (const QJsonValue &element : reply) {
        const QJsonObject commands = element.toObject().value(pluginKey()).toObject();
        const auto it = commands.constFind(command);
        if (it == commands.constEnd())
            continue;
        const QJsonObject entry = it.value().toObject();
        const auto ret = entry.constFind(returnKey());
        if (ret == entry.constEnd())
            continue;
        // QJsonValue::toInt(0) turns anything but a whole number in int range into 0.
        const int code = ret.value().toInt(0);
        return {code == 0 ? Outcome::Success : Outcome::Failure, code};
    }
    return {};
}

CommandChannel::Outcome CommandChannel::checkReply(const QJsonArray &reply, const QString &command,
    const QString &logPrefix, const QString &successText, const QString &failureText)
{
    const Entry entry = findReturn(reply, command);
    switch (entry.outcome) {
    case Outcome::NotFound:
        logError() << logPrefix + QStringLiteral("not found ") << command << " Result";
        break;
    case Outcome::Failure:
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_ERROR, failureText);
        logError() << logPrefix << command << " Result:" << entry.code;
        break;
    case Outcome::Success:
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_INFO, successText);
        break;
    }
    return entry.outcome;
}

int CommandChannel::firstElementReturn(const QJsonArray &reply, const QString &command)
{
    if (reply.isEmpty() || !reply.first().isObject())
        return 0;
    const QJsonValue ret = reply.first()
                               .toObject()
                               .value(pluginKey())
                               .toObject()
                               .value(command)
                               .toObject()
                               .value(returnKey());
    switch (ret.type()) {
    case QJsonValue::String:
        return ret.toString().toInt(nullptr, 10);
    case QJsonValue::Double:
        return truncateToInt(ret.toDouble());
    case QJsonValue::Bool:
        return ret.toBool() ? 1 : 0;
    default:
        return 0;
    }
}

} // namespace kellaser
