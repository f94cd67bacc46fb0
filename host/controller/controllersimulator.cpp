#include "controllersimulator.h"

// Minimal in-memory core; persistence, records and command behaviour are being built.

namespace kelcontroller {

IoLayout IoLayout::uniform(int portsPerType)
{
    IoLayout l;
    l.digitalOutputs = l.digitalInputs = l.analogOutputs = l.analogInputs = l.groupOutputs
        = l.groupInputs = portsPerType;
    return l;
}

QStringList IoLayout::ports(const QString &type) const
{
    int n = 0;
    if (type == QLatin1String("DO"))
        n = digitalOutputs;
    else if (type == QLatin1String("DI"))
        n = digitalInputs;
    else if (type == QLatin1String("AO"))
        n = analogOutputs;
    else if (type == QLatin1String("AI"))
        n = analogInputs;
    else if (type == QLatin1String("GO"))
        n = groupOutputs;
    else if (type == QLatin1String("GI"))
        n = groupInputs;
    QStringList result;
    for (int i = 1; i <= n; ++i)
        result.append(type + QString::number(i));
    return result;
}

namespace {
IoLayout s_layout;
int s_level = 3;
bool s_powered = false;
bool s_connected = true;
} // namespace

ControllerSimulator::ControllerSimulator(const QString &, QObject *parent)
    : kelplugin::ControllerBackend(parent)
{ }

ControllerSimulator::~ControllerSimulator() = default;

QString ControllerSimulator::dataFilePath() const
{
    return QString();
}
QJsonObject ControllerSimulator::record(const QString &) const
{
    return {};
}
QStringList ControllerSimulator::recordKeys()
{
    return {};
}
void ControllerSimulator::setIoLayout(const IoLayout &layout)
{
    s_layout = layout;
}
void ControllerSimulator::setUserLevel(int level)
{
    s_level = level;
}
void ControllerSimulator::setRobotPowered(bool powered)
{
    s_powered = powered;
}
void ControllerSimulator::setConnected(bool connected)
{
    s_connected = connected;
    if (connected)
        emit connectionRestored();
}
bool ControllerSimulator::isConnected() const
{
    return s_connected;
}
void ControllerSimulator::injectReturnCode(int)
{ }
void ControllerSimulator::injectEmptyReply()
{ }
void ControllerSimulator::injectMalformedElement()
{ }

QJsonArray ControllerSimulator::commandCustomData(
    QObject *, const QString &, const QJsonObject &command)
{
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    QJsonObject entry {{QStringLiteral("return"), 1},
        {QStringLiteral("message"), QStringLiteral("unknown command")}};
    return QJsonArray {QJsonObject {{QStringLiteral("kellaserweld"), QJsonObject {{name, entry}}}}};
}

QJsonArray ControllerSimulator::commandCustomData(
    QObject *sender, const QString &key, const QString &command, const QString &value)
{
    return commandCustomData(sender, key, QJsonObject {{command, value}});
}

QJsonValue ControllerSimulator::getKelServiceData(const QString &)
{
    return QJsonValue();
}
bool ControllerSimulator::disconnectKelServiceData(
    const QString &, const QString &, const QString &)
{
    return true;
}
int ControllerSimulator::getUserOperateLevel()
{
    return s_level;
}
bool ControllerSimulator::getRobotEleStatus()
{
    return s_powered;
}
QStringList ControllerSimulator::getIOByType(const QString &type)
{
    return s_layout.ports(type);
}
QHash<QString, QStringList> ControllerSimulator::getRegisterHash()
{
    return {};
}
QStringList ControllerSimulator::getPointNameList()
{
    return {};
}
bool ControllerSimulator::addCurrentPoint(const QString &, bool, const QString &, const QString &)
{
    return false;
}
QStringList ControllerSimulator::getZoneList()
{
    return {};
}
QStringList ControllerSimulator::getSpeedList()
{
    return {};
}
QStringList ControllerSimulator::getWobjList()
{
    return {};
}
QStringList ControllerSimulator::getToolList()
{
    return {};
}
QString ControllerSimulator::getCurWobj()
{
    return {};
}
QString ControllerSimulator::getCurTool()
{
    return {};
}

} // namespace kelcontroller
