#include "curvefit.h"

#include "recordschema.h"

#include <cmath>

namespace kelcontroller {

QJsonArray CurveFit::usedRows(const QJsonArray &rows, const QJsonValue &count)
{
    QJsonArray used = rows;
    if (RecordSchema::isInteger(count, 0, rows.size()))
        while (used.size() > count.toInt())
            used.removeLast();
    return used;
}

bool CurveFit::fit(const QJsonArray &nodes)
{
    m_slope = 0.0;
    m_intercept = 0.0;
    m_error.clear();

    // Centring on the means keeps the sums small for raw values near 65535.
    double sumX = 0.0;
    double sumY = 0.0;
    int n = 0;
    for (const QJsonValue &node : nodes) {
        const QJsonArray row = node.toArray();
        if (row.size() < 2 || !row.at(0).isDouble() || !row.at(1).isDouble()) {
            m_error = QStringLiteral("node %1 must be [raw, physical]").arg(n + 1);
            return false;
        }
        const double x = row.at(0).toDouble();
        const double y = row.at(1).toDouble();
        if (!std::isfinite(x) || !std::isfinite(y)) {
            m_error = QStringLiteral("node %1 is not a finite number").arg(n + 1);
            return false;
        }
        sumX += x;
        sumY += y;
        ++n;
    }
    if (n < 2) {
        m_error = QStringLiteral("at least two nodes are needed");
        return false;
    }
    const double meanX = sumX / n;
    const double meanY = sumY / n;
    double sxx = 0.0;
    double sxy = 0.0;
    for (const QJsonValue &node : nodes) {
        const QJsonArray row = node.toArray();
        const double dx = row.at(0).toDouble() - meanX;
        sxx += dx * dx;
        sxy += dx * (row.at(1).toDouble() - meanY);
    }
    if (sxx == 0.0) {
        m_error = QStringLiteral("the raw values must not all be equal");
        return false;
    }
    m_slope = sxy / sxx;
    m_intercept = meanY - m_slope * meanX;
    // Values near the limits of a double overflow the sums instead of giving a line.
    if (!std::isfinite(sxx) || !std::isfinite(m_slope) || !std::isfinite(m_intercept)) {
        m_slope = m_intercept = 0.0;
        m_error = QStringLiteral("the nodes give no finite line");
        return false;
    }
    return true;
}

} // namespace kelcontroller
