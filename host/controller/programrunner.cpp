#include "programrunner.h"

#include "controllersimulator.h"
#include "outputcalibration.h"
#include "recordschema.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace kelcontroller {

namespace {

// Lines run without the clock moving before the runner lets the event loop in again.
constexpr int lineBudget = 100000;
constexpr int tickMs = 20;

const QString ioKey = QStringLiteral("weld_io_config");
const QString settingKey = QStringLiteral("weld_setting_config");

int settingTime(const QJsonObject &settings, const char *key)
{
    const QJsonValue v = settings.value(QLatin1String(key));
    return RecordSchema::isFiniteNumber(v)
        ? int(std::lround(qBound(0.0, v.toDouble(), double(WeldSet::maxTime))))
        : 0;
}

double positiveSetting(const QJsonObject &settings, const char *key, double fallback)
{
    const QJsonValue v = settings.value(QLatin1String(key));
    return RecordSchema::isFiniteNumber(v) && v.toDouble() > 0.0 ? v.toDouble() : fallback;
}

QString lineText(int index, const QString &text)
{
    return QStringLiteral("Line %1: %2").arg(index + 1).arg(text);
}

} // namespace

ProgramRunner::ProgramRunner(ControllerSimulator *controller, WeldRecords *records)
    : QObject(controller), m_controller(controller), m_records(records), m_timer(new QTimer(this))
{
    m_timer->setInterval(tickMs);
    connect(m_timer, &QTimer::timeout, this, &ProgramRunner::syncRealTime);
    m_realClock.start();
}

ProgramRunner::~ProgramRunner() = default;

bool ProgramRunner::run(const QStringList &lines, const QString &programName)
{
    if (m_state == State::Stepping) {
        m_stepDue = false;
        setState(State::Running);
        advance(0);
        updateTimer();
        return true;
    }
    return m_state == State::Idle && start(lines, programName, false);
}

bool ProgramRunner::step(const QStringList &lines, const QString &programName)
{
    if (m_state == State::Running)
        return false;
    if (m_state == State::Idle)
        return start(lines, programName, true);
    if (m_stepDue || m_now < m_activityEnd)
        return false;
    m_stepDue = true;
    int budget = lineBudget;
    runLines(&budget);
    updateTimer();
    return m_state != State::Idle || !m_stepDue;
}

bool ProgramRunner::start(const QStringList &lines, const QString &programName, bool stepping)
{
    syncRealTime();
    m_lines = lines;
    m_program = programName;
    if (!preflight())
        return false;
    m_next = 0;
    m_programDone = false;
    m_carrySpeed = 0.0;
    m_activityEnd = m_now;
    m_process.clearMatching();
    m_matchName.clear();
    m_stepDue = stepping;
    setState(stepping ? State::Stepping : State::Running);
    int budget = lineBudget;
    runLines(&budget);
    updateTimer();
    return true;
}

bool ProgramRunner::preflight()
{
    Course course {m_process.isLaserCommanded(), position()};
    for (int i = 0; i < m_lines.size(); ++i) {
        ProgramLine line;
        QString error;
        if (ProgramLine::parse(m_lines.at(i), &line, &error)
            && line.kind != ProgramLine::Kind::Skip)
            error = check(line, &course);
        if (!error.isEmpty()) {
            emit message(1, lineText(i, error), i);
            return false;
        }
    }
    return true;
}

