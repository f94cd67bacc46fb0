#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QStringList>

namespace kelcontroller {

// Port names the simulated controller offers, per type.
struct KELPLUGIN_EXPORT IoLayout
{
    int digitalOutputs = 32;
    int digitalInputs = 32;
    int analogOutputs = 8;
    int analogInputs = 8;
    int groupOutputs = 8;
    int groupInputs = 8;

    static IoLayout uniform(int portsPerType);
    // "DO" gives DO1..DOn and so on; an unknown type gives an empty list.
    QStringList ports(const QString &type) const;
    // Whether name is one of the ports of type, without building the list.
    bool hasPort(const QString &type, const QString &name) const;

private:
    int count(const QString &type) const;
};

} // namespace kelcontroller
