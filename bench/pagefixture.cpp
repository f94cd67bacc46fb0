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
    for (const char *key : {"weld_io_config", "weld_setting_config", "weld_curve_config",
             "weld_param_config", "weld_param_match"})
        controller.serviceData.insert(
            QLatin1String(key), FactoryRecords::record(QLatin1String(key)));
}
