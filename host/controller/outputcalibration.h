#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>

namespace kelcontroller {

// Turns a physical set-point into the raw value an output writes, through the inverse of its
// calibration curve's least-squares line (physical = slope * raw + intercept), held within the
// raw range of the curve's nodes.
class KELPLUGIN_EXPORT OutputCalibration
{
public:
    // The curve of weld_curve_config with that index (power, feed, frequency, duty cycle);
    // false, with error set, when its nodes give no line that can be inverted.
    bool load(const QJsonObject &curves, int curve, QString *error);

    double raw(double physical) const;

private:
    double m_slope = 1.0;
    double m_intercept = 0.0;
    double m_rawMin = 0.0;
    double m_rawMax = 0.0;
};

} // namespace kelcontroller