QString ProgramRunner::check(const ProgramLine &line, Course *course) const
{
    if (!m_controller->getRobotEleStatus())
        return QStringLiteral("the robot is not powered.");
    if (m_controller->getUserOperateLevel() < 3)
        return QStringLiteral("user level 3 or more is needed to run a program.");
    const QJsonObject settings = m_controller->record(settingKey);
    QString error;
    using Kind = ProgramLine::Kind;
    switch (line.kind) {
    case Kind::LaserOn: {
        if (course->laserOn)
            return QStringLiteral("the laser is already on.");
        if (!m_controller->isWeldingEnabled() && !m_controller->isVirtualWelding())
            return QStringLiteral("welding is switched off.");
        const QJsonObject io = m_controller->record(ioKey);
        if (io.value(QLatin1String("laser_enable_port")).toString().isEmpty())
            return QStringLiteral("no laser enable port is assigned.");
        if (io.value(QLatin1String("gas_protect_port")).toString().isEmpty())
            return QStringLiteral("no assist gas port is assigned.");
        WeldSet set;
        if (!readWeldSet(line.setName, &set, &error))
            return error;
        course->laserOn = true;
        return checkProcessOutputs();
    }
    case Kind::LaserOff:
        course->laserOn = false;
        return QString();
    case Kind::ParaSet: {
        WeldSet set;
        return readWeldSet(line.setName, &set, &error) ? QString() : error;
    }
    case Kind::ParaMatch: {
        MatchSet set;
        return readMatchSet(line.setName, &set, &error) ? QString() : error;
    }
    case Kind::WireFwd:
    case Kind::WireBwd:
        if (!settings.value(QLatin1String("feeder_enable")).toBool())
            return QStringLiteral("the wire feeder is disabled.");
        return checkProcessOutputs();
    case Kind::MoveL:
    case Kind::MoveC:
    case Kind::MoveCF: {
        if (!ControllerSimulator::knownTools().contains(line.tool))
            return QStringLiteral("%1 is not a tool.").arg(line.tool);
        if (!ControllerSimulator::knownWobjs().contains(line.wobj))
            return QStringLiteral("%1 is not a work object.").arg(line.wobj);
        PathSegment segment;
        if (!segmentFor(line, course->position, &segment, &error))
            return error;
        course->position = segment.pointAt(segment.length());
        return QString();
    }
    default:
        return QString();
    }
}

// Every switched-on output row needs a port, and an analogue set-point a curve to go through.
QString ProgramRunner::checkProcessOutputs() const
{
    const QJsonObject io = m_controller->record(ioKey);
    const QJsonObject curves = m_controller->record(QStringLiteral("weld_curve_config"));
    const QVector<RecordSchema::Field> &fields = RecordSchema::ioFields();
    for (int i = 1; i < fields.size(); ++i) {
        const QString &key = fields.at(i).key;
        if (fields.at(i).kind != RecordSchema::Kind::Bool || !io.value(key).toBool())
            continue;
        const QString portKey = fields.at(i - 1).key;
        QString row = key;
        row.chop(int(sizeof("_enabled")) - 1);
        if (io.value(portKey).toString().isEmpty())
            return QStringLiteral("the %1 output is switched on without a port.").arg(row);
    }
    for (const ControllerSimulator::AnalogSignal &a : ControllerSimulator::analogSignals()) {
        if (!io.value(a.enabledKey).toBool())
            continue;
        OutputCalibration calibration;
        QString error;
        if (!calibration.load(curves, a.curve, &error))
            return QStringLiteral("the %1 curve cannot be used: %2.")
                .arg(RecordSchema::curves().at(a.curve).nodesKey, error);
    }
    return QString();
}

bool ProgramRunner::readWeldSet(const QString &name, WeldSet *set, QString *error) const
{
    const QJsonValue value = m_controller->record(QStringLiteral("weld_param_config")).value(name);
    if (!value.isObject()) {
        *error = QStringLiteral("%1 does not exist.").arg(name);
        return false;
    }
    const QJsonObject settings = m_controller->record(settingKey);
    const double maxPower = positiveSetting(settings, "laser_power", 1e6);
    const double maxWire = positiveSetting(settings, "max_feed_speed", 1e3);
    if (WeldSet::read(value.toObject(), maxPower, maxWire, set, error))
        return true;
    *error = QStringLiteral("%1 %2.").arg(name, *error);
    return false;
}

bool ProgramRunner::readMatchSet(const QString &name, MatchSet *set, QString *error) const
{
    const QJsonValue value = m_controller->record(QStringLiteral("weld_param_match")).value(name);
    if (!value.isObject()) {
        *error = QStringLiteral("%1 does not exist.").arg(name);
        return false;
    }
    if (MatchSet::read(value.toObject(), set, error))
        return true;
    *error = QStringLiteral("%1 %2.").arg(name, *error);
    return false;
}

bool ProgramRunner::resolve(const PointRef &point, QVector3D *position, QString *error) const
{
    if (!m_controller->hasPointPosition(point.name)) {
        *error = QStringLiteral("%1 has no position.").arg(point.name);
        return false;
    }
    // The torch points straight down: the tool's y and z run against the work object's.
    const QVector3D shift = point.relTool
        ? QVector3D(point.offset.x(), -point.offset.y(), -point.offset.z())
        : point.offset;
    *position = m_controller->pointPosition(point.name) + shift;
    return true;
}

