#pragma once

#include "kelplugin_global.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QStringList>

namespace kelplugin {

// The controller side of the host: whatever answers the plug-ins' commands and data requests.
// The embedding program installs one with setControllerBackend(); without one the embedded
// controller simulator answers.
class KELPLUGIN_EXPORT ControllerBackend : public QObject
{
    Q_OBJECT
public:
    explicit ControllerBackend(QObject *parent = nullptr);
    ~ControllerBackend() override;

    virtual QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QJsonObject &command)
        = 0;
    virtual QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QString &command, const QString &value)
        = 0;
    virtual QJsonValue getKelServiceData(const QString &key) = 0;
    virtual bool disconnectKelServiceData(
        const QString &pluginKey, const QString &key, const QString &third)
        = 0;

    virtual int getUserOperateLevel() = 0;
    virtual bool getRobotEleStatus() = 0;

    virtual QStringList getIOByType(const QString &type) = 0;
    virtual QHash<QString, QStringList> getRegisterHash() = 0;
    virtual QStringList getPointNameList() = 0;
    virtual bool addCurrentPoint(
        const QString &name, bool overwrite, const QString &tool, const QString &wobj)
        = 0;
    virtual QStringList getZoneList() = 0;
    virtual QStringList getSpeedList() = 0;
    virtual QStringList getWobjList() = 0;
    virtual QStringList getToolList() = 0;
    virtual QString getCurWobj() = 0;
    virtual QString getCurTool() = 0;

signals:
    // The connection to the controller has been (re)established.
    void connectionRestored();
};

KELPLUGIN_EXPORT void setControllerBackend(ControllerBackend *backend);
KELPLUGIN_EXPORT ControllerBackend *controllerBackend();

} // namespace kelplugin
