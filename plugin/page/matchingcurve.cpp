#include "matchingcurve.h"

#include <algorithm>
#include <cmath>

namespace kellaser {

MatchingCurve::MatchingCurve(const QVector<Node> &nodes) : m_nodes(nodes)
{
    for (Node &node : m_nodes) {
        for (double &value : node)
            value = std::isfinite(value) ? std::max(0.0, value) : 0.0;
    }
    std::stable_sort(m_nodes.begin(), m_nodes.end(),
        [](const Node &a, const Node &b) { return a[Speed] < b[Speed]; });
}

double MatchingCurve::valueAt(Column quantity, double speed) const
{
    if (m_nodes.isEmpty())
        return 0.0;
    if (speed <= m_nodes.first()[Speed])
        return m_nodes.first()[quantity];
    for (int i = 1; i < m_nodes.size(); ++i) {
        const Node &low = m_nodes.at(i - 1);
        const Node &high = m_nodes.at(i);
        if (speed > high[Speed])
            continue;
        // Nodes of one speed make a step, never a division by zero.
        if (high[Speed] <= low[Speed])
            return high[quantity];
        return low[quantity]
            + (high[quantity] - low[quantity]) * (speed - low[Speed]) / (high[Speed] - low[Speed]);
    }
    return m_nodes.last()[quantity];
}

QPolygonF MatchingCurve::course(Column quantity, double toSpeed) const
{
    QPolygonF points;
    if (m_nodes.isEmpty())
        return points;
    points.append({0.0, m_nodes.first()[quantity]});
    for (const Node &node : m_nodes)
        points.append({node[Speed], node[quantity]});
    points.append({std::max(toSpeed, maxSpeed()), m_nodes.last()[quantity]});
    return points;
}

MatchingCurve::Refusal MatchingCurve::firstRefusal(
    const QVector<Node> &nodes, const std::array<bool, 4> &checked)
{
    static const Column order[] = {Power, Frequency, Duty, Speed};
    for (int i = 1; i < nodes.size(); ++i) {
        for (Column column : order) {
            if (column != Speed && !checked[column])
                continue;
            if (!(nodes.at(i - 1)[column] < nodes.at(i)[column]))
                return {i, column};
        }
    }
    return {};
}

} // namespace kellaser
