#pragma once

#include "iolayout.h"
#include "kelplugin/controllerbackend.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector3D>

#include <functional>
#include <memory>

class QTimer;

namespace kelcontroller {

class ChangeHistory;
class DataFolderLock;
class ProgramRunner;
class RecordStore;
class WeldRecords;

// A robot controller in-process: it keeps the laser welding records, persists them to one
// JSON file, answers every command with the controller's reply envelope and can be told to
// misbehave for tests and demonstrations.
class KELPLUGIN_EXPORT ControllerSimulator : public kelplugin::ControllerBackend
{
    Q_OBJECT
public:
    // The "return" codes of refused commands (set_weld_enable answers with booleans instead).
    enum ReturnCode {
        Success = 0,
        UnknownCommand = 1,
        BadPayload = 2,
        Refused = 3,
        NotConfigured = 4,
        StoreFailed = 5,
        TooLarge = 7,
    };
    enum class Feeder { Idle, Feeding, Retracting };

    // An output signal of weld_io_config on its port with its live value: digital 0/1,
    // analogue the calibrated raw value, group the raw value rounded.
    struct PortValue
    {
        QString signal;
        QString port;
        double value;
    };
    // An analogue set-point: its row in weld_io_config and its calibration curve's index.
    struct AnalogSignal
    {
        QString portKey;
        QString typeKey;
        QString enabledKey;
        int curve;
    };

    // An empty dataDir means the user's application data folder. The simulator owns its folder
    // while it lives; when another one holds it, it reads and writes nothing, isOwner() is
    // false and lastError() names the holder: a program must not go on with it.
    explicit ControllerSimulator(const QString &dataDir = QString(), QObject *parent = nullptr);
    ~ControllerSimulator() override;

    bool isOwner() const;
    QString dataFilePath() const;
    // What the start found wrong (repairs, entries that could not be kept) and history entries
    // that could not be stored since, for every pendant that connects later.
    QStringList storageProblems() const { return m_storageProblems; }
    // How many there have been: the last of storageProblems() is number storageProblemCount().
    int storageProblemCount() const { return m_storageProblemCount; }
    // The configuration records by key (weld_io_config, ...), as the controller holds them.
    QJsonObject record(const QString &key) const;
    static QStringList recordKeys();
    // Writes the data file now; false, with lastError() set and problem() emitted, on failure.
    bool save();
    // The last problem reported, empty when there was none.
    QString lastError() const { return m_lastError; }

    void setIoLayout(const IoLayout &layout);
    IoLayout ioLayout() const { return m_layout; }
    void setUserLevel(int level);
    void setRobotPowered(bool powered);
    // Who sends the commands that follow, for the change history (a network client's name).
    void setClientName(const QString &name) { m_clientName = name; }

    // A dropped connection answers every command with an empty array and every read with an
    // undefined value; restoring it emits connectionRestored().
    void setConnected(bool connected);
    bool isConnected() const;

    // One-shot faults applied to the next command reply.
    void injectReturnCode(int code);
    void injectEmptyReply();
    void injectMalformedElement();

    // What an operator would see on the equipment.
    bool isGasOpen() const { return m_gasOpen; }
    Feeder feeder() const { return m_feeder; }
    bool isWeldingEnabled() const { return m_weldingEnabled; }
    bool isMonitorRunning() const;
    bool isRedLightOn() const { return m_redLight; }
    bool isVirtualWelding() const { return m_virtualWelding; }
    // The weld data set the monitor stream follows: LsData1 until another one is named.
    QString activeWeldData() const { return m_activeWeldData; }
    void setActiveWeldData(const QString &setName);

    // Every accepted change of a configuration record.
    const ChangeHistory &history() const { return *m_history; }

    // Runs weld programs in the simulated cell.
    ProgramRunner *runner() const { return m_runner; }
    QList<PortValue> assignedOutputs() const;
    static const QVector<AnalogSignal> &analogSignals();
    static const QStringList &knownTools();
    static const QStringList &knownWobjs();

    // Taught points' positions, mm in the work object frame; a point without one is (0,0,0).
    bool hasPointPosition(const QString &name) const { return m_positions.contains(name); }
    QVector3D pointPosition(const QString &name) const { return m_positions.value(name); }
    QVector3D robotPosition() const;

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

private:
    enum class Fault { None, ReturnCode, EmptyReply, MalformedElement };

    void load();
    void tellLater(const QString &text);
    // Writes the data file: Success, or TooLarge / StoreFailed with the problem reported.
    int write();
    void loadPointPositions(const QJsonObject &doc, QStringList *damage);
    QJsonObject document() const;
    void report(const QString &text);
    QJsonArray answer(const QString &pluginKey, const QJsonObject &command);
    QJsonObject execute(const QString &pluginKey, const QJsonObject &command);
    // Persists the change just made; on failure undoes it and fills entry with the refusal.
    bool persistOrUndo(const std::function<void()> &undo, QJsonObject *entry);
    bool storeRecord(const QString &key, const QJsonObject &value, QJsonObject *entry);

    QJsonObject onRedLight(const QJsonValue &payload);
    QJsonObject onManualGas(const QJsonValue &payload);
    QJsonObject onWire(Feeder direction, const QJsonValue &payload);
    QJsonObject onVirtualWelding(const QJsonValue &payload);
    QJsonObject onIoConfig(const QJsonValue &payload);
    QJsonObject onSettingConfig(const QJsonValue &payload);
    QJsonObject onWeldEnable(const QJsonValue &payload);
    QJsonObject onComputeCurve(const QJsonValue &payload);
    QJsonObject onCurve(int curve, const QJsonValue &payload);
    QJsonObject onWeldSets(
        const QString &recordKey, const QString &prefix, int last, const QJsonValue &payload);
    QJsonObject onMonitor(const QJsonValue &payload);

    void setGasOpen(bool open);
    void setFeeder(Feeder state);

    std::unique_ptr<DataFolderLock> m_lock;
    std::unique_ptr<RecordStore> m_store;
    std::unique_ptr<WeldRecords> m_weldRecords;
    std::unique_ptr<ChangeHistory> m_history;
    QString m_command; // the command being executed, for the history
    QString m_clientName;
    ProgramRunner *m_runner = nullptr;
    QTimer *m_gasTimer = nullptr;
    QHash<QString, QJsonObject> m_records;
    QStringList m_points;
    QHash<QString, QVector3D> m_positions;
    IoLayout m_layout;
    QString m_lastError;
    QStringList m_storageProblems; // the newest 20
    int m_storageProblemCount = 0;
    qint64 m_storedBytes = 0; // the data file's size as last read or written
    QString m_activeWeldData;
    int m_userLevel = 3;
    bool m_powered = false;
    bool m_connected = true;
    bool m_storeBlocked = false;
    bool m_virtualWelding = false;
    bool m_redLight = false;
    bool m_gasOpen = false;
    bool m_weldingEnabled = false;
    Feeder m_feeder = Feeder::Idle;
    Fault m_fault = Fault::None;
    int m_faultCode = 0;
};

} // namespace kelcontroller
