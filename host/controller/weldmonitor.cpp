#include "weldmonitor.h"

#include "recordschema.h"

#include <cmath>

namespace kelcontroller {

namespace {

struct MonitorField
{
    const char *field;
    const char *setKey;
    double phase;
};

// Different phases so that the values do not rise and fall in lockstep.
const MonitorField monitorFields[] = {
    {"power", "laser_power_weld", 0.0},
    {"frequency", "frequency_weld", 1.3},
    {"duty_cycle", "duty_cycle_weld", 2.1},
    {"wire_speed", "feeding_speed_run", 3.7},
    {"weld_speed", "welding_speed", 4.9},
};

double setValue(const QJsonObject &set, const char *key)
{
    const QJsonValue value = set.value(QLatin1String(key));
    if (!RecordSchema::isFiniteNumber(value))
        return 0.0;
    // Values from the controller's own file may be anything; keep them in a sane range.
    return qBound(-1.0e9, value.toDouble(), 1.0e9);
}

} // namespace

void WeldMonitor::start()
{
    if (!m_running)
        m_clock.start();
    m_running = true;
}

void WeldMonitor::stop()
{
    m_running = false;
}

QJsonObject WeldMonitor::sample(
    const QString &setName, const QJsonObject &set, bool welding, qint64 elapsedMs)
{
    QJsonObject result {
        {QStringLiteral("data_set"), setName}, {QStringLiteral("welding"), welding}};
    const double t = double(elapsedMs) / 700.0;
    for (const MonitorField &f : monitorFields) {
        double value = setValue(set, f.setKey);
        if (welding)
            value *= 1.0 + maxDeviation * std::sin(t + f.phase);
        result.insert(QLatin1String(f.field), std::round(value * 10.0) / 10.0);
    }
    return result;
}

QJsonObject WeldMonitor::current(const QString &setName, const QJsonObject &set, bool welding) const
{
    return sample(setName, set, welding, m_clock.isValid() ? m_clock.elapsed() : 0);
}

} // namespace kelcontroller
