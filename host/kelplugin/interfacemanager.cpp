#include "interfacemanager.h"

#include "controllerbackend.h"

#include <QPointer>

namespace kelplugin {

namespace {
QPointer<ControllerBackend> s_attached;
QMetaObject::Connection s_restored;
} // namespace

InterfaceManager::InterfaceManager(QObject *parent) : QObject(parent)
{ }

InterfaceManager::~InterfaceManager() = default;

InterfaceManager &kelPluginInterface()
{
    static InterfaceManager manager;
    return manager;
}

ControllerBackend *InterfaceManager::backend()
{
    return controllerBackend();
}

void InterfaceManager::attach(ControllerBackend *backend)
{
    if (s_attached == backend)
        return;
    QObject::disconnect(s_restored);
    s_attached = backend;
    if (backend)
        s_restored = connect(backend, &ControllerBackend::connectionRestored, this,
            &InterfaceManager::sigNetworkConnect);
}

QJsonArray InterfaceManager::commandCustomData(
    QObject *sender, const QString &pluginKey, const QJsonObject &command)
{
    return backend()->commandCustomData(sender, pluginKey, command);
}

QJsonArray InterfaceManager::commandCustomData(
    QObject *sender, const QString &pluginKey, const QString &command, const QString &value)
{
    return backend()->commandCustomData(sender, pluginKey, command, value);
}

QJsonValue InterfaceManager::getKelServiceData(const QString &key)
{
    return backend()->getKelServiceData(key);
}

bool InterfaceManager::disconnectKelServiceData(
    const QString &pluginKey, const QString &key, const QString &third)
{
    return backend()->disconnectKelServiceData(pluginKey, key, third);
}

int InterfaceManager::getUserOperateLevel()
{
    return backend()->getUserOperateLevel();
}

bool InterfaceManager::getRobotEleStatus()
{
    return backend()->getRobotEleStatus();
}

QStringList InterfaceManager::getIOByType(const QString &type)
{
    return backend()->getIOByType(type);
}

QHash<QString, QStringList> InterfaceManager::getRegisterHash()
{
    return backend()->getRegisterHash();
}

QStringList InterfaceManager::getPointNameList()
{
    return backend()->getPointNameList();
}

bool InterfaceManager::addCurrentPoint(
    const QString &name, bool overwrite, const QString &tool, const QString &wobj)
{
    return backend()->addCurrentPoint(name, overwrite, tool, wobj);
}

QStringList InterfaceManager::getZoneList()
{
    return backend()->getZoneList();
}

QStringList InterfaceManager::getSpeedList()
{
    return backend()->getSpeedList();
}

QStringList InterfaceManager::getWobjList()
{
    return backend()->getWobjList();
}

QStringList InterfaceManager::getToolList()
{
    return backend()->getToolList();
}

QString InterfaceManager::getCurWobj()
{
    return backend()->getCurWobj();
}

QString InterfaceManager::getCurTool()
{
    return backend()->getCurTool();
}

} // namespace kelplugin
