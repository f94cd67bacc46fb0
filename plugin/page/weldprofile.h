#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QString>
#include <QVector>

class QJsonObject;

namespace kellaser {

// The course of a weld data set as the controller runs it: laser power and wire speed over
// the time from LaserOn (t = 0, ms) through the start phase, a stretch of welding and the end
// phase to the end of the wire end sequence. Steps are two points at one time.
class WeldProfile
{
public:
    enum Phase { Start, Weld, End, WireEnd, EndFeed, Retract, Compensation };
    enum Issue {
        BadValue, // a key the run needs is missing, not a finite number or negative
        StartAboveWeld,
        EndAboveWeld,
        RampDownCut, // the ramp down outlasts the laser-off delay and is cut at laser off
        WireStartEmpty,
        WireEndEmpty,
        RetractEmpty,
        CompensationEmpty,
        OutsideForm, // a stored value the editor's form cannot hold; the editor notes it
    };
    enum Lane { PowerLane = 0, WireLane = 1, NoLane = -1 };

    struct Span
    {
        Phase phase;
        double from;
        double to;
    };
    struct Problem
    {
        Issue issue;
        Lane lane;
        QPointF at;  // (ms, value) on its lane
        QString key; // the offending key of a BadValue or OutsideForm
        // An OutsideForm's stored value and the whole numbers the form holds.
        double stored = 0.0;
        int low = 0;
        int high = 0;
    };

    // Shortest stretch of welding drawn between the start and the end phase, ms.
    static constexpr double minWeldStretch = 200.0;
    // Longer times are typing errors; the controller holds them here, ms.
    static constexpr double maxTime = 60000.0;

    static WeldProfile fromSet(const QJsonObject &set);

    // The issue as one short sentence for the operator.
    static QString issueText(const Problem &problem);
    // All issues in one line: the first one and how many more; empty without issues.
    QString hint() const;

    QPolygonF power; // (ms, W)
    QPolygonF wire;  // (ms, mm/s), negative while retracting; empty when no wire moves
    QVector<Span> phases;
    QVector<Problem> problems;
    double motionStart = 0.0;     // the robot starts moving
    double laserOffCommand = 0.0; // LaserOff is reached
    double laserOff = 0.0;        // the laser goes dark
    double end = 0.0;             // everything has stopped
};

} // namespace kellaser
