#include "weldset.h"

#include "recordschema.h"

#include <cmath>

namespace kelcontroller {

namespace {

class Reader
{
public:
    Reader(const QJsonObject &set, QString *error) : m_set(set), m_error(error) { }

    bool ok() const { return m_ok; }
    bool flag(const char *key) const { return m_set.value(QLatin1String(key)).toBool(); }

    double number(const char *key, double maximum)
    {
        const QJsonValue value = m_set.value(QLatin1String(key));
        if (!RecordSchema::isFiniteNumber(value)) {
            if (m_ok)
                *m_error = QStringLiteral("has no valid %1").arg(QLatin1String(key));
            m_ok = false;
            return 0.0;
        }
        return qBound(0.0, value.toDouble(), maximum);
    }

    int time(const char *key) { return int(std::lround(number(key, WeldSet::maxTime))); }

private:
    const QJsonObject &m_set;
    QString *m_error;
    bool m_ok = true;
};

} // namespace

bool WeldSet::read(
    const QJsonObject &set, double maxPower, double maxWire, WeldSet *out, QString *error)
{
    // No frequency limit of the device is known; this only keeps sums finite.
    constexpr double maxFrequency = 1e6;
    Reader r(set, error);
    WeldSet s;
    s.powerStart = r.number("laser_power_start", maxPower);
    s.frequencyStart = r.number("frequency_start", maxFrequency);
    s.dutyStart = r.number("duty_cycle_start", 100.0);
    s.rampStart = r.time("ramp_value_start");
    s.delayStart = r.time("delay_time_start");
    s.powerWeld = r.number("laser_power_weld", maxPower);
    s.frequencyWeld = r.number("frequency_weld", maxFrequency);
    s.dutyWeld = r.number("duty_cycle_weld", 100.0);
    s.powerEnd = r.number("laser_power_end", maxPower);
    s.frequencyEnd = r.number("frequency_end", maxFrequency);
    s.dutyEnd = r.number("duty_cycle_end", 100.0);
    s.rampEnd = r.time("ramp_value_end");
    s.delayEnd = r.time("delay_time_end");
    // Keys of a switched-off step are not needed.
    if ((s.wireStart = r.flag("wire_feed_enable_start"))) {
        s.wireStartSpeed = r.number("feeding_speed_start", maxWire);
        s.wireStartTime = r.time("wire_feed_time_start");
    }
    if ((s.wireEnd = r.flag("wire_feed_enable_end"))) {
        s.wireEndSpeed = r.number("wire_speed_end", maxWire);
        s.wireEndTime = r.time("wire_feed_time_end");
    }
    // Either feed switch is the filler wire mode (the editor derives its weld mode from them);
    // in plain laser welding no wire moves at all: no run feed, retract or compensation.
    if (s.wireStart || s.wireEnd) {
        s.wireRun = r.number("feeding_speed_run", maxWire);
        if ((s.retract = r.flag("wire_retraction_end"))) {
            s.retractSpeed = r.number("wire_retract_end", maxWire);
            s.retractTime = r.time("wire_retract_time_end");
        }
        if ((s.fill = r.flag("wire_fill_com_end"))) {
            s.fillDelay = r.time("fill_delay_time_end");
            s.fillSpeed = r.number("fill_wire_speed_end", maxWire);
            s.fillTime = r.time("fill_wire_time_end");
        }
    }
    if (!r.ok())
        return false;
    *out = s;
    return true;
}

} // namespace kelcontroller
