#pragma once

#include "kelplugin_global.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QStringList>

namespace kelplugin {

class ControllerBackend;

// The one service object through which plug-ins reach the robot controller. Every call is
// synchronous and delegates to the installed controller backend.
class KELPLUGIN_EXPORT InterfaceManager : public QObject
{
    Q_OBJECT
public:
    explicit InterfaceManager(QObject *parent = nullptr);
    ~InterfaceManager() override;

    QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QJsonObject &command);
    QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QString &command, const QString &value);
    QJsonValue getKelServiceData(const QString &key);
    bool disconnectKelServiceData(
        const QString &pluginKey, const QString &key, const QString &third);

    int getUserOperateLevel();
    bool getRobotEleStatus();

    QStringList getIOByType(const QString &type);
    QHash<QString, QStringList> getRegisterHash();
    QStringList getPointNameList();
    bool addCurrentPoint(
        const QString &name, bool overwrite, const QString &tool, const QString &wobj);
    QStringList getZoneList();
    QStringList getSpeedList();
    QStringList getWobjList();
    QStringList getToolList();
    QString getCurWobj();
    QString getCurTool();

signals:
    void sigNetworkConnect();

private:
    friend KELPLUGIN_EXPORT void setControllerBackend(ControllerBackend *backend);
    friend KELPLUGIN_EXPORT ControllerBackend *controllerBackend();
    ControllerBackend *backend();
    void attach(ControllerBackend *backend);
};

KELPLUGIN_EXPORT InterfaceManager &kelPluginInterface();

} // namespace kelplugin