bool ProgramRunner::segmentFor(
    const ProgramLine &line, const QVector3D &from, PathSegment *segment, QString *error) const
{
    QVector3D to;
    if (!resolve(line.toPoint, &to, error))
        return false;
    if (!line.isCircle()) {
        *segment = PathSegment::line(from, to);
        return true;
    }
    QVector3D via;
    return resolve(line.cirPoint, &via, error) && PathSegment::arc(from, via, to, segment, error);
}

int ProgramRunner::nextInstruction(int index) const
{
    for (; index < m_lines.size(); ++index) {
        ProgramLine line;
        QString error;
        if (!ProgramLine::parse(m_lines.at(index), &line, &error)
            || line.kind != ProgramLine::Kind::Skip)
            return index;
    }
    return index;
}

// The look-ahead: a zone lets the robot fly by its point when the next line that stops nothing
// is a motion; the corner and the next motion's length decide how fast.
double ProgramRunner::exitSpeed(
    int index, const ProgramLine &line, const PathSegment &segment) const
{
    if (line.zone < 0.0 || m_state == State::Stepping)
        return 0.0;
    for (int i = index + 1; i < m_lines.size(); ++i) {
        ProgramLine next;
        QString error;
        if (!ProgramLine::parse(m_lines.at(i), &next, &error))
            return 0.0;
        if (next.isMotion()) {
            PathSegment following;
            if (!segmentFor(next, segment.pointAt(segment.length()), &following, &error)
                || following.length() <= 0.0 || segment.length() <= 0.0)
                return 0.0;
            const double corner = PathSegment::cornerSpeed(line.speed, next.speed,
                double(QVector3D::dotProduct(segment.endDirection(), following.startDirection())));
            return std::min(
                corner, std::sqrt(2.0 * PathSegment::acceleration * following.length()));
        }
        if (!next.passesThrough())
            return 0.0;
    }
    return 0.0;
}

void ProgramRunner::runLines(int *budget)
{
    while (m_state != State::Idle && m_now >= m_activityEnd) {
        if (m_moving)
            finishMotion();
        m_wireBlocking = false;
        if (m_programDone)
            return;
        m_next = nextInstruction(m_next);
        if (m_next >= m_lines.size()) {
            endProgram();
            return;
        }
        if (m_state == State::Stepping && !m_stepDue)
            return;
        if (--*budget < 0)
            return;
        const int index = m_next++;
        ProgramLine line;
        QString error;
        Course course {m_process.isLaserCommanded(), m_position};
        if (ProgramLine::parse(m_lines.at(index), &line, &error))
            error = check(line, &course);
        if (!error.isEmpty()) {
            refuse(index, error);
            return;
        }
        m_stepDue = false;
        setCurrentLine(index);
        execute(line, index);
    }
}

void ProgramRunner::execute(const ProgramLine &line, int index)
{
    using Kind = ProgramLine::Kind;
    QString error;
    if (!line.isMotion() && !line.passesThrough())
        m_carrySpeed = 0.0;
    switch (line.kind) {
    case Kind::LaserOn: {
        WeldSet set;
        readWeldSet(line.setName, &set, &error);
        if (m_recording)
            closeWeld(true);
        const QJsonObject settings = m_controller->record(settingKey);
        m_simulated = m_controller->isVirtualWelding();
        m_activityEnd = m_process.laserOn(m_now, set, settingTime(settings, "pre_gas_time"),
            settingTime(settings, "delay_off_time"));
        m_controller->setActiveWeldData(line.setName);
        openWeld(index, line.setName);
        break;
    }
    case Kind::LaserOff:
        m_process.laserOff(m_now, m_carrySpeed);
        break;
    case Kind::ParaSet: {
        WeldSet set;
        readWeldSet(line.setName, &set, &error);
        if (m_process.isLaserCommanded())
            m_process.setWeldSet(set);
        m_controller->setActiveWeldData(line.setName);
        break;
    }
    case Kind::ParaMatch: {
        MatchSet set;
        readMatchSet(line.setName, &set, &error);
        m_process.setMatching(set);
        m_matchName = line.setName;
        if (m_recording && m_weld.matchSet.isEmpty())
            m_weld.matchSet = m_matchName;
        break;
    }
    case Kind::ParaMatchOff:
        m_process.clearMatching();
        m_matchName.clear();
        break;
    case Kind::WireFwd:
    case Kind::WireBwd:
        m_process.moveWire(
            m_now, line.kind == Kind::WireFwd ? line.wireSpeed : -line.wireSpeed, line.wireTime);
        m_wireBlocking = true;
        m_activityEnd = m_now + line.wireTime;
        break;
    case Kind::MoveL:
    case Kind::MoveC:
    case Kind::MoveCF:
        segmentFor(line, m_position, &m_segment, &error);
        m_segment.plan(m_carrySpeed, line.speed, exitSpeed(index, line, m_segment));
        m_moving = true;
        m_segmentStart = m_now;
        // The clock runs in whole ms; the robot reaches the point within the last one.
        m_activityEnd = m_now + qint64(std::ceil(m_segment.duration() * 1000.0 - 1e-6));
        m_carrySpeed = m_segment.exitSpeed();
        break;
    case Kind::Skip:
        break;
    }
}

