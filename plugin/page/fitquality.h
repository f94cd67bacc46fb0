#pragma once

#include <QPointF>
#include <QVector>

namespace kellaser {

// How well a fitted line physical = slope * raw + intercept matches the nodes it was fitted
// to: each node's deviation from the line, the node that stands out most, and the coefficient
// of determination.
struct FitQuality
{
    // False when there is no line to measure against: a flat or non-finite slope, a
    // non-finite intercept, or no nodes.
    bool usable = false;
    QVector<double> deviations; // node's physical value minus the line's, in its unit
    QVector<double> percents;   // deviation in % of the line's value; NaN where that is 0
    // The node that stands out most, the first of equals; -1 when every deviation reads 0.0.
    // A fitted line leans towards a wrong node, the more the nearer the node is to an end of
    // the table, so from four nodes on each deviation is weighed by how far the node can pull
    // the line (its leverage), and the node is then measured against the least-squares line
    // through the others: a single mistyped node shows there by exactly its error. With two
    // or three nodes no node can be told from the rest that way; the largest deviation is it.
    int largest = -1;
    bool againstOthers = false;
    double offOthers = 0.0;        // largest's distance from the others' line, in its unit
    double offOthersPercent = 0.0; // that in % of the others' line; NaN where that is 0
    double rSquared = 0.0;         // NaN when the nodes' values are all equal

    static FitQuality of(const QVector<QPointF> &nodes, double slope, double intercept);
};

} // namespace kellaser
