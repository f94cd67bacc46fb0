#pragma once

#include "kelplugin/controllerbackend.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace kelcontroller {

// Port names the simulated controller offers, per type.
struct KELPLUGIN_EXPORT IoLayout
{
    int digitalOutputs = 32;
    int digitalInputs = 32;
    int analogOutputs = 8;
    int analogInputs = 8;
    int groupOutputs = 8;
    int groupInputs = 8;

    static IoLayout uniform(int portsPerType);
    // "DO" gives DO1..DOn and so on; an unknown type gives an empty list.
    QStringList ports(const QString &type) const;
};

// A robot controller in-process: it keeps the laser welding records, persists them to one
// JSON file, answers every command with the controller's reply envelope and can be told to
// misbehave for tests and demonstrations.
class KELPLUGIN_EXPORT ControllerSimulator : public kelplugin::ControllerBackend
{
    Q_OBJECT
public:
    // An empty dataDir means the user's application data folder.
    explicit ControllerSimulator(const QString &dataDir = QString(), QObject *parent = nullptr);
    ~ControllerSimulator() override;

    QString dataFilePath() const;
    // The configuration records by key (weld_io_config, ...), as the controller holds them.
    QJsonObject record(const QString &key) const;
    static QStringList recordKeys();

    void setIoLayout(const IoLayout &layout);
    void setUserLevel(int level);
    void setRobotPowered(bool powered);

    // A dropped connection answers every command with an empty array and every read with an
    // undefined value; restoring it emits connectionRestored().
    void setConnected(bool connected);
    bool isConnected() const;

    // One-shot faults applied to the next command reply.
    void injectReturnCode(int code);
    void injectEmptyReply();
    void injectMalformedElement();

    // kelplugin::ControllerBackend
    QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QJsonObject &command) override;
    QJsonArray commandCustomData(QObject *sender, const QString &pluginKey, const QString &command,
        const QString &value) override;
    QJsonValue getKelServiceData(const QString &key) override;
    bool disconnectKelServiceData(
        const QString &pluginKey, const QString &key, const QString &third) override;
    int getUserOperateLevel() override;
    bool getRobotEleStatus() override;
    QStringList getIOByType(const QString &type) override;
    QHash<QString, QStringList> getRegisterHash() override;
    QStringList getPointNameList() override;
    bool addCurrentPoint(
        const QString &name, bool overwrite, const QString &tool, const QString &wobj) override;
    QStringList getZoneList() override;
    QStringList getSpeedList() override;
    QStringList getWobjList() override;
    QStringList getToolList() override;
    QString getCurWobj() override;
    QString getCurTool() override;

signals:
    // Anything an operator could see changed: a record, a status value, a setting above.
    void stateChanged();
    // A problem the operator must know about (a corrupt data file kept aside, a failed write).
    void problem(const QString &text);
    // Every command as received and answered, for the pendant's controller view.
    void commandHandled(const QString &command, const QJsonValue &payload, const QJsonArray &reply);
};

} // namespace kelcontroller
