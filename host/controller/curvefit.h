#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonArray>
#include <QString>

namespace kelcontroller {

// Straight-line calibration of one set-point: physical = slope * raw + intercept, fitted by
// least squares over the node rows [raw, physical].
class KELPLUGIN_EXPORT CurveFit
{
public:
    // The rows of a curve table in use: as many as the node count says, all when the count is
    // not a whole number within the table.
    static QJsonArray usedRows(const QJsonArray &rows, const QJsonValue &count);
    // Fits nodes; false, with error set, for fewer than two usable rows or equal raw values.
    bool fit(const QJsonArray &nodes);

    double slope() const { return m_slope; }
    double intercept() const { return m_intercept; }
    QString error() const { return m_error; }

private:
    double m_slope = 0.0;
    double m_intercept = 0.0;
    QString m_error;
};

} // namespace kelcontroller
