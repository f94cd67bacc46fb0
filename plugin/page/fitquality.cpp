#include "fitquality.h"

#include <cmath>
#include <limits>

namespace kellaser {

namespace {
// The chart draws no line for slopes this flat; there is nothing to measure against either.
constexpr double kFlatSlope = 1e-6;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
} // namespace

FitQuality FitQuality::of(const QVector<QPointF> &nodes, double slope, double intercept)
{
    FitQuality quality;
    if (nodes.isEmpty() || !std::isfinite(slope) || !std::isfinite(intercept)
        || std::abs(slope) <= kFlatSlope)
        return quality;
    quality.usable = true;
    double mean = 0.0;
    for (const QPointF &node : nodes)
        mean += node.y();
    mean /= nodes.size();
    double residualSquares = 0.0;
    double totalSquares = 0.0;
    for (int i = 0; i < nodes.size(); ++i) {
        const double line = slope * nodes.at(i).x() + intercept;
        const double deviation = nodes.at(i).y() - line;
        quality.deviations.append(deviation);
        quality.percents.append(line != 0.0 ? deviation / std::abs(line) * 100.0 : kNaN);
        if (quality.largest < 0
            || std::abs(deviation) > std::abs(quality.deviations.at(quality.largest)))
            quality.largest = i;
        residualSquares += deviation * deviation;
        totalSquares += (nodes.at(i).y() - mean) * (nodes.at(i).y() - mean);
    }
    quality.rSquared = totalSquares > 0.0 ? 1.0 - residualSquares / totalSquares : kNaN;
    return quality;
}

} // namespace kellaser
