#pragma once

#include <QJsonObject>
#include <QString>

class QJsonValue;

// What the equipment allows a weld schedule, from the device settings record: the laser unit's
// maximum power ("laser_power") and the wire feeder's maximum speed ("max_feed_speed"). A limit
// the record does not hold is unknown and checks nothing.
class EquipmentLimits
{
public:
    enum Kind { None, Power, FeedSpeed };

    struct Breach
    {
        Kind kind = None;
        QString key; // the weld data key at fault
        int value = 0;
        int limit = 0;
    };

    static EquipmentLimits fromSettings(const QJsonValue &settings);

    int maxPower() const { return m_maxPower; }
    int maxFeedSpeed() const { return m_maxFeedSpeed; }
    int limit(Kind kind) const;

    // The first value of a weld data set above its limit, in the set's key order; wire speeds
    // count only in a set that feeds wire.
    Breach firstBreach(const QJsonObject &weldDataSet) const;
    // The kind of limit that holds for a weld data key (None for keys without one).
    static Kind kindOf(const QString &key);

private:
    int m_maxPower = -1;
    int m_maxFeedSpeed = -1;
};
