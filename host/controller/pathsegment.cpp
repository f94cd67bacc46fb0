#include "pathsegment.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kelcontroller {

namespace {

// Closer than this the controller takes two points for one, mm.
constexpr double samePoint = 1e-3;

double distance(const QVector3D &a, const QVector3D &b)
{
    const double dx = double(a.x()) - b.x();
    const double dy = double(a.y()) - b.y();
    const double dz = double(a.z()) - b.z();
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

} // namespace

PathSegment PathSegment::line(const QVector3D &from, const QVector3D &to)
{
    PathSegment s;
    s.m_from = from;
    s.m_to = to;
    s.m_length = distance(from, to);
    return s;
}

bool PathSegment::arc(const QVector3D &from, const QVector3D &via, const QVector3D &to,
    PathSegment *segment, QString *error)
{
    if (distance(from, via) < samePoint || distance(via, to) < samePoint
        || distance(from, to) < samePoint) {
        *error = QStringLiteral("two points of the circle coincide.");
        return false;
    }
    const QVector3D a = from - to;
    const QVector3D b = via - to;
    const QVector3D axb = QVector3D::crossProduct(a, b);
    const double area = double(axb.length());
    if (area < 1e-6 * double(a.length()) * double(b.length())) {
        *error = QStringLiteral("the points of the circle lie on one line.");
        return false;
    }
    // Circumcentre of the triangle.
    const QVector3D centre = to
        + QVector3D::crossProduct(a.lengthSquared() * b - b.lengthSquared() * a, axb)
            / float(2.0 * area * area);
    PathSegment s;
    s.m_arc = true;
    s.m_from = from;
    s.m_to = to;
    s.m_centre = centre;
    s.m_radius = distance(from, centre);
    // Travel from -> via -> to turns the plane's normal this way round.
    const QVector3D normal = QVector3D::crossProduct(via - from, to - via).normalized();
    s.m_u = (from - centre).normalized();
    s.m_v = QVector3D::crossProduct(normal, s.m_u);
    const QVector3D e = to - centre;
    double angle = std::atan2(
        double(QVector3D::dotProduct(e, s.m_v)), double(QVector3D::dotProduct(e, s.m_u)));
    if (angle <= 0.0)
        angle += 2.0 * M_PI;
    s.m_length = s.m_radius * angle;
    *segment = s;
    return true;
}

double PathSegment::cornerSpeed(double vIn, double vOut, double cosAngle)
{
    return std::min(vIn, vOut) * (1.0 + qBound(-1.0, cosAngle, 1.0)) / 2.0;
}

QVector3D PathSegment::pointAt(double s) const
{
    s = qBound(0.0, s, m_length);
    if (s >= m_length)
        return m_to;
    if (!m_arc)
        return m_from + (m_to - m_from) * float(s / m_length);
    const double phi = s / m_radius;
    return m_centre + float(m_radius) * (float(std::cos(phi)) * m_u + float(std::sin(phi)) * m_v);
}

QVector3D PathSegment::directionAt(double s) const
{
    if (m_length <= 0.0)
        return QVector3D();
    if (!m_arc)
        return (m_to - m_from).normalized();
    const double phi = qBound(0.0, s, m_length) / m_radius;
    return float(-std::sin(phi)) * m_u + float(std::cos(phi)) * m_v;
}

void PathSegment::plan(double vEntry, double vMax, double vExit)
{
    const double a = acceleration;
    const double L = m_length;
    vMax = std::max(vMax, 0.0);
    vEntry = qBound(0.0, vEntry, vMax);
    vExit = std::min({std::max(vExit, 0.0), vMax, std::sqrt(vEntry * vEntry + 2.0 * a * L)});
    // An entry faster than the length can brake from would need a harder stop; the look-ahead
    // keeps entries below sqrt(2aL), this only guards odd callers.
    vEntry = std::min(vEntry, std::sqrt(vExit * vExit + 2.0 * a * L));
    double peak = vMax;
    if ((2.0 * peak * peak - vEntry * vEntry - vExit * vExit) / (2.0 * a) > L)
        peak = std::sqrt((2.0 * a * L + vEntry * vEntry + vExit * vExit) / 2.0);
    m_vEntry = vEntry;
    m_vPeak = peak;
    m_vExit = vExit;
    m_t1 = (peak - vEntry) / a;
    m_t3 = (peak - vExit) / a;
    const double ramps = (2.0 * peak * peak - vEntry * vEntry - vExit * vExit) / (2.0 * a);
    m_t2 = peak > 0.0 ? std::max(0.0, L - ramps) / peak : 0.0;
}

double PathSegment::distanceAt(double t) const
{
    const double a = acceleration;
    if (t <= 0.0)
        return 0.0;
    if (t >= duration())
        return m_length;
    if (t < m_t1)
        return m_vEntry * t + 0.5 * a * t * t;
    const double d1 = (m_vEntry + m_vPeak) / 2.0 * m_t1;
    if (t < m_t1 + m_t2)
        return d1 + m_vPeak * (t - m_t1);
    const double t3 = t - m_t1 - m_t2;
    return std::min(m_length, d1 + m_vPeak * m_t2 + m_vPeak * t3 - 0.5 * a * t3 * t3);
}

double PathSegment::speedAt(double t) const
{
    const double a = acceleration;
    if (t <= 0.0)
        return m_vEntry;
    if (t >= duration())
        return m_vExit;
    if (t < m_t1)
        return m_vEntry + a * t;
    if (t < m_t1 + m_t2)
        return m_vPeak;
    return std::max(0.0, m_vPeak - a * (t - m_t1 - m_t2));
}

} // namespace kelcontroller
