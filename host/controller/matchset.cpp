#include "matchset.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace kelcontroller {

bool MatchSet::read(const QJsonObject &set, MatchSet *out, QString *error)
{
    MatchSet m;
    m.enabled[0] = set.value(QLatin1String("power_enable")).toBool();
    m.enabled[1] = set.value(QLatin1String("frequency_enable")).toBool();
    m.enabled[2] = set.value(QLatin1String("dutycycle_enable")).toBool();
    const QJsonArray rows = set.value(QLatin1String("power_data")).toArray();
    for (const QJsonValue &row : rows) {
        const QJsonArray r = row.toArray();
        std::array<double, 4> node {};
        bool ok = r.size() >= 4;
        for (int i = 0; ok && i < 4; ++i) {
            ok = r.at(i).isDouble() && std::isfinite(r.at(i).toDouble());
            node[size_t(i)] = std::max(0.0, r.at(i).toDouble());
        }
        if (!ok) {
            *error = QStringLiteral("has a node that is not four numbers");
            return false;
        }
        m.nodes.append(node);
    }
    if (m.nodes.isEmpty()) {
        *error = QStringLiteral("has no nodes");
        return false;
    }
    std::stable_sort(m.nodes.begin(), m.nodes.end(),
        [](const std::array<double, 4> &a, const std::array<double, 4> &b) { return a[0] < b[0]; });
    *out = m;
    return true;
}

double MatchSet::at(Quantity q, double speed) const
{
    if (nodes.isEmpty())
        return 0.0;
    const size_t c = size_t(q);
    if (speed <= nodes.first()[0])
        return nodes.first()[c];
    for (int i = 1; i < nodes.size(); ++i) {
        const auto &lo = nodes.at(i - 1);
        const auto &hi = nodes.at(i);
        if (speed <= hi[0]) {
            if (hi[0] <= lo[0])
                return hi[c];
            return lo[c] + (hi[c] - lo[c]) * (speed - lo[0]) / (hi[0] - lo[0]);
        }
    }
    return nodes.last()[c];
}

} // namespace kelcontroller
