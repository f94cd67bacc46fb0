#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QHash>
#include <QJsonObject>
#include <QStringList>
#include <QVector3D>

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
    // Where the factory points are, mm in the work object frame: a 100 mm seam along x, then
    // 100 mm along y.
    static QHash<QString, QVector3D> pointPositions();

    // By record key (weld_io_config, ...); an empty object for an unknown key.
    static QJsonObject record(const QString &key);
};

} // namespace kelcontroller
