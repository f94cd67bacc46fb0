#include "equipmentlimits.h"

#include <QJsonValue>

#include <cmath>

namespace {

struct LimitedKey
{
    const char *key;
    EquipmentLimits::Kind kind;
};

// Every power the laser is driven with and every speed the feeder turns at, retraction included,
// in the order a weld data set is written.
const LimitedKey kLimitedKeys[] = {
    {"laser_power_start", EquipmentLimits::Power},
    {"laser_power_weld", EquipmentLimits::Power},
    {"laser_power_end", EquipmentLimits::Power},
    {"feeding_speed_start", EquipmentLimits::FeedSpeed},
    {"feeding_speed_run", EquipmentLimits::FeedSpeed},
    {"wire_speed_end", EquipmentLimits::FeedSpeed},
    {"wire_retract_end", EquipmentLimits::FeedSpeed},
    {"fill_wire_speed_end", EquipmentLimits::FeedSpeed},
};

// The settings page reads these two as floating point truncated toward zero; so do the limits.
int limitOf(const QJsonObject &settings, const char *key)
{
    const QJsonValue value = settings.value(QLatin1String(key));
    if (!value.isDouble() || !std::isfinite(value.toDouble()) || value.toDouble() < 0
        || value.toDouble() > 1e9)
        return -1;
    return int(value.toDouble());
}

} // namespace

EquipmentLimits EquipmentLimits::fromSettings(const QJsonValue &settings)
{
    EquipmentLimits limits;
    const QJsonObject record = settings.toObject();
    limits.m_maxPower = limitOf(record, "laser_power");
    limits.m_maxFeedSpeed = limitOf(record, "max_feed_speed");
    return limits;
}

int EquipmentLimits::limit(Kind kind) const
{
    switch (kind) {
    case Power:
        return m_maxPower;
    case FeedSpeed:
        return m_maxFeedSpeed;
    case None:
        break;
    }
    return -1;
}

EquipmentLimits::Kind EquipmentLimits::kindOf(const QString &key)
{
    for (const LimitedKey &limited : kLimitedKeys) {
        if (key == QLatin1String(limited.key))
            return limited.kind;
    }
    return None;
}

EquipmentLimits::Breach EquipmentLimits::firstBreach(const QJsonObject &weldDataSet) const
{
    // A set that feeds no wire keeps its wire speeds out of sight and out of use.
    const bool feedsWire = weldDataSet.value(QLatin1String("wire_feed_enable_start")).toBool()
        || weldDataSet.value(QLatin1String("wire_feed_enable_end")).toBool();
    for (const LimitedKey &limited : kLimitedKeys) {
        if (limited.kind == FeedSpeed && !feedsWire)
            continue;
        const int max = limit(limited.kind);
        const int value = weldDataSet.value(QLatin1String(limited.key)).toInt();
        if (max >= 0 && value > max)
            return {limited.kind, QLatin1String(limited.key), value, max};
    }
    return {};
}
