#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QString>
#include <QVector3D>

namespace kelcontroller {

// One motion of the tool centre point: a straight line or a circular arc, and the speed along
// it. The speed follows a trapezoid: it ramps with the path acceleration from the entry speed
// to the programmed speed (or as far as the length allows) and down to the exit speed.
class KELPLUGIN_EXPORT PathSegment
{
public:
    // Path acceleration and deceleration of the simulated robot, mm/s².
    static constexpr double acceleration = 100.0;

    static PathSegment line(const QVector3D &from, const QVector3D &to);
    // The circle through from, via and to; false, with error set, when the points lie on one
    // line or two of them coincide.
    static bool arc(const QVector3D &from, const QVector3D &via, const QVector3D &to,
        PathSegment *segment, QString *error);

    // The speed through a corner between two motions at speeds vIn and vOut whose directions
    // differ by the angle whose cosine is cosAngle: the full speed straight on, half of it at a
    // right angle, a stop when the path turns back.
    static double cornerSpeed(double vIn, double vOut, double cosAngle);

    double length() const { return m_length; }
    QVector3D pointAt(double s) const;
    QVector3D startDirection() const { return directionAt(0.0); }
    QVector3D endDirection() const { return directionAt(m_length); }

    // Plans the speed; vExit is lowered to what the length allows from vEntry.
    void plan(double vEntry, double vMax, double vExit);
    double duration() const { return m_t1 + m_t2 + m_t3; } // s
    double exitSpeed() const { return m_vExit; }
    // Distance travelled and speed t seconds after the start, held at the end afterwards.
    double distanceAt(double t) const;
    double speedAt(double t) const;

private:
    QVector3D directionAt(double s) const;

    bool m_arc = false;
    QVector3D m_from;
    QVector3D m_to;
    // Arc: centre, radius and the plane's unit vectors (u towards the start).
    QVector3D m_centre;
    QVector3D m_u;
    QVector3D m_v;
    double m_radius = 0.0;
    double m_length = 0.0;

    double m_vEntry = 0.0;
    double m_vPeak = 0.0;
    double m_vExit = 0.0;
    double m_t1 = 0.0; // accelerating
    double m_t2 = 0.0; // cruising
    double m_t3 = 0.0; // decelerating
};

} // namespace kelcontroller
