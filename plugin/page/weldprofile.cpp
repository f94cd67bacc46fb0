#include "weldprofile.h"

#include <QCoreApplication>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kellaser {

namespace {

// Texts are translated under the class name, without the namespace.
constexpr char kContext[] = "WeldProfile";
constexpr double kUnbounded = std::numeric_limits<double>::max();

// Reads the set as the controller does: what is missing, not a number or negative counts 0,
// times are whole ms and held at maxTime. Each such key is noted once.
class Reader
{
public:
    Reader(const QJsonObject &set, QVector<WeldProfile::Problem> &problems)
        : m_set(set), m_problems(problems)
    { }
    double value(const char *key) { return read(key, kUnbounded); }
    double time(const char *key) { return std::round(read(key, WeldProfile::maxTime)); }
    bool flag(const char *key) const { return m_set.value(QLatin1String(key)).toBool(false); }

private:
    double read(const char *key, double max)
    {
        const QJsonValue value = m_set.value(QLatin1String(key));
        const double number = value.toDouble();
        if (!value.isDouble() || !std::isfinite(number) || number < 0) {
            m_problems.append(
                {WeldProfile::BadValue, WeldProfile::NoLane, {}, QString::fromLatin1(key)});
            return 0.0;
        }
        return std::min(number, max);
    }

    const QJsonObject &m_set;
    QVector<WeldProfile::Problem> &m_problems;
};

// A course of straight pieces: jumps are two points at one time, consecutive jumps at one
// time merge into one.
class Course
{
public:
    explicit Course(QPolygonF &points) : m_points(points) { }

    void jump(double t, double value)
    {
        if (m_points.isEmpty()) {
            m_points.append({t, value});
            return;
        }
        const QPointF last = m_points.last();
        if (t > last.x()) {
            m_points.append({t, last.y()});
        } else if (m_points.size() >= 2 && m_points.at(m_points.size() - 2).x() == t) {
            m_points.removeLast();
            if (m_points.last().y() != value)
                m_points.append({t, value});
            return;
        }
        if (value != m_points.last().y())
            m_points.append({t, value});
    }
    void rampTo(double t, double value)
    {
        if (m_points.isEmpty() || t <= m_points.last().x())
            jump(t, value);
        else
            m_points.append({t, value});
    }

private:
    QPolygonF &m_points;
};

} // namespace