void ProgramRunner::finishMotion()
{
    m_odometer += m_segment.length();
    m_position = m_segment.pointAt(m_segment.length());
    m_moving = false;
}

void ProgramRunner::endProgram()
{
    m_programDone = true;
    if (m_process.isLaserCommanded()) {
        emit message(0,
            QStringLiteral("The program ended with the laser on; the controller switched it off."),
            -1);
        m_process.laserOff(m_now, 0.0);
    }
}

void ProgramRunner::refuse(int index, const QString &text)
{
    emit message(1, lineText(index, text), index);
    halt();
}

void ProgramRunner::stop()
{
    if (m_state == State::Idle && !m_process.isBusy(m_now))
        return;
    halt();
}

void ProgramRunner::halt()
{
    integrate(m_now);
    if (m_moving) {
        m_position = position();
        m_odometer = m_lastOdometer;
        m_moving = false;
    }
    m_activityEnd = m_now;
    m_carrySpeed = 0.0;
    m_wireBlocking = false;
    m_process.stop(m_now);
    m_matchName.clear();
    if (m_recording)
        closeWeld(false);
    endRun(false);
}

void ProgramRunner::endRun(bool completed)
{
    if (m_state == State::Idle)
        return;
    setCurrentLine(-1);
    setState(State::Idle);
    updateTimer();
    emit finished(completed);
}

void ProgramRunner::setState(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit stateChanged(state);
}

void ProgramRunner::setCurrentLine(int line)
{
    if (m_current == line)
        return;
    m_current = line;
    emit lineChanged(line);
}

void ProgramRunner::setSpeedFactor(double factor)
{
    if (std::isfinite(factor))
        m_factor = qBound(0.1, factor, 1000.0);
}

void ProgramRunner::setRealTime(bool on)
{
    if (on && !m_realTime)
        m_realClock.restart();
    m_realTime = on;
    updateTimer();
}

bool ProgramRunner::isBusy() const
{
    return m_state != State::Idle || m_process.isBusy(m_now);
}

void ProgramRunner::updateTimer()
{
    // An idle cell needs no ticks: reading the stream brings the clock up to date.
    if (m_realTime && isBusy())
        m_timer->start();
    else
        m_timer->stop();
}

void ProgramRunner::syncRealTime()
{
    if (!m_realTime)
        return;
    const double ms = double(m_realClock.restart()) * m_factor + m_realCarry;
    const qint64 whole = qint64(ms);
    m_realCarry = ms - double(whole);
    advance(whole);
    updateTimer();
}

void ProgramRunner::advance(qint64 ms)
{
    if (ms < 0)
        return;
    const qint64 target = m_now + ms;
    // An idle cell only repeats its last values: skip to the samples the ring still holds.
    const qint64 ringSpan = qint64(WeldMonitor::capacity) * WeldMonitor::periodMs;
    if (!isBusy() && target - m_nextSample > ringSpan) {
        integrate(m_now);
        m_nextSample = target - ringSpan + WeldMonitor::periodMs
            - (target - m_nextSample) % WeldMonitor::periodMs;
        m_now = m_nextSample - 1;
        m_lastOdometer = m_odometer;
    }
    int budget = lineBudget;
    for (;;) {
        runLines(&budget);
        if (budget < 0)
            return;
        if (m_now == m_nextSample) {
            m_monitor.add(sampleAt(m_now));
            if (m_recording && m_weld.samples.size() < WeldRecords::maxSamples) {
                MonitorSample s = sampleAt(m_now);
                s.t -= m_weldStart;
                m_weld.samples.append(s);
            }
            m_nextSample += WeldMonitor::periodMs;
        }
        if (m_recording && m_now >= m_process.laserOffTime())
            closeWeld(true);
        if (m_state != State::Idle && m_programDone && !m_process.isBusy(m_now))
            endRun(true);
        if (m_now >= target)
            break;
        qint64 next = std::min({target, m_nextSample, m_process.nextEvent(m_now)});
        if (m_activityEnd > m_now)
            next = std::min(next, m_activityEnd);
        integrate(next);
        m_now = next;
    }
    updateTimer();
}

