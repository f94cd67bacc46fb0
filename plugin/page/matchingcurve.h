#pragma once

#include <QPolygonF>
#include <QVector>

#include <array>

namespace kellaser {

// A parameter-matching set as the controller applies it: nodes taken in the order of their
// speed, each quantity linear between two nodes and held at the end node's value outside them.
class MatchingCurve
{
public:
    // Columns of a node: speed mm/s, power W, frequency Hz, duty cycle %.
    enum Column { Speed = 0, Power = 1, Frequency = 2, Duty = 3 };
    using Node = std::array<double, 4>;

    // Nodes in table order; negative values count 0, as in the controller.
    explicit MatchingCurve(const QVector<Node> &nodes);

    bool isEmpty() const { return m_nodes.isEmpty(); }
    double valueAt(Column quantity, double speed) const;
    // The course from speed 0 to toSpeed, a point at each node.
    QPolygonF course(Column quantity, double toSpeed) const;
    double maxSpeed() const { return m_nodes.isEmpty() ? 0.0 : m_nodes.last()[Speed]; }

    struct Refusal
    {
        int node = -1; // 0-based table node; -1 when Save would accept the table
        Column column = Speed;
    };
    // The first node the save validation refuses: from the second node on, each switched-on
    // quantity (power, frequency, duty cycle) and then the speed must rise over the node
    // before it.
    static Refusal firstRefusal(const QVector<Node> &nodes, const std::array<bool, 4> &checked);

private:
    QVector<Node> m_nodes;
};

} // namespace kellaser
