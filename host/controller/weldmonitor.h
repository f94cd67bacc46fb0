#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace kelcontroller {

// One sample of the process values: time (ms), power (W), frequency (Hz), duty cycle (%), wire
// speed (mm/s, negative while retracting), path speed (mm/s).
struct KELPLUGIN_EXPORT MonitorSample
{
    qint64 t = 0;
    double power = 0.0;
    double frequency = 0.0;
    double duty = 0.0;
    double wire = 0.0;
    double speed = 0.0;
};

// The "weld_monitor_data" stream: the last samples in a ring and the object a reader gets.
class KELPLUGIN_EXPORT WeldMonitor
{
public:
    static constexpr int periodMs = 50;
    static constexpr int capacity = 100;

    // What the stream says besides the values.
    struct Status
    {
        QString dataSet;
        bool welding = false;
        int line = 0; // 1-based, 0 when no program runs
        QString phase;
        QString laser;
        QString matching;
        QString program;
    };

    void start() { m_running = true; }
    void stop() { m_running = false; }
    bool isRunning() const { return m_running; }

    void add(const MonitorSample &sample);
    // Oldest first.
    QVector<MonitorSample> samples() const;

    // A sample as the stream and the weld records write it, t counted from origin.
    static QJsonObject toJson(const MonitorSample &sample, qint64 origin = 0);
    static double rounded(double value);
    QJsonObject stream(const Status &status, const MonitorSample &now) const;

private:
    bool m_running = false;
    QVector<MonitorSample> m_ring;
    int m_head = 0; // the oldest sample once the ring is full
};

} // namespace kelcontroller
