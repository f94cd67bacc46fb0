#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QString>

namespace kelcontroller {

// The live values of the "weld_monitor_data" stream. They follow the active weld data set
// and, while welding is simulated, wander by up to two percent around it.
class KELPLUGIN_EXPORT WeldMonitor
{
public:
    // Largest relative deviation from a set value while welding.
    static constexpr double maxDeviation = 0.02;

    void start();
    void stop();
    bool isRunning() const { return m_running; }

    // One sample for the set named setName at elapsedMs since the stream started.
    static QJsonObject sample(
        const QString &setName, const QJsonObject &set, bool welding, qint64 elapsedMs);
    // A sample now.
    QJsonObject current(const QString &setName, const QJsonObject &set, bool welding) const;

private:
    bool m_running = false;
    QElapsedTimer m_clock;
};

} // namespace kelcontroller
