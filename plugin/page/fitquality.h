#pragma once

#include <QPointF>
#include <QVector>

namespace kellaser {

// How well a fitted line physical = slope * raw + intercept matches the nodes it was fitted
// to: each node's deviation from the line and the coefficient of determination.
struct FitQuality
{
    // False when there is no line to measure against: a flat or non-finite slope, a
    // non-finite intercept, or no nodes.
    bool usable = false;
    QVector<double> deviations; // node's physical value minus the line's, in its unit
    QVector<double> percents;   // deviation in % of the line's value; NaN where that is 0
    int largest = -1;           // node with the largest absolute deviation, the first of equals
    double rSquared = 0.0;      // NaN when the nodes' values are all equal

    static FitQuality of(const QVector<QPointF> &nodes, double slope, double intercept);
};

} // namespace kellaser