// Path length and wire while the laser is on; the laser and the wire change only at the
// process's events, which the clock always stops at.
void ProgramRunner::integrate(qint64 until)
{
    const double odometer = odometerAt(until);
    if (m_recording && m_process.isLaserOn(m_now) && until > m_now) {
        m_weld.lengthMm += odometer - m_lastOdometer;
        m_weld.wireMm += m_process.wireAt(m_now) * double(until - m_now) / 1000.0;
    }
    m_lastOdometer = odometer;
}

double ProgramRunner::speedAt(qint64 t) const
{
    return m_moving ? m_segment.speedAt(double(t - m_segmentStart) / 1000.0) : 0.0;
}

double ProgramRunner::odometerAt(qint64 t) const
{
    return m_odometer
        + (m_moving ? m_segment.distanceAt(double(t - m_segmentStart) / 1000.0) : 0.0);
}

QVector3D ProgramRunner::position() const
{
    if (!m_moving)
        return m_position;
    return m_segment.pointAt(m_segment.distanceAt(double(m_now - m_segmentStart) / 1000.0));
}

MonitorSample ProgramRunner::sampleAt(qint64 t) const
{
    MonitorSample s;
    s.t = t;
    s.speed = speedAt(t);
    const WeldProcess::Values v = m_process.valuesAt(t, s.speed);
    s.power = v.power;
    s.frequency = v.frequency;
    s.duty = v.duty;
    s.wire = m_process.wireAt(t);
    return s;
}

ProgramRunner::Outputs ProgramRunner::outputs() const
{
    const MonitorSample s = sampleAt(m_now);
    Outputs o;
    o.laser = m_process.isLaserOn(m_now) && !m_simulated;
    o.gas = m_process.isGasOpen(m_now);
    o.power = s.power;
    o.frequency = s.frequency;
    o.duty = s.duty;
    o.wire = s.wire;
    return o;
}

QJsonObject ProgramRunner::monitorStream(const QString &dataSet, bool welding)
{
    syncRealTime();
    WeldMonitor::Status status;
    status.dataSet = dataSet;
    status.welding = welding;
    status.line = m_state == State::Idle ? 0 : m_current + 1;
    static const char *const phases[] = {"idle", "start", "weld", "end"};
    status.phase = QLatin1String(phases[int(m_process.phaseAt(m_now))]);
    if (m_wireBlocking || (status.phase == QLatin1String("idle") && m_process.wireAt(m_now) != 0.0))
        status.phase = QStringLiteral("wire");
    else if (status.phase == QLatin1String("idle") && m_moving)
        status.phase = QStringLiteral("motion");
    status.laser = !m_process.isLaserOn(m_now) ? QStringLiteral("off")
        : m_simulated                          ? QStringLiteral("simulated")
                                               : QStringLiteral("on");
    status.matching = m_matchName;
    status.program = m_state == State::Idle ? QString() : m_program;
    return m_monitor.stream(status, sampleAt(m_now));
}

void ProgramRunner::openWeld(int index, const QString &setName)
{
    m_recording = true;
    m_weldStart = m_now;
    m_weld = WeldRecords::Weld();
    m_weld.start = QDateTime::currentDateTime();
    m_weld.program = m_program;
    m_weld.line = index + 1;
    m_weld.dataSet = setName;
    m_weld.matchSet = m_matchName;
    m_weld.simulated = m_simulated;
}

void ProgramRunner::closeWeld(bool completed)
{
    m_recording = false;
    const qint64 off = std::min(m_process.laserOffTime(), m_now);
    m_weld.durationMs = off - m_weldStart;
    m_weld.laserOnMs = std::max<qint64>(0, off - m_process.laserOnTime());
    m_weld.completed = completed;
    QString error;
    if (!m_records->add(m_weld, &error))
        emit message(2, QStringLiteral("The weld record was not saved: %1").arg(error), -1);
    m_weld.samples.clear();
}

} // namespace kelcontroller
