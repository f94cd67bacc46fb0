#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

namespace kelcontroller {

struct IoLayout;

// The shapes the controller accepts for its laser welding records: key sets, value types,
// ranges and set names. Every check returns an empty string when the value is acceptable,
// otherwise a sentence saying what is wrong.
class KELPLUGIN_EXPORT RecordSchema
{
public:
    enum class Kind { Bool, Int, String };

    struct Field
    {
        QString key;
        Kind kind;
        int minimum;
        int maximum;
    };

    struct Curve
    {
        QString command;
        QString countKey;
        QString nodesKey;
    };

    // The 48 keys of weld_io_config and the 23 of weld_setting_config, in written order.
    static const QVector<Field> &ioFields();
    static const QVector<Field> &settingFields();
    // The four curves of weld_curve_config: power, feed, frequency, duty cycle.
    static const QVector<Curve> &curves();

    // The port type a port key of weld_io_config takes ("DO", "DI"), or the analogue type for
    // rows with a type selector ("AO", "AI"); empty for keys that are not ports.
    static QString ioPortType(const QString &portKey, int typeIndex);

    static QString checkIoConfig(const QJsonObject &record, const IoLayout &layout);
    static QString checkSettingConfig(const QJsonObject &record, const IoLayout &layout);
    // A curve object holding exactly count rows of [raw, physical] for one curve.
    static QString checkCurve(const Curve &curve, const QJsonObject &payload);

    // "LsData1".."LsData30" and "PowerData1".."PowerData10", decimal without padding.
    static bool isSetName(const QString &name, const QString &prefix, int last);
    static QString checkSets(const QJsonObject &payload, const QString &prefix, int last);

    // A finite JSON number without a fractional part, within [minimum, maximum].
    static bool isInteger(const QJsonValue &value, double minimum, double maximum);
    static bool isFiniteNumber(const QJsonValue &value);

private:
    static QString checkFields(const QJsonObject &record, const QVector<Field> &fields);
};

} // namespace kelcontroller
