#include "recordschema.h"

#include "iolayout.h"

#include <QJsonArray>
#include <QJsonValue>

#include <cmath>
#include <limits>

namespace kelcontroller {

namespace {

RecordSchema::Field boolField(const char *key)
{
    return {QString::fromLatin1(key), RecordSchema::Kind::Bool, 0, 0};
}

RecordSchema::Field intField(const char *key, int minimum, int maximum)
{
    return {QString::fromLatin1(key), RecordSchema::Kind::Int, minimum, maximum};
}

RecordSchema::Field stringField(const char *key)
{
    return {QString::fromLatin1(key), RecordSchema::Kind::String, 0, 0};
}

// Port rows of weld_io_config: key stem, fixed port type or the analogue type of a row with
// a type selector (whose index 1 switches to the group type).
struct PortRow
{
    const char *portKey;
    const char *fixedType;
    const char *selectableType;
};

const PortRow portRows[] = {
    {"laser_enable_port", "DO", nullptr},
    {"power_port", nullptr, "AO"},
    {"frequency_port", nullptr, "AO"},
    {"duty_cycle_port", nullptr, "AO"},
    {"red_light_port", "DO", nullptr},
    {"gas_protect_port", "DO", nullptr},
    {"wire_speed_port", nullptr, "AO"},
    {"wire_feed_port", "DO", nullptr},
    {"retract_direction_port", "DO", nullptr},
    {"manual_wire_feed_port", "DO", nullptr},
    {"manual_retract_port", "DO", nullptr},
    {"adhesion_detection_en_port", "DO", nullptr},
    {"descent_signal_port", "DO", nullptr},
    {"power_feedback_port", nullptr, "AI"},
    {"light_feedback_port", "DI", nullptr},
    {"laser_alarm_port", "DI", nullptr},
    {"shield_gas_feedback_port", "DI", nullptr},
    {"wire_speed_feedback_port", nullptr, "AI"},
    {"wire_feed_feedback_port", "DI", nullptr},
    {"wire_feeder_alarm_port", "DI", nullptr},
    {"adhesion_detection_feedback_port", "DI", nullptr},
    {"external_alarm_port", "DI", nullptr},
};

QString typeKeyOf(const QString &portKey)
{
    QString stem = portKey;
    stem.chop(int(sizeof("_port")) - 1);
    return stem + QStringLiteral("_type");
}

QString kindName(RecordSchema::Kind kind)
{
    switch (kind) {
    case RecordSchema::Kind::Bool:
        return QStringLiteral("a boolean");
    case RecordSchema::Kind::Int:
        return QStringLiteral("an integer");
    case RecordSchema::Kind::String:
        return QStringLiteral("a string");
    }
    return QString();
}

QString checkPort(
    const QJsonObject &record, const QString &key, const QString &type, const IoLayout &layout)
{
    const QString port = record.value(key).toString();
    if (port.isEmpty() || layout.hasPort(type, port))
        return QString();
    return QStringLiteral("%1: \"%2\" is not a %3 port of this controller").arg(key, port, type);
}

} // namespace

const QVector<RecordSchema::Field> &RecordSchema::ioFields()
{
    static const QVector<Field> fields {
        stringField("laser_enable_port"),
        intField("power_type", 0, 1),
        stringField("power_port"),
        boolField("power_enabled"),
        intField("frequency_type", 0, 1),
        stringField("frequency_port"),
        boolField("frequency_enabled"),
        intField("duty_cycle_type", 0, 1),
        stringField("duty_cycle_port"),
        boolField("duty_cycle_enabled"),
        stringField("red_light_port"),
        boolField("red_light_enabled"),
        stringField("gas_protect_port"),
        intField("wire_speed_type", 0, 1),
        stringField("wire_speed_port"),
        boolField("wire_speed_enabled"),
        stringField("wire_feed_port"),
        boolField("wire_feed_enabled"),
        stringField("retract_direction_port"),
        boolField("retract_direction_enabled"),
        stringField("manual_wire_feed_port"),
        boolField("manual_wire_feed_enabled"),
        stringField("manual_retract_port"),
        boolField("manual_retract_enabled"),
        intField("power_feedback_type", 0, 1),
        stringField("power_feedback_port"),
        boolField("power_feedback_enabled"),
        stringField("light_feedback_port"),
        boolField("light_feedback_enabled"),
        stringField("laser_alarm_port"),
        boolField("laser_alarm_enabled"),
        stringField("shield_gas_feedback_port"),
        boolField("shield_gas_feedback_enabled"),
        intField("wire_speed_feedback_type", 0, 1),
        stringField("wire_speed_feedback_port"),
        boolField("wire_speed_feedback_enabled"),
        stringField("wire_feed_feedback_port"),
        boolField("wire_feed_feedback_enabled"),
        stringField("wire_feeder_alarm_port"),
        boolField("wire_feeder_alarm_enabled"),
        stringField("adhesion_detection_en_port"),
        boolField("adhesion_detection_enabled"),
        stringField("descent_signal_port"),
        boolField("descent_signal_enabled"),
        stringField("adhesion_detection_feedback_port"),
        boolField("adhesion_detection_feedback_enabled"),
        stringField("external_alarm_port"),
        boolField("external_alarm_enabled"),
    };
    return fields;
}

const QVector<RecordSchema::Field> &RecordSchema::settingFields()
{
    static const QVector<Field> fields {
        boolField("laser_main_enable"),
        intField("laser_comm_type", 0, 1),
        intField("laser_power", 0, 9999),
        intField("feedback_delay", 0, 2000),
        intField("pre_gas_time", 0, 2000),
        intField("delay_off_time", 0, 2000),
        intField("detection_delay", 0, 2000),
        intField("manual_gas_time", 1000, 10000),
        boolField("retraction_enable"),
        intField("retraction_distance", 0, 50),
        intField("retraction_speed", 0, 100),
        boolField("wiresticking_enable"),
        intField("detection_time", 100, 1000),
        stringField("detection_do"),
        stringField("feedback_di"),
        boolField("feeder_enable"),
        intField("wire_feeder_comm_type", 0, 2),
        intField("wire_feed_type", 0, 1),
        intField("max_feed_speed", 0, 1000),
        intField("manual_feed_speed", 0, 500),
        intField("manual_retract_speed", 0, 500),
        intField("wire_feedback_detection", 0, 2000),
        intField("laser_check_out_time", 0, 500),
    };
    return fields;
}

const QVector<RecordSchema::Curve> &RecordSchema::curves()
{
    static const QVector<Curve> list {
        {QStringLiteral("set_weld_curve_power_config"), QStringLiteral("laser_power_node"),
            QStringLiteral("power_nodes_data")},
        {QStringLiteral("set_weld_curve_feed_config"), QStringLiteral("laser_feed_node"),
            QStringLiteral("feed_nodes_data")},
        {QStringLiteral("set_weld_curve_frequency_config"), QStringLiteral("laser_frequency_node"),
            QStringLiteral("frequency_nodes_data")},
        {QStringLiteral("set_weld_curve_dutycycle_config"), QStringLiteral("laser_dutycycle_node"),
            QStringLiteral("dutycycle_nodes_data")},
    };
    return list;
}

QString RecordSchema::ioPortType(const QString &portKey, int typeIndex)
{
    for (const PortRow &row : portRows) {
        if (portKey != QLatin1String(row.portKey))
            continue;
        if (row.fixedType)
            return QString::fromLatin1(row.fixedType);
        QString type = QString::fromLatin1(row.selectableType);
        if (typeIndex != 0)
            type[0] = QLatin1Char('G');
        return type;
    }
    return QString();
}

bool RecordSchema::isFiniteNumber(const QJsonValue &value)
{
    return value.isDouble() && std::isfinite(value.toDouble());
}

bool RecordSchema::isInteger(const QJsonValue &value, double minimum, double maximum)
{
    if (!isFiniteNumber(value))
        return false;
    const double d = value.toDouble();
    return d == std::trunc(d) && d >= minimum && d <= maximum;
}

QString RecordSchema::checkFields(const QJsonObject &record, const QVector<Field> &fields)
{
    for (const Field &field : fields) {
        const auto it = record.constFind(field.key);
        if (it == record.constEnd())
            return QStringLiteral("%1 is missing").arg(field.key);
        const QJsonValue value = it.value();
        bool ok = false;
        switch (field.kind) {
        case Kind::Bool:
            ok = value.isBool();
            break;
        case Kind::String:
            ok = value.isString();
            break;
        case Kind::Int:
            ok = isInteger(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
            if (ok && !isInteger(value, field.minimum, field.maximum)) {
                return QStringLiteral("%1 must lie between %2 and %3")
                    .arg(field.key)
                    .arg(field.minimum)
                    .arg(field.maximum);
            }
            break;
        }
        if (!ok)
            return QStringLiteral("%1 must be %2").arg(field.key, kindName(field.kind));
    }
    return QString();
}

QString RecordSchema::checkIoConfig(const QJsonObject &record, const IoLayout &layout)
{
    const QString fields = checkFields(record, ioFields());
    if (!fields.isEmpty())
        return fields;
    for (const PortRow &row : portRows) {
        const QString key = QString::fromLatin1(row.portKey);
        const int typeIndex = row.fixedType ? 0 : record.value(typeKeyOf(key)).toInt();
        const QString port = checkPort(record, key, ioPortType(key, typeIndex), layout);
        if (!port.isEmpty())
            return port;
    }
    return QString();
}

QString RecordSchema::checkSettingConfig(const QJsonObject &record, const IoLayout &layout)
{
    const QString fields = checkFields(record, settingFields());
    if (!fields.isEmpty())
        return fields;
    // The laser is checked for light output after the check-out time; a detection window
    // that ends earlier would report every start as failed.
    if (record.value(QLatin1String("feedback_delay")).toInt()
        < record.value(QLatin1String("laser_check_out_time")).toInt())
        return QStringLiteral("feedback_delay must not be less than laser_check_out_time");
    const QString trigger
        = checkPort(record, QStringLiteral("detection_do"), QStringLiteral("DO"), layout);
    if (!trigger.isEmpty())
        return trigger;
    return checkPort(record, QStringLiteral("feedback_di"), QStringLiteral("DI"), layout);
}

QString RecordSchema::checkCurve(const Curve &curve, const QJsonObject &payload)
{
    const QJsonValue count = payload.value(curve.countKey);
    if (!isInteger(count, 2, 10))
        return QStringLiteral("%1 must be an integer from 2 to 10").arg(curve.countKey);
    const QJsonValue nodes = payload.value(curve.nodesKey);
    if (!nodes.isArray())
        return QStringLiteral("%1 must be an array").arg(curve.nodesKey);
    const QJsonArray rows = nodes.toArray();
    if (rows.size() != count.toInt())
        return QStringLiteral("%1 holds %2 rows, %3 says %4")
            .arg(curve.nodesKey)
            .arg(rows.size())
            .arg(curve.countKey)
            .arg(count.toInt());
    for (int i = 0; i < rows.size(); ++i) {
        const QJsonArray row = rows.at(i).toArray();
        if (!rows.at(i).isArray() || row.size() != 2 || !isFiniteNumber(row.at(0))
            || !isFiniteNumber(row.at(1)))
            return QStringLiteral("%1 row %2 must be [raw, physical]")
                .arg(curve.nodesKey)
                .arg(i + 1);
    }
    for (auto it = payload.constBegin(); it != payload.constEnd(); ++it) {
        if (it.key() != curve.countKey && it.key() != curve.nodesKey)
            return QStringLiteral("%1 does not belong to this curve").arg(it.key());
    }
    return QString();
}

bool RecordSchema::isSetName(const QString &name, const QString &prefix, int last)
{
    if (!name.startsWith(prefix))
        return false;
    const QStringRef digits = name.midRef(prefix.size());
    if (digits.isEmpty() || digits.size() > 3 || digits.startsWith(QLatin1Char('0')))
        return false;
    for (const QChar c : digits) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    const int number = digits.toInt();
    return number >= 1 && number <= last;
}

QString RecordSchema::checkSets(const QJsonObject &payload, const QString &prefix, int last)
{
    if (payload.isEmpty())
        return QStringLiteral("no %1 set given").arg(prefix);
    for (auto it = payload.constBegin(); it != payload.constEnd(); ++it) {
        if (!isSetName(it.key(), prefix, last))
            return QStringLiteral("\"%1\" is not one of %2%3..%2%4")
                .arg(it.key(), prefix)
                .arg(1)
                .arg(last);
        if (!it.value().isObject())
            return QStringLiteral("%1 must be an object").arg(it.key());
    }
    return QString();
}

} // namespace kelcontroller
