#include "scriptedcontroller.h"

#include <QJsonObject>

ScriptedController::ScriptedController()
{
    kelplugin::setControllerBackend(this);
}

ScriptedController::~ScriptedController()
{
    kelplugin::setControllerBackend(nullptr);
}

QJsonArray ScriptedController::reply(const QString &command, const QJsonValue &returnValue)
{
    const QJsonObject entry {{QStringLiteral("return"), returnValue}};
    return QJsonArray {
        QJsonObject {{QStringLiteral("kellaserweld"), QJsonObject {{command, entry}}}}};
}

QStringList ScriptedController::sentCommands() const
{
    QStringList names;
    for (const Sent &s : sent)
        names.append(s.command);
    return names;
}

QJsonArray ScriptedController::answer(const Sent &s)
{
    sent.append(s);
    if (onCommand)
        onCommand(s);
    if (!replies.isEmpty())
        return replies.dequeue();
    auto it = repliesByCommand.constFind(s.command);
    if (it != repliesByCommand.constEnd())
        return it.value();
    return reply(s.command, 0);
}

QJsonArray ScriptedController::commandCustomData(
    QObject *sender, const QString &pluginKey, const QJsonObject &command)
{
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    return answer({sender, pluginKey, name, command.value(name), false});
}

QJsonArray ScriptedController::commandCustomData(
    QObject *sender, const QString &pluginKey, const QString &command, const QString &value)
{
    return answer({sender, pluginKey, command, QJsonValue(value), true});
}

QJsonValue ScriptedController::getKelServiceData(const QString &key)
{
    readKeys.append(key);
    return serviceData.value(key, QJsonValue(QJsonValue::Undefined));
}

bool ScriptedController::disconnectKelServiceData(
    const QString &pluginKey, const QString &key, const QString &third)
{
    disconnected.append(pluginKey + QLatin1Char('|') + key + QLatin1Char('|') + third);
    return true;
}

bool ScriptedController::addCurrentPoint(
    const QString &name, bool, const QString &, const QString &)
{
    if (name.isEmpty() || points.contains(name))
        return false;
    points.append(name);
    return true;
}
