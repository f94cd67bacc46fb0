#pragma once

#include <QJsonValue>
#include <QString>
#include <QVector>

namespace kellaser {

// What would change if one record replaced another, key by key. Objects are walked into, so a
// changed field of a weld data set reads "LsData3.laser_power_weld"; arrays (curve nodes, the
// matching table) are values of their own and change as a whole.
class RecordDiff
{
public:
    enum class Kind { Added, Removed, Changed };

    struct Change
    {
        Kind kind;
        QString key;       // dotted path below the record
        QJsonValue before; // undefined when added
        QJsonValue after;  // undefined when removed
    };

    // Changes in key order; nothing for equal values.
    static QVector<Change> diff(const QJsonValue &before, const QJsonValue &after);
    // A value as one line of compact JSON, for people; empty for undefined.
    static QString text(const QJsonValue &value);
};

} // namespace kellaser
