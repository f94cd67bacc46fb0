#include "outputcalibration.h"

#include "curvefit.h"
#include "recordschema.h"

#include <QJsonArray>

#include <algorithm>

namespace kelcontroller {

bool OutputCalibration::load(const QJsonObject &curves, int curve, QString *error)
{
    const RecordSchema::Curve &c = RecordSchema::curves().at(curve);
    const QJsonArray rows
        = CurveFit::usedRows(curves.value(c.nodesKey).toArray(), curves.value(c.countKey));
    CurveFit fit;
    if (!fit.fit(rows)) {
        *error = fit.error();
        return false;
    }
    if (fit.slope() == 0.0) {
        *error = QStringLiteral("its line is flat");
        return false;
    }
    m_slope = fit.slope();
    m_intercept = fit.intercept();
    m_rawMin = m_rawMax = rows.at(0).toArray().at(0).toDouble();
    for (const QJsonValue &row : rows) {
        m_rawMin = std::min(m_rawMin, row.toArray().at(0).toDouble());
        m_rawMax = std::max(m_rawMax, row.toArray().at(0).toDouble());
    }
    return true;
}

double OutputCalibration::raw(double physical) const
{
    return qBound(m_rawMin, (physical - m_intercept) / m_slope, m_rawMax);
}

} // namespace kelcontroller
