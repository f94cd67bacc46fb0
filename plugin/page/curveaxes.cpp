#include "curveaxes.h"

#include <QtGlobal>

#include <cmath>

namespace {

// Node values come from the controller's record, so they may be anything; an axis limit
// stays well inside int so that the step arithmetic cannot overflow.
constexpr double kAxisLimit = 1e9;

int axisInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value > kAxisLimit)
        return int(kAxisLimit);
    if (value < -kAxisLimit)
        return int(-kAxisLimit);
    return int(value);
}

} // namespace

int CurveAxes::stepFor(int max)
{
    if (max <= 0)
        return 1;
    const qint64 p = qint64(std::pow(10.0, int(std::log10(double(max)))));
    const qint64 roundedUp = (qint64(max) + p - 1) / p * p;
    // Only an axis that ends below 4 would get a step of 0; the chart needs it to advance.
    return qMax(1, int((roundedUp + p) / 5));
}

CurveAxes CurveAxes::choose(const QVector<QPointF> &points)
{
    CurveAxes axes;
    for (const QPointF &point : points) {
        if (point.y() > axes.yMax) {
            axes.yMax = axisInt(point.y() + 1.0);
            axes.yStep = stepFor(axes.yMax);
        }
        if (point.y() < axes.yMin)
            axes.yMin = axisInt(point.y() - 1.0);
        if (point.x() > axes.xMax) {
            axes.xMax = axisInt(point.x() + 1.0);
            axes.xStep = stepFor(axes.xMax);
        }
    }
    return axes;
}
