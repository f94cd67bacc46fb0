#include "fitquality.h"

#include <cmath>
#include <limits>

namespace kellaser {

namespace {
// The chart draws no line for slopes this flat; there is nothing to measure against either.
constexpr double kFlatSlope = 1e-6;
// Figures are shown with one decimal: below this every node reads 0.0 and none stands out.
constexpr double kShownZero = 0.05;
// From this many nodes on, the others leave a line with room to judge a node against.
constexpr int kNodesToJudge = 4;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double percentOf(double deviation, double line)
{
    return line != 0.0 ? deviation / std::abs(line) * 100.0 : kNaN;
}

struct Spread
{
    double meanX = 0.0;
    double meanY = 0.0;
    double sxx = 0.0;
    double sxy = 0.0;
};

// Means and sums of squares of the nodes, leaving one out (skipped = -1 leaves none).
Spread spreadOf(const QVector<QPointF> &nodes, int skipped)
{
    Spread spread;
    const int count = nodes.size() - (skipped >= 0 ? 1 : 0);
    for (int i = 0; i < nodes.size(); ++i) {
        if (i != skipped) {
            spread.meanX += nodes.at(i).x() / count;
            spread.meanY += nodes.at(i).y() / count;
        }
    }
    for (int i = 0; i < nodes.size(); ++i) {
        if (i != skipped) {
            const double dx = nodes.at(i).x() - spread.meanX;
            spread.sxx += dx * dx;
            spread.sxy += dx * (nodes.at(i).y() - spread.meanY);
        }
    }
    return spread;
}
} // namespace

FitQuality FitQuality::of(const QVector<QPointF> &nodes, double slope, double intercept)
{
    FitQuality quality;
    if (nodes.isEmpty() || !std::isfinite(slope) || !std::isfinite(intercept)
        || std::abs(slope) <= kFlatSlope)
        return quality;
    quality.usable = true;
    const Spread all = spreadOf(nodes, -1);
    quality.againstOthers = nodes.size() >= kNodesToJudge && all.sxx > 0.0;
    double residualSquares = 0.0;
    double totalSquares = 0.0;
    double most = 0.0;
    double largestShown = 0.0;
    for (int i = 0; i < nodes.size(); ++i) {
        const double line = slope * nodes.at(i).x() + intercept;
        const double deviation = nodes.at(i).y() - line;
        quality.deviations.append(deviation);
        quality.percents.append(percentOf(deviation, line));
        residualSquares += deviation * deviation;
        totalSquares += (nodes.at(i).y() - all.meanY) * (nodes.at(i).y() - all.meanY);
        largestShown = std::max(largestShown, std::abs(deviation));

        double weighed = std::abs(deviation);
        if (quality.againstOthers) {
            const double dx = nodes.at(i).x() - all.meanX;
            const double leverage = 1.0 / nodes.size() + dx * dx / all.sxx;
            // A node alone at its raw value holds the line to itself: nothing to weigh.
            weighed = leverage < 1.0 ? weighed / std::sqrt(1.0 - leverage) : 0.0;
        }
        if (weighed > most) {
            most = weighed;
            quality.largest = i;
        }
    }
    quality.rSquared = totalSquares > 0.0 ? 1.0 - residualSquares / totalSquares : kNaN;
    if (largestShown < kShownZero)
        quality.largest = -1;
    if (quality.largest < 0) {
        quality.againstOthers = false;
    } else if (quality.againstOthers) {
        const Spread others = spreadOf(nodes, quality.largest);
        const QPointF node = nodes.at(quality.largest);
        const double line = others.sxx > 0.0
            ? others.meanY + others.sxy / others.sxx * (node.x() - others.meanX)
            : others.meanY;
        quality.offOthers = node.y() - line;
        quality.offOthersPercent = percentOf(quality.offOthers, line);
    }
    return quality;
}

} // namespace kellaser
