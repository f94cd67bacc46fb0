#include "controllersimulator.h"

#include "changehistory.h"
#include "curvefit.h"
#include "datafolderlock.h"
#include "factoryrecords.h"
#include "outputcalibration.h"
#include "programrunner.h"
#include "recordschema.h"
#include "recordstore.h"
#include "storagelimits.h"
#include "weldrecords.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

#include <cmath>

namespace kelcontroller {

namespace {

const QString pluginKeyName = QStringLiteral("kellaserweld");
const QString statusKey = QStringLiteral("laser_weld_data");
const QString virtualKey = QStringLiteral("virtual_welding_status");
const QString redLightKey = QStringLiteral("weld_redlight_status");
const QString monitorKey = QStringLiteral("weld_monitor_data");
const QString pointsKey = QStringLiteral("points");
const QString positionsKey = QStringLiteral("point_positions");
const QString weldRecordsKey = QStringLiteral("weld_records");
const QString weldRecordKey = QStringLiteral("weld_record");
const QString ioKey = QStringLiteral("weld_io_config");
const QString settingKey = QStringLiteral("weld_setting_config");
const QString curveKey = QStringLiteral("weld_curve_config");
const QString paramKey = QStringLiteral("weld_param_config");
const QString matchKey = QStringLiteral("weld_param_match");
const QString weldEnableCommand = QStringLiteral("set_weld_enable");

QJsonObject accepted()
{
    return QJsonObject {{QStringLiteral("return"), 0}};
}

QJsonObject refused(int code, const QString &message)
{
    return QJsonObject {{QStringLiteral("return"), code}, {QStringLiteral("message"), message}};
}

QJsonObject enableAnswer(bool ok, const QString &message = QString())
{
    QJsonObject entry {{QStringLiteral("return"), ok}};
    if (!message.isEmpty())
        entry.insert(QStringLiteral("message"), message);
    return entry;
}

QJsonObject needBool(const QJsonValue &payload)
{
    return payload.isBool()
        ? QJsonObject()
        : refused(ControllerSimulator::BadPayload, QStringLiteral("the payload must be a boolean"));
}

QStringList numbered(const QString &prefix, const QList<int> &numbers)
{
    QStringList names;
    for (int n : numbers)
        names.append(prefix + QString::number(n));
    return names;
}

// Why a record may not change from old to value ("record too large: ..."), empty when it may.
// A record an older version let grow may still shrink; its history entry is then shortened.
QString sizeRefusal(const QJsonObject &old, const QJsonObject &value, ChangeHistory::Entry *change)
{
    const qint64 recordBytes = QJsonDocument(value).toJson(QJsonDocument::Compact).size();
    const qint64 oldBytes = QJsonDocument(old).toJson(QJsonDocument::Compact).size();
    if (recordBytes > StorageLimits::maxRecordBytes && recordBytes > oldBytes)
        return StorageLimits::tooLarge(
                   QStringLiteral("record"), recordBytes, StorageLimits::maxRecordBytes)
            + QStringLiteral(" (%1)").arg(change->record);
    qint64 entryBytes = ChangeHistory::entryBytes(*change);
    if (entryBytes > ChangeHistory::maxEntryBytes && recordBytes <= oldBytes) {
        *change = ChangeHistory::shortened(*change);
        entryBytes = ChangeHistory::entryBytes(*change);
    }
    if (entryBytes > ChangeHistory::maxEntryBytes)
        return StorageLimits::tooLarge(
                   QStringLiteral("change"), entryBytes, ChangeHistory::maxEntryBytes)
            + QStringLiteral(" for the change history (%1)").arg(change->record);
    return QString();
}

} // namespace

ControllerSimulator::ControllerSimulator(const QString &dataDir, QObject *parent)
    : kelplugin::ControllerBackend(parent)
    , m_gasTimer(new QTimer(this))
    , m_activeWeldData(QStringLiteral("LsData1"))
{
    const QString dir = dataDir.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
        : dataDir;
    m_store.reset(
        new RecordStore(QDir(dir).absoluteFilePath(QStringLiteral("kelcontroller.json"))));
    m_weldRecords.reset(
        new WeldRecords(QDir(dir).absoluteFilePath(QStringLiteral("kelweldrecords.json"))));
    m_runner = new ProgramRunner(this, m_weldRecords.get());
    connect(m_runner, &ProgramRunner::stateChanged, this, &ControllerSimulator::stateChanged);
    connect(m_runner, &ProgramRunner::lineChanged, this, &ControllerSimulator::stateChanged);
    m_gasTimer->setSingleShot(true);
    connect(m_gasTimer, &QTimer::timeout, this, [this] { setGasOpen(false); });
    m_history.reset(
        new ChangeHistory(QDir(dir).absoluteFilePath(QStringLiteral("kelhistory.json"))));
    // Nothing is read before the folder is ours: another owner may be writing it.
    m_lock.reset(new DataFolderLock(dir));
    QString lockError;
    if (!m_lock->acquire(&lockError)) {
        for (const QString &key : recordKeys())
            m_records.insert(key, FactoryRecords::record(key));
        m_points = FactoryRecords::points();
        m_positions = FactoryRecords::pointPositions();
        m_storeBlocked = true;
        m_weldRecords->block(lockError);
        tellLater(QStringLiteral("The controller cannot start: %1.").arg(lockError));
        return;
    }
    load();
    for (const QString &sideProblem : {m_weldRecords->load(), m_history->load()}) {
        if (!sideProblem.isEmpty())
            tellLater(sideProblem);
    }
}

ControllerSimulator::~ControllerSimulator() = default;

bool ControllerSimulator::isOwner() const
{
    return m_lock->isHeld();
}

void ControllerSimulator::tellLater(const QString &text)
{
    m_lastError = text;
    m_storageProblems.append(text);
    ++m_storageProblemCount;
    // Nobody can listen yet while the constructor runs; tell whoever connects right after.
    QMetaObject::invokeMethod(
        this, [this, text] { emit problem(text); }, Qt::QueuedConnection);
}

QString ControllerSimulator::dataFilePath() const
{
    return m_store->filePath();
}

QStringList ControllerSimulator::recordKeys()
{
    return {ioKey, settingKey, curveKey, paramKey, matchKey};
}

QJsonObject ControllerSimulator::record(const QString &key) const
{
    return m_records.value(key);
}

void ControllerSimulator::report(const QString &text)
{
    m_lastError = text;
    emit problem(text);
}

void ControllerSimulator::load()
{
    for (const QString &key : recordKeys())
        m_records.insert(key, FactoryRecords::record(key));
    m_points = FactoryRecords::points();
    m_positions = FactoryRecords::pointPositions();

    QJsonObject doc;
    QString error;
    const RecordStore::ReadResult result = m_store->read(&doc, &error);
    if (result == RecordStore::ReadResult::Missing)
        return;
    m_storedBytes = QFileInfo(m_store->filePath()).size();

    QStringList damage;
    if (result == RecordStore::ReadResult::Corrupt) {
        damage.append(error);
    } else {
        for (const QString &key : recordKeys()) {
            const auto it = doc.constFind(key);
            if (it == doc.constEnd())
                continue;
            if (it.value().isObject())
                m_records.insert(key, it.value().toObject());
            else
                damage.append(QStringLiteral("%1 is not an object").arg(key));
        }
        const QJsonValue status = doc.value(statusKey);
        if (status.isObject() && status.toObject().value(virtualKey).isBool())
            m_virtualWelding = status.toObject().value(virtualKey).toBool();
        else if (!status.isUndefined())
            damage.append(
                QStringLiteral("%1 is not an object with a boolean %2").arg(statusKey, virtualKey));
        const QJsonValue points = doc.value(pointsKey);
        if (points.isArray()) {
            QStringList names;
            bool allNames = true;
            for (const QJsonValue &p : points.toArray()) {
                if (p.isString() && !p.toString().isEmpty() && !names.contains(p.toString()))
                    names.append(p.toString());
                else
                    allNames = false;
            }
            m_points = names;
            if (!allNames)
                damage.append(
                    QStringLiteral("%1 holds entries that are not point names").arg(pointsKey));
        } else if (!points.isUndefined()) {
            damage.append(QStringLiteral("%1 is not an array").arg(pointsKey));
        }
        loadPointPositions(doc, &damage);
    }
    // The laser is never armed after a restart, whatever the file says.
    QJsonObject settings = m_records.value(settingKey);
    if (settings.contains(QStringLiteral("laser_main_enable"))) {
        settings.insert(QStringLiteral("laser_main_enable"), false);
        m_records.insert(settingKey, settings);
    }
    if (m_storedBytes > StorageLimits::maxDataFileBytes)
        tellLater(QStringLiteral("The controller data file %1 holds %2, more than a save may "
                                 "write (%3): saves that make it larger are refused.")
                      .arg(m_store->filePath(), StorageLimits::sizeText(m_storedBytes),
                          StorageLimits::limitText(StorageLimits::maxDataFileBytes)));
    if (damage.isEmpty())
        return;

    QString text = QStringLiteral("The controller data file is damaged: %1.")
                       .arg(damage.join(QStringLiteral("; ")));
    QString asideError;
    const QString aside = m_store->keepAside(&asideError);
    if (aside.isEmpty()) {
        // Keep the damaged file for inspection: nothing is written until the next start.
        m_storeBlocked = true;
        text += QStringLiteral(" %1; changes are not saved.").arg(asideError);
    } else {
        text += QStringLiteral(" It was kept as %1; damaged parts start from factory records.")
                    .arg(aside);
        // Replaced in one step: the damaged file stays the data file until the repaired one
        // is complete on disk.
        const QByteArray repaired = QJsonDocument(document()).toJson(QJsonDocument::Indented);
        QString writeError;
        if (m_store->write(repaired, &writeError)) {
            m_storedBytes = repaired.size();
            RecordStore::step("replaced");
        } else {
            text += QLatin1Char(' ') + writeError;
        }
    }
    tellLater(text);
}

// Files written before points had positions get the factory positions of the factory points.
void ControllerSimulator::loadPointPositions(const QJsonObject &doc, QStringList *damage)
{
    const QJsonValue value = doc.value(positionsKey);
    if (value.isUndefined())
        return;
    m_positions.clear();
    if (!value.isObject()) {
        damage->append(QStringLiteral("%1 is not an object").arg(positionsKey));
        return;
    }
    const QJsonObject positions = value.toObject();
    bool allPositions = true;
    for (auto it = positions.constBegin(); it != positions.constEnd(); ++it) {
        const QJsonArray xyz = it.value().toArray();
        bool ok = xyz.size() == 3;
        for (int i = 0; ok && i < 3; ++i)
            ok = RecordSchema::isFiniteNumber(xyz.at(i)) && qAbs(xyz.at(i).toDouble()) < 1e6;
        if (ok)
            m_positions.insert(it.key(),
                QVector3D(float(xyz.at(0).toDouble()), float(xyz.at(1).toDouble()),
                    float(xyz.at(2).toDouble())));
        allPositions = allPositions && ok;
    }
    if (!allPositions)
        damage->append(QStringLiteral("%1 holds entries that are not [x, y, z]").arg(positionsKey));
}

QJsonObject ControllerSimulator::document() const
{
    QJsonObject doc;
    for (const QString &key : recordKeys())
        doc.insert(key, m_records.value(key));
    doc.insert(statusKey, QJsonObject {{virtualKey, m_virtualWelding}});
    doc.insert(pointsKey, QJsonArray::fromStringList(m_points));
    QJsonObject positions;
    for (auto it = m_positions.constBegin(); it != m_positions.constEnd(); ++it)
        positions.insert(it.key(), QJsonArray {it.value().x(), it.value().y(), it.value().z()});
    doc.insert(positionsKey, positions);
    return doc;
}

bool ControllerSimulator::save()
{
    return write() == Success;
}

int ControllerSimulator::write()
{
    if (m_storeBlocked) {
        report(isOwner() ? QStringLiteral("%1 is damaged and kept for inspection; changes are "
                                          "not saved")
                               .arg(m_store->filePath())
                         : m_storageProblems.value(0));
        return StoreFailed;
    }
    const QByteArray bytes = QJsonDocument(document()).toJson(QJsonDocument::Indented);
    // A file an older version let grow may still shrink.
    if (bytes.size() > StorageLimits::maxDataFileBytes && bytes.size() > m_storedBytes) {
        report(StorageLimits::tooLarge(
            QStringLiteral("data file"), bytes.size(), StorageLimits::maxDataFileBytes));
        return TooLarge;
    }
    QString error;
    if (!m_store->write(bytes, &error)) {
        report(QStringLiteral("store failed: %1").arg(error));
        return StoreFailed;
    }
    m_storedBytes = bytes.size();
    return Success;
}

bool ControllerSimulator::persistOrUndo(const std::function<void()> &undo, QJsonObject *entry)
{
    const int code = write();
    if (code == Success)
        return true;
    undo();
    *entry = refused(code, m_lastError);
    return false;
}

bool ControllerSimulator::storeRecord(
    const QString &key, const QJsonObject &value, QJsonObject *entry)
{
    *entry = accepted();
    const QJsonObject old = m_records.value(key);
    if (old == value)
        return true;
    ChangeHistory::Entry change {QDateTime::currentDateTimeUtc(), m_userLevel, m_command, key,
        ChangeHistory::changes(old, value), m_clientName};
    // Checked before anything is written.
    const QString tooLarge = sizeRefusal(old, value, &change);
    if (!tooLarge.isEmpty()) {
        report(tooLarge);
        *entry = refused(TooLarge, tooLarge);
        return false;
    }
    m_records.insert(key, value);
    if (!persistOrUndo([this, key, old] { m_records.insert(key, old); }, entry))
        return false;
    // The record is stored; a history that cannot be written is told, not a refusal.
    QString historyError;
    if (!m_history->add(change, &historyError)) {
        m_storageProblems.append(historyError);
        ++m_storageProblemCount;
        // The newest tell enough; a full disk must not fill the memory with reports.
        if (m_storageProblems.size() > 20)
            m_storageProblems.removeFirst();
        report(historyError);
    }
    emit stateChanged();
    return true;
}

void ControllerSimulator::setIoLayout(const IoLayout &layout)
{
    m_layout = layout;
    emit stateChanged();
}

void ControllerSimulator::setUserLevel(int level)
{
    if (m_userLevel == level)
        return;
    m_userLevel = level;
    emit stateChanged();
}

void ControllerSimulator::setRobotPowered(bool powered)
{
    if (m_powered == powered)
        return;
    m_powered = powered;
    emit stateChanged();
}

void ControllerSimulator::setConnected(bool connected)
{
    if (m_connected == connected)
        return;
    m_connected = connected;
    emit stateChanged();
    if (connected)
        emit connectionRestored();
}

bool ControllerSimulator::isConnected() const
{
    return m_connected;
}

void ControllerSimulator::injectReturnCode(int code)
{
    m_fault = Fault::ReturnCode;
    m_faultCode = code;
}

void ControllerSimulator::injectEmptyReply()
{
    m_fault = Fault::EmptyReply;
}

void ControllerSimulator::injectMalformedElement()
{
    m_fault = Fault::MalformedElement;
}

bool ControllerSimulator::isMonitorRunning() const
{
    return m_runner->monitor()->isRunning();
}

const QStringList &ControllerSimulator::knownTools()
{
    static const QStringList list {QStringLiteral("tool0"), QStringLiteral("tool1")};
    return list;
}

const QStringList &ControllerSimulator::knownWobjs()
{
    static const QStringList list {QStringLiteral("wobj0"), QStringLiteral("wobj1")};
    return list;
}

const QVector<ControllerSimulator::AnalogSignal> &ControllerSimulator::analogSignals()
{
    static const QVector<AnalogSignal> list {
        {QStringLiteral("power_port"), QStringLiteral("power_type"),
            QStringLiteral("power_enabled"), 0},
        {QStringLiteral("frequency_port"), QStringLiteral("frequency_type"),
            QStringLiteral("frequency_enabled"), 2},
        {QStringLiteral("duty_cycle_port"), QStringLiteral("duty_cycle_type"),
            QStringLiteral("duty_cycle_enabled"), 3},
        {QStringLiteral("wire_speed_port"), QStringLiteral("wire_speed_type"),
            QStringLiteral("wire_speed_enabled"), 1},
    };
    return list;
}

QVector3D ControllerSimulator::robotPosition() const
{
    return m_runner->position();
}

QList<ControllerSimulator::PortValue> ControllerSimulator::assignedOutputs() const
{
    const QJsonObject io = m_records.value(ioKey);
    const ProgramRunner::Outputs live = m_runner->outputs();
    QList<PortValue> list;
    // Rows without a switch are always live; the others only when switched on.
    const auto digital = [&](const char *signal, const char *enabled, bool on) {
        const QString port = io.value(QLatin1String(signal)).toString();
        if (!port.isEmpty() && (!enabled || io.value(QLatin1String(enabled)).toBool()))
            list.append({QLatin1String(signal), port, on ? 1.0 : 0.0});
    };
    digital("laser_enable_port", nullptr, live.laser);
    digital("gas_protect_port", nullptr, live.gas || m_gasOpen);
    digital("red_light_port", "red_light_enabled", m_redLight);
    digital("wire_feed_port", "wire_feed_enabled", live.wire != 0.0);
    digital("retract_direction_port", "retract_direction_enabled", live.wire < 0.0);
    digital("manual_wire_feed_port", "manual_wire_feed_enabled", m_feeder == Feeder::Feeding);
    digital("manual_retract_port", "manual_retract_enabled", m_feeder == Feeder::Retracting);
    const double physical[] = {live.power, live.frequency, live.duty, std::abs(live.wire)};
    const QJsonObject curves = m_records.value(curveKey);
    for (int i = 0; i < analogSignals().size(); ++i) {
        const AnalogSignal &a = analogSignals().at(i);
        const QString port = io.value(a.portKey).toString();
        if (port.isEmpty() || !io.value(a.enabledKey).toBool())
            continue;
        OutputCalibration calibration;
        QString error;
        double raw = calibration.load(curves, a.curve, &error) ? calibration.raw(physical[i]) : 0.0;
        if (io.value(a.typeKey).toInt() == 1)
            raw = std::round(raw);
        list.append({a.portKey, port, raw});
    }
    return list;
}

void ControllerSimulator::setActiveWeldData(const QString &setName)
{
    if (m_activeWeldData == setName)
        return;
    m_activeWeldData = setName;
    emit stateChanged();
}

void ControllerSimulator::setGasOpen(bool open)
{
    if (m_gasOpen == open)
        return;
    m_gasOpen = open;
    emit stateChanged();
}

void ControllerSimulator::setFeeder(Feeder state)
{
    if (m_feeder == state)
        return;
    m_feeder = state;
    emit stateChanged();
}

QJsonArray ControllerSimulator::commandCustomData(
    QObject *, const QString &pluginKey, const QJsonObject &command)
{
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    const QJsonValue payload = command.isEmpty() ? QJsonValue() : command.constBegin().value();
    const QJsonArray reply = answer(pluginKey, command);
    emit commandHandled(name, payload, reply);
    return reply;
}

QJsonArray ControllerSimulator::commandCustomData(
    QObject *sender, const QString &pluginKey, const QString &command, const QString &value)
{
    return commandCustomData(sender, pluginKey, QJsonObject {{command, value}});
}

QJsonArray ControllerSimulator::answer(const QString &pluginKey, const QJsonObject &command)
{
    if (!m_connected)
        return QJsonArray();
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    const Fault fault = m_fault;
    m_fault = Fault::None;

    QJsonObject entry;
    if (fault == Fault::ReturnCode && m_faultCode != 0) {
        // A refusal the controller made up: nothing is applied.
        entry = refused(m_faultCode, QStringLiteral("failure injected for this command"));
    } else {
        entry = execute(pluginKey, command);
        if (fault == Fault::ReturnCode)
            entry.insert(QStringLiteral("return"), 0);
    }
    // A lost or garbled answer does not undo what the controller already did.
    if (fault == Fault::EmptyReply)
        return QJsonArray();
    if (fault == Fault::MalformedElement)
        return QJsonArray {
            QStringLiteral("oops"), QJsonObject {{pluginKey, QStringLiteral("oops")}}};
    return QJsonArray {QJsonObject {{pluginKey, QJsonObject {{name, entry}}}}};
}

QJsonObject ControllerSimulator::execute(const QString &pluginKey, const QJsonObject &command)
{
    if (pluginKey != pluginKeyName) {
        report(QStringLiteral("Command for the unknown plug-in \"%1\" refused").arg(pluginKey));
        return refused(
            UnknownCommand, QStringLiteral("no plug-in \"%1\" on this controller").arg(pluginKey));
    }
    if (command.size() != 1)
        return refused(BadPayload, QStringLiteral("a request holds exactly one command"));

    using Handler = std::function<QJsonObject(ControllerSimulator *, const QJsonValue &)>;
    static const QHash<QString, Handler> handlers = [] {
        QHash<QString, Handler> h;
        h.insert(QStringLiteral("set_weld_red_light"), &ControllerSimulator::onRedLight);
        h.insert(QStringLiteral("set_weld_manual_gas"), &ControllerSimulator::onManualGas);
        h.insert(
            QStringLiteral("set_weld_feed_wire"), [](ControllerSimulator *s, const QJsonValue &p) {
                return s->onWire(Feeder::Feeding, p);
            });
        h.insert(QStringLiteral("set_weld_retract_wire"),
            [](ControllerSimulator *s, const QJsonValue &p) {
                return s->onWire(Feeder::Retracting, p);
            });
        h.insert(QStringLiteral("set_virtual_welding"), &ControllerSimulator::onVirtualWelding);
        h.insert(QStringLiteral("set_weld_io_config"), &ControllerSimulator::onIoConfig);
        h.insert(QStringLiteral("set_weld_setting_config"), &ControllerSimulator::onSettingConfig);
        h.insert(weldEnableCommand, &ControllerSimulator::onWeldEnable);
        h.insert(QStringLiteral("compute_curve_config"), &ControllerSimulator::onComputeCurve);
        const QVector<RecordSchema::Curve> &curves = RecordSchema::curves();
        for (int i = 0; i < curves.size(); ++i) {
            h.insert(curves.at(i).command,
                [i](ControllerSimulator *s, const QJsonValue &p) { return s->onCurve(i, p); });
        }
        h.insert(QStringLiteral("set_weld_param_list_config"),
            [](ControllerSimulator *s, const QJsonValue &p) {
                return s->onWeldSets(paramKey, QStringLiteral("LsData"), 30, p);
            });
        h.insert(QStringLiteral("set_weld_param_match_config"),
            [](ControllerSimulator *s, const QJsonValue &p) {
                return s->onWeldSets(matchKey, QStringLiteral("PowerData"), 10, p);
            });
        h.insert(QStringLiteral("start_laserweld_monitor"), &ControllerSimulator::onMonitor);
        return h;
    }();

    const QString name = command.constBegin().key();
    m_command = name;
    const auto handler = handlers.constFind(name);
    if (handler == handlers.constEnd()) {
        report(QStringLiteral("Unknown command \"%1\" refused").arg(name));
        return refused(UnknownCommand, QStringLiteral("unknown command \"%1\"").arg(name));
    }
    return handler.value()(this, command.constBegin().value());
}

QJsonObject ControllerSimulator::onRedLight(const QJsonValue &payload)
{
    const QJsonObject bad = needBool(payload);
    if (!bad.isEmpty())
        return bad;
    if (m_redLight != payload.toBool()) {
        m_redLight = payload.toBool();
        emit stateChanged();
    }
    return accepted();
}

QJsonObject ControllerSimulator::onManualGas(const QJsonValue &payload)
{
    const QJsonObject bad = needBool(payload);
    if (!bad.isEmpty())
        return bad;
    if (!payload.toBool()) {
        m_gasTimer->stop();
        setGasOpen(false);
        return accepted();
    }
    if (m_records.value(ioKey).value(QLatin1String("gas_protect_port")).toString().isEmpty())
        return refused(NotConfigured, QStringLiteral("no assist gas port is assigned"));
    const QJsonValue time = m_records.value(settingKey).value(QLatin1String("manual_gas_time"));
    const int ms = RecordSchema::isInteger(time, 1000, 10000) ? time.toInt() : 5000;
    m_gasTimer->start(ms);
    setGasOpen(true);
    return accepted();
}

QJsonObject ControllerSimulator::onWire(Feeder direction, const QJsonValue &payload)
{
    const QJsonObject bad = needBool(payload);
    if (!bad.isEmpty())
        return bad;
    // Stopping the wire is never refused.
    if (!payload.toBool()) {
        if (m_feeder == direction)
            setFeeder(Feeder::Idle);
        return accepted();
    }
    if (!m_records.value(settingKey).value(QLatin1String("feeder_enable")).toBool())
        return refused(NotConfigured, QStringLiteral("the wire feeder is disabled"));
    if (m_weldingEnabled)
        return refused(
            Refused, QStringLiteral("the wire cannot be moved by hand while welding is enabled"));
    setFeeder(direction);
    return accepted();
}

QJsonObject ControllerSimulator::onVirtualWelding(const QJsonValue &payload)
{
    const QJsonObject bad = needBool(payload);
    if (!bad.isEmpty())
        return bad;
    const bool virtualWelding = payload.toBool();
    if (m_virtualWelding == virtualWelding)
        return accepted();
    if (m_powered)
        return refused(
            Refused, QStringLiteral("the work mode cannot change while the robot is powered"));
    m_virtualWelding = virtualWelding;
    QJsonObject entry = accepted();
    if (persistOrUndo([this, virtualWelding] { m_virtualWelding = !virtualWelding; }, &entry))
        emit stateChanged();
    return entry;
}

QJsonObject ControllerSimulator::onIoConfig(const QJsonValue &payload)
{
    if (!payload.isObject())
        return refused(BadPayload, QStringLiteral("the I/O configuration must be an object"));
    if (m_weldingEnabled)
        return refused(
            Refused, QStringLiteral("the I/O assignment cannot change while welding is enabled"));
    const QJsonObject given = payload.toObject();
    const QString error = RecordSchema::checkIoConfig(given, m_layout);
    if (!error.isEmpty())
        return refused(BadPayload, error);
    QJsonObject record;
    for (const RecordSchema::Field &field : RecordSchema::ioFields())
        record.insert(field.key, given.value(field.key));
    QJsonObject entry;
    storeRecord(ioKey, record, &entry);
    return entry;
}

QJsonObject ControllerSimulator::onSettingConfig(const QJsonValue &payload)
{
    if (!payload.isObject())
        return refused(BadPayload, QStringLiteral("the device settings must be an object"));
    const QJsonObject given = payload.toObject();
    const QString error = RecordSchema::checkSettingConfig(given, m_layout);
    if (!error.isEmpty())
        return refused(BadPayload, error);
    QJsonObject record;
    for (const RecordSchema::Field &field : RecordSchema::settingFields())
        record.insert(field.key, given.value(field.key));
    // Only set_weld_enable arms the laser; the record reports what the controller did.
    record.insert(QStringLiteral("laser_main_enable"), m_weldingEnabled);
    QJsonObject entry;
    storeRecord(settingKey, record, &entry);
    return entry;
}

QJsonObject ControllerSimulator::onWeldEnable(const QJsonValue &payload)
{
    const QString value = payload.toString();
    if (value != QLatin1String("TRUE") && value != QLatin1String("FALSE"))
        return enableAnswer(false, QStringLiteral("the value must be \"TRUE\" or \"FALSE\""));
    const bool enable = value == QLatin1String("TRUE");
    if (enable) {
        if (m_powered)
            return enableAnswer(
                false, QStringLiteral("welding cannot be enabled while the robot is powered"));
        if (m_records.value(ioKey).value(QLatin1String("laser_enable_port")).toString().isEmpty())
            return enableAnswer(false, QStringLiteral("no laser enable port is assigned"));
    }
    if (enable == m_weldingEnabled)
        return enableAnswer(true);

    const QJsonObject oldSettings = m_records.value(settingKey);
    QJsonObject settings = oldSettings;
    settings.insert(QStringLiteral("laser_main_enable"), enable);
    m_records.insert(settingKey, settings);
    m_weldingEnabled = enable;
    QJsonObject entry;
    if (!persistOrUndo(
            [this, oldSettings, enable] {
                m_records.insert(settingKey, oldSettings);
                m_weldingEnabled = !enable;
            },
            &entry))
        return enableAnswer(false, entry.value(QLatin1String("message")).toString());
    // Arming the laser takes the wire out of manual control.
    if (enable)
        m_feeder = Feeder::Idle;
    emit stateChanged();
    return enableAnswer(true);
}

QJsonObject ControllerSimulator::onComputeCurve(const QJsonValue &payload)
{
    const QJsonObject curve = payload.toObject();
    for (const RecordSchema::Curve &c : RecordSchema::curves()) {
        const QJsonValue nodes = curve.value(c.nodesKey);
        if (nodes.isUndefined())
            continue;
        if (!nodes.isArray())
            return refused(BadPayload, QStringLiteral("%1 must be an array").arg(c.nodesKey));
        const QJsonArray rows = CurveFit::usedRows(nodes.toArray(), curve.value(c.countKey));
        CurveFit fit;
        if (!fit.fit(rows))
            return refused(BadPayload, fit.error());
        QJsonObject entry = accepted();
        entry.insert(QStringLiteral("slope"), fit.slope());
        entry.insert(QStringLiteral("intercept"), fit.intercept());
        return entry;
    }
    return refused(BadPayload, QStringLiteral("the payload holds no node array of a known curve"));
}

QJsonObject ControllerSimulator::onCurve(int curve, const QJsonValue &payload)
{
    const RecordSchema::Curve &c = RecordSchema::curves().at(curve);
    if (!payload.isObject())
        return refused(BadPayload, QStringLiteral("the curve must be an object"));
    const QJsonObject given = payload.toObject();
    const QString error = RecordSchema::checkCurve(c, given);
    if (!error.isEmpty())
        return refused(BadPayload, error);
    QJsonObject record = m_records.value(curveKey);
    record.insert(c.countKey, given.value(c.countKey));
    record.insert(c.nodesKey, given.value(c.nodesKey));
    QJsonObject entry;
    storeRecord(curveKey, record, &entry);
    return entry;
}

QJsonObject ControllerSimulator::onWeldSets(
    const QString &recordKey, const QString &prefix, int last, const QJsonValue &payload)
{
    if (!payload.isObject())
        return refused(BadPayload, QStringLiteral("the sets must be an object"));
    const QJsonObject sets = payload.toObject();
    const QString error = RecordSchema::checkSets(sets, prefix, last);
    if (!error.isEmpty())
        return refused(BadPayload, error);
    QJsonObject record = m_records.value(recordKey);
    for (auto it = sets.constBegin(); it != sets.constEnd(); ++it)
        record.insert(it.key(), it.value());
    QJsonObject entry;
    if (storeRecord(recordKey, record, &entry) && recordKey == paramKey)
        setActiveWeldData((sets.constEnd() - 1).key());
    return entry;
}

QJsonObject ControllerSimulator::onMonitor(const QJsonValue &payload)
{
    const QJsonObject bad = needBool(payload);
    if (!bad.isEmpty())
        return bad;
    if (payload.toBool() == m_runner->monitor()->isRunning())
        return accepted();
    if (payload.toBool())
        m_runner->monitor()->start();
    else
        m_runner->monitor()->stop();
    emit stateChanged();
    return accepted();
}

QJsonValue ControllerSimulator::getKelServiceData(const QString &key)
{
    if (!m_connected)
        return QJsonValue(QJsonValue::Undefined);
    if (key == monitorKey) {
        if (!m_runner->monitor()->isRunning())
            return QJsonValue(QJsonValue::Undefined);
        return m_runner->monitorStream(m_activeWeldData, m_weldingEnabled);
    }

    const QStringList path = key.split(QLatin1Char('.'));
    QJsonValue value;
    int member = 1;
    bool isId = false;
    if (path.first() == weldRecordsKey) {
        value = m_weldRecords->list();
    } else if (path.first() == weldRecordKey && path.size() > 1) {
        const int id = path.at(1).toInt(&isId);
        if (isId)
            value = m_weldRecords->weld(id);
        member = 2;
    } else if (path.first() == QLatin1String("controller_identity")) {
        value = QJsonObject {{QStringLiteral("model"), QStringLiteral("kelcontroller simulator")},
            {QStringLiteral("data_file"), dataFilePath()}};
    } else if (path.first() == statusKey) {
        value = QJsonObject {{virtualKey, m_virtualWelding}, {redLightKey, m_redLight}};
    } else if (m_records.contains(path.first())) {
        value = m_records.value(path.first());
    }
    for (int i = member; i < path.size() && !value.isUndefined(); ++i)
        value = value.isObject() ? value.toObject().value(path.at(i))
                                 : QJsonValue(QJsonValue::Undefined);
    if (value.isUndefined() || value.isNull())
        report(QStringLiteral("The controller has no data under \"%1\"").arg(key));
    return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
}

bool ControllerSimulator::disconnectKelServiceData(
    const QString &, const QString &key, const QString &)
{
    if (!m_connected)
        return false;
    if (key != monitorKey) {
        report(QStringLiteral("No stream \"%1\" to release").arg(key));
        return false;
    }
    // The stream has no reader left: the controller stops producing it.
    if (m_runner->monitor()->isRunning()) {
        m_runner->monitor()->stop();
        emit stateChanged();
    }
    return true;
}

int ControllerSimulator::getUserOperateLevel()
{
    return m_userLevel;
}

bool ControllerSimulator::getRobotEleStatus()
{
    return m_powered;
}

QStringList ControllerSimulator::getIOByType(const QString &type)
{
    return m_connected ? m_layout.ports(type) : QStringList();
}

QHash<QString, QStringList> ControllerSimulator::getRegisterHash()
{
    if (!m_connected)
        return {};
    QList<int> numbers;
    for (int i = 1; i <= 32; ++i)
        numbers.append(i);
    return {{QStringLiteral("R"), numbered(QStringLiteral("R"), numbers)}};
}

QStringList ControllerSimulator::getPointNameList()
{
    return m_connected ? m_points : QStringList();
}

bool ControllerSimulator::addCurrentPoint(
    const QString &name, bool overwrite, const QString &tool, const QString &wobj)
{
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]{0,31}$"));
    if (!m_connected || !identifier.match(name).hasMatch())
        return false;
    if ((!tool.isEmpty() && !knownTools().contains(tool))
        || (!wobj.isEmpty() && !knownWobjs().contains(wobj)))
        return false;
    const bool known = m_points.contains(name);
    if (known && !overwrite)
        return false;
    const QVector3D here = robotPosition();
    if (known && m_positions.contains(name) && m_positions.value(name) == here)
        return true;
    const QHash<QString, QVector3D> oldPositions = m_positions;
    if (!known)
        m_points.append(name);
    m_positions.insert(name, here);
    QJsonObject entry;
    if (!persistOrUndo(
            [this, known, oldPositions] {
                if (!known)
                    m_points.removeLast();
                m_positions = oldPositions;
            },
            &entry))
        return false;
    emit stateChanged();
    return true;
}

QStringList ControllerSimulator::getZoneList()
{
    if (!m_connected)
        return {};
    return QStringList {QStringLiteral("fine")}
    + numbered(QStringLiteral("z"), {0, 1, 5, 10, 15, 20, 30, 50, 100, 200});
}

QStringList ControllerSimulator::getSpeedList()
{
    if (!m_connected)
        return {};
    return numbered(QStringLiteral("v"),
        {5, 10, 20, 30, 40, 50, 60, 80, 100, 150, 200, 300, 400, 500, 600, 800, 1000});
}

QStringList ControllerSimulator::getWobjList()
{
    return m_connected ? knownWobjs() : QStringList();
}

QStringList ControllerSimulator::getToolList()
{
    return m_connected ? knownTools() : QStringList();
}

QString ControllerSimulator::getCurWobj()
{
    return m_connected ? knownWobjs().first() : QString();
}

QString ControllerSimulator::getCurTool()
{
    return m_connected ? knownTools().first() : QString();
}

} // namespace kelcontroller
