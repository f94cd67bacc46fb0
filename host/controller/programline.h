#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QString>
#include <QVector3D>

namespace kelcontroller {

// A taught point as a motion line names it: the point, or the point displaced by Offs (work
// object frame) or RelTool (tool frame).
struct KELPLUGIN_EXPORT PointRef
{
    QString name;
    QVector3D offset;
    bool relTool = false;
};

// One line of a weld program as the controller's interpreter reads it. The controller does not
// link the plug-in, so it reads the instructions' text itself, as strictly as a controller does.
class KELPLUGIN_EXPORT ProgramLine
{
public:
    enum class Kind {
        Skip, // blank or comment
        LaserOn,
        LaserOff,
        ParaSet,
        WireFwd,
        WireBwd,
        ParaMatch,
        ParaMatchOff,
        MoveL,
        MoveC,
        MoveCF,
    };

    // False, with error set (a sentence without the line number), when the line is no
    // instruction the controller runs.
    static bool parse(const QString &text, ProgramLine *line, QString *error);

    bool isMotion() const;
    bool isCircle() const { return kind == Kind::MoveC || kind == Kind::MoveCF; }
    // Lines the robot passes without stopping: the motion before them flies by its point.
    bool passesThrough() const;

    Kind kind = Kind::Skip;
    QString setName;        // LaserOn, LsParaSet, LsParaMatch
    double wireSpeed = 0.0; // mm/s
    int wireTime = 0;       // ms
    PointRef cirPoint;
    PointRef toPoint;
    double speed = 0.0; // mm/s
    double zone = -1.0; // mm, -1 for fine
    QString tool;
    QString wobj;
};

} // namespace kelcontroller
