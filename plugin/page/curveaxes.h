#pragma once

#include <QPointF>
#include <QVector>

// Axis ranges and tick steps for a characteristic curve chart, chosen from its nodes: the
// ranges start at x 0..10 step 2 and y 0..5 step 1 and grow to take in every node, the step
// growing with them so that a chart keeps about five ticks.
struct CurveAxes
{
    int xMin = 0;
    int xMax = 10;
    int xStep = 2;
    int yMin = 0;
    int yMax = 5;
    int yStep = 1;

    static CurveAxes choose(const QVector<QPointF> &points);
    // The step for an axis that ends at max: the next power of ten below max, p, rounds max
    // up to a multiple of p, adds one p and divides by five (integer division).
    static int stepFor(int max);
};
