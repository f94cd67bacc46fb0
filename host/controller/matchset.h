#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

#include <array>

namespace kelcontroller {

// A power matching set (PowerDataN): nodes [speed, power, frequency, duty cycle] and which
// quantities follow the path speed.
struct KELPLUGIN_EXPORT MatchSet
{
    enum Quantity { Power = 1, Frequency = 2, Duty = 3 };

    // False, with error set, when power_data holds no node or a node that is not four finite
    // numbers. Nodes are used in the order of their speed.
    static bool read(const QJsonObject &set, MatchSet *out, QString *error);

    bool follows(Quantity q) const { return enabled[q - 1]; }
    // Linear between the two nodes around speed, the end node's value outside their range.
    double at(Quantity q, double speed) const;

    bool enabled[3] = {false, false, false};
    QVector<std::array<double, 4>> nodes;
};

} // namespace kelcontroller