WeldProfile WeldProfile::fromSet(const QJsonObject &set)
{
    WeldProfile profile;
    Reader read(set, profile.problems);
    const double powerStart = read.value("laser_power_start");
    const double rampStart = read.time("ramp_value_start");
    const double delayStart = read.time("delay_time_start");
    const double powerWeld = read.value("laser_power_weld");
    const double powerEnd = read.value("laser_power_end");
    const double rampEnd = read.time("ramp_value_end");
    const double delayEnd = read.time("delay_time_end");

    // The weld stretch is only there to part start and end; it grows with them so that
    // neither end crowds the other on the time axis.
    const double startEnd = std::max(rampStart, delayStart);
    profile.motionStart = delayStart;
    profile.laserOffCommand
        = startEnd + std::max(minWeldStretch, (startEnd + std::max(rampEnd, delayEnd)) / 2);
    const double off = profile.laserOffCommand;
    profile.laserOff = off + delayEnd;

    Course power(profile.power);
    power.jump(0, 0);
    power.jump(0, powerStart);
    power.rampTo(rampStart, powerWeld);
    power.jump(off, powerWeld);
    // The controller ramps from LaserOff towards the end power and switches the laser off
    // after its delay, wherever the ramp has got to.
    double powerAtCut = powerEnd;
    if (rampEnd > delayEnd) {
        powerAtCut = powerWeld + (powerEnd - powerWeld) * delayEnd / rampEnd;
        power.rampTo(profile.laserOff, powerAtCut);
    } else {
        power.rampTo(off + rampEnd, powerEnd);
    }
    power.jump(profile.laserOff, 0);

    if (powerStart > powerWeld)
        profile.problems.append({StartAboveWeld, PowerLane, {0, powerStart}, {}});
    if (powerEnd > powerWeld)
        profile.problems.append({EndAboveWeld, PowerLane, {off, powerEnd}, {}});
    if (rampEnd > delayEnd)
        profile.problems.append({RampDownCut, PowerLane, {profile.laserOff, powerAtCut}, {}});

    profile.phases.append({Start, 0, startEnd});
    profile.phases.append({Weld, startEnd, off});
    profile.phases.append({End, off, profile.laserOff});
    profile.end = profile.laserOff;

    // Either feed switch is the filler wire mode; in plain laser welding the controller moves
    // no wire at all, so there is no wire lane and nothing of the wire to judge.
    const bool wireStart = read.flag("wire_feed_enable_start");
    const bool wireEnd = read.flag("wire_feed_enable_end");
    if (!wireStart && !wireEnd) {
        power.jump(profile.end, 0);
        return profile;
    }
    QVector<Span> wirePhases;
    Course wire(profile.wire);
    const double runSpeed = read.value("feeding_speed_run");
    wire.jump(0, 0);
    if (wireStart) {
        const double speed = read.value("feeding_speed_start");
        const double time = read.time("wire_feed_time_start");
        if (speed == 0 || time == 0)
            profile.problems.append({WireStartEmpty, WireLane, {0, speed}, {}});
        wire.jump(0, speed);
        // LaserOff stops whatever wire still runs.
        wire.jump(std::min(time, off), runSpeed);
    } else {
        wire.jump(0, runSpeed);
    }
    // The end sequence starts at LaserOff: end feed, retract, compensation after its delay,
    // one after the other.
    double t = off;
    wire.jump(t, 0);
    const auto step = [&](Phase phase, Issue empty, double speed, double time) {
        if (speed == 0 || time == 0)
            profile.problems.append({empty, WireLane, {t, speed}, {}});
        wire.jump(t, speed);
        wirePhases.append({phase, t, t + time});
        t += time;
        wire.jump(t, 0);
    };
    if (wireEnd) {
        const double speed = read.value("wire_speed_end");
        step(EndFeed, WireEndEmpty, speed, read.time("wire_feed_time_end"));
    }
    if (read.flag("wire_retraction_end")) {
        const double speed = read.value("wire_retract_end");
        step(Retract, RetractEmpty, -speed, read.time("wire_retract_time_end"));
    }
    if (read.flag("wire_fill_com_end")) {
        t += read.time("fill_delay_time_end");
        const double speed = read.value("fill_wire_speed_end");
        step(Compensation, CompensationEmpty, speed, read.time("fill_wire_time_end"));
    }
    // A switched-on step that moves nothing stays named (above) even without a wire lane.
    const bool wireMoves = std::any_of(profile.wire.cbegin(), profile.wire.cend(),
        [](const QPointF &point) { return point.y() != 0; });
    if (wireMoves) {
        profile.phases += wirePhases;
        if (t > profile.end)
            profile.phases.append({WireEnd, profile.end, t});
        profile.end = std::max(profile.end, t);
        wire.jump(profile.end, 0);
    } else {
        profile.wire.clear();
    }
    power.jump(profile.end, 0);
    return profile;
}

QString WeldProfile::issueText(const Problem &problem)
{
    const auto text
        = [](const char *source) { return QCoreApplication::translate(kContext, source); };
    switch (problem.issue) {
    case BadValue:
        return text(QT_TRANSLATE_NOOP("WeldProfile", "%1 is missing or not a number: drawn as 0"))
            .arg(problem.key);
    case StartAboveWeld:
        return text(QT_TRANSLATE_NOOP("WeldProfile", "The start power is above the weld power"));
    case EndAboveWeld:
        return text(QT_TRANSLATE_NOOP("WeldProfile", "The end power is above the weld power"));
    case RampDownCut:
        return text(QT_TRANSLATE_NOOP(
            "WeldProfile", "The ramp down outlasts the laser off delay: cut at laser off"));
    case WireStartEmpty:
        return text(QT_TRANSLATE_NOOP(
            "WeldProfile", "The start wire is switched on with zero speed or time"));
    case WireEndEmpty:
        return text(QT_TRANSLATE_NOOP(
            "WeldProfile", "The end wire is switched on with zero speed or time"));
    case RetractEmpty:
        return text(
            QT_TRANSLATE_NOOP("WeldProfile", "The retract is switched on with zero speed or time"));
    case CompensationEmpty:
        return text(QT_TRANSLATE_NOOP(
            "WeldProfile", "The wire compensation is switched on with zero speed or time"));
    case OutsideForm:
        return text(QT_TRANSLATE_NOOP("WeldProfile",
                        "%1 is %2 in the set: the form holds whole numbers %3..%4 only"))
            .arg(problem.key, QString::number(problem.stored, 'g', 12))
            .arg(problem.low)
            .arg(problem.high);
    }
    return QString();
}

QString WeldProfile::hint() const
{
    if (problems.isEmpty())
        return QString();
    const QString first = issueText(problems.first());
    if (problems.size() == 1)
        return first;
    return QCoreApplication::translate("WeldProfile", "%1 (and %2 more)")
        .arg(first)
        .arg(problems.size() - 1);
}

} // namespace kellaser
