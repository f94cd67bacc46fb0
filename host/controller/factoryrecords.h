#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QStringList>

namespace kelcontroller {

// The records a new controller ships with: a plausible wiring, the device defaults, two-node
// curves and a few weld data and matching sets.
class KELPLUGIN_EXPORT FactoryRecords
{
public:
    static QJsonObject ioConfig();
    static QJsonObject settingConfig();
    static QJsonObject curveConfig();
    static QJsonObject paramConfig();
    static QJsonObject paramMatch();
    static QStringList points();

    // By record key (weld_io_config, ...); an empty object for an unknown key.
    static QJsonObject record(const QString &key);
};

} // namespace kelcontroller
