#include "pagefixture.h"

#include "controller/factoryrecords.h"

#include <QJsonObject>

using kelcontroller::FactoryRecords;

PageFixture::PageFixture(int portsPerType)
{
    for (const char *type : {"AI", "AO", "DI", "DO", "GI", "GO"}) {
        QStringList names;
        names.reserve(portsPerType);
        for (int i = portsPerType; i > 0; --i)
            names.append(QLatin1String(type) + QString::number(i));
        controller.ports.insert(QLatin1String(type), names);
    }
    controller.serviceData.insert(QStringLiteral("weld_io_config"), FactoryRecords::ioConfig());
    controller.serviceData.insert(
        QStringLiteral("weld_setting_config"), FactoryRecords::settingConfig());
    controller.serviceData.insert(
        QStringLiteral("weld_curve_config"), FactoryRecords::curveConfig());
    controller.serviceData.insert(QStringLiteral("weld_param_config"),
        filledSets(FactoryRecords::paramConfig(), QStringLiteral("LsData"), 30));
    controller.serviceData.insert(QStringLiteral("weld_param_match"),
        filledSets(FactoryRecords::paramMatch(), QStringLiteral("PowerData"), 10));
}

QJsonObject PageFixture::filledSets(const QJsonObject &record, const QString &prefix, int count)
{
    const QJsonValue model = record.value(prefix + QLatin1Char('1'));
    QJsonObject filled = record;
    for (int i = 1; i <= count; ++i) {
        const QString key = prefix + QString::number(i);
        if (!filled.contains(key))
            filled.insert(key, model);
    }
    return filled;
}
