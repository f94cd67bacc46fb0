#include "weldmonitor.h"

#include <QJsonArray>

#include <cmath>

namespace kelcontroller {

void WeldMonitor::add(const MonitorSample &sample)
{
    if (m_ring.size() < capacity) {
        m_ring.append(sample);
        return;
    }
    m_ring[m_head] = sample;
    m_head = (m_head + 1) % capacity;
}

QVector<MonitorSample> WeldMonitor::samples() const
{
    QVector<MonitorSample> ordered;
    ordered.reserve(m_ring.size());
    for (int i = 0; i < m_ring.size(); ++i)
        ordered.append(m_ring.at((m_head + i) % m_ring.size()));
    return ordered;
}

double WeldMonitor::rounded(double value)
{
    return std::round(value * 10.0) / 10.0;
}

QJsonObject WeldMonitor::toJson(const MonitorSample &s, qint64 origin)
{
    return QJsonObject {
        {QStringLiteral("t"), double(s.t - origin)},
        {QStringLiteral("power"), rounded(s.power)},
        {QStringLiteral("frequency"), rounded(s.frequency)},
        {QStringLiteral("duty_cycle"), rounded(s.duty)},
        {QStringLiteral("wire_speed"), rounded(s.wire)},
        {QStringLiteral("weld_speed"), rounded(s.speed)},
    };
}

QJsonObject WeldMonitor::stream(const Status &status, const MonitorSample &now) const
{
    QJsonObject result = toJson(now);
    result.remove(QStringLiteral("t"));
    QJsonArray ring;
    for (const MonitorSample &s : samples())
        ring.append(toJson(s));
    result.insert(QStringLiteral("data_set"), status.dataSet);
    result.insert(QStringLiteral("welding"), status.welding);
    result.insert(QStringLiteral("time_ms"), double(now.t));
    result.insert(QStringLiteral("line"), status.line);
    result.insert(QStringLiteral("phase"), status.phase);
    result.insert(QStringLiteral("laser"), status.laser);
    result.insert(QStringLiteral("matching"), status.matching);
    result.insert(QStringLiteral("program"), status.program);
    result.insert(QStringLiteral("sample_period_ms"), periodMs);
    result.insert(QStringLiteral("samples"), ring);
    return result;
}

} // namespace kelcontroller
