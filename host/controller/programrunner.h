#pragma once

#include "pathsegment.h"
#include "programline.h"
#include "weldmonitor.h"
#include "weldprocess.h"
#include "weldrecords.h"

#include "kelplugin/kelplugin_global.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QVector3D>

class QTimer;

namespace kelcontroller {

class ControllerSimulator;

// Runs a weld program in the simulated cell on the controller's own clock (whole ms): the
// robot's motion, the laser, wire and gas, the monitor samples (every 50 ms) and the weld
// records. In real time by default, scaled by a speed factor; advance() drives it exactly.
class KELPLUGIN_EXPORT ProgramRunner : public QObject
{
    Q_OBJECT
public:
    enum class State { Idle, Running, Stepping };
    Q_ENUM(State)

    // The robot's position before its first motion, mm in the work object frame.
    static QVector3D homePosition() { return QVector3D(400.0f, 0.0f, 400.0f); }

    // What the process drives now, in physical units.
    struct Outputs
    {
        bool laser = false; // the real laser: never on in virtual welding
        bool gas = false;
        double power = 0.0;
        double frequency = 0.0;
        double duty = 0.0;
        double wire = 0.0; // negative while retracting
    };

    ProgramRunner(ControllerSimulator *controller, WeldRecords *records);
    ~ProgramRunner() override;

    // Checks the whole program first; on a refusal emits message(1, text, line) and returns
    // false, moving nothing. Otherwise starts at line 0 (or goes on from a step).
    bool run(const QStringList &lines, const QString &programName = QString());
    // From Idle: checks the program, then executes its first line and waits. From Stepping:
    // executes the next line and waits. False when refused or the last line still runs.
    bool step(const QStringList &lines, const QString &programName = QString());
    // Laser off, motion stops, outputs reset, an open weld recorded as not completed.
    void stop();
    void setSpeedFactor(double factor);
    double speedFactor() const { return m_factor; }
    void advance(qint64 ms);
    void setRealTime(bool on);
    State state() const { return m_state; }
    int currentLine() const { return m_current; }

    qint64 now() const { return m_now; }
    QVector3D position() const;
    Outputs outputs() const;
    WeldMonitor *monitor() { return &m_monitor; }
    // The stream object for data set and welding status, brought up to the real time first.
    QJsonObject monitorStream(const QString &dataSet, bool welding);

signals:
    void lineChanged(int line);
    void stateChanged(kelcontroller::ProgramRunner::State state);
    void message(int level, const QString &text, int line);
    void finished(bool completed);

private:
    // What the checks know of the program's course so far.
    struct Course
    {
        bool laserOn = false;
        QVector3D position;
    };

    bool start(const QStringList &lines, const QString &programName, bool stepping);
    bool preflight();
    QString check(const ProgramLine &line, Course *course) const;
    QString checkProcessOutputs() const;
    bool readWeldSet(const QString &name, WeldSet *set, QString *error) const;
    bool readMatchSet(const QString &name, MatchSet *set, QString *error) const;
    bool resolve(const PointRef &point, QVector3D *position, QString *error) const;
    bool segmentFor(
        const ProgramLine &line, const QVector3D &from, PathSegment *segment, QString *error) const;
    // The index of the first line from index on that is not blank or a comment; lines.size()
    // when there is none.
    int nextInstruction(int index) const;
    double exitSpeed(int index, const ProgramLine &line, const PathSegment &segment) const;

    void runLines(int *budget);
    void execute(const ProgramLine &line, int index);
    void finishMotion();
    void endProgram();
    void refuse(int index, const QString &text);
    void halt();
    void endRun(bool completed);
    void setState(State state);
    void setCurrentLine(int line);

    void integrate(qint64 until);
    double speedAt(qint64 t) const;
    double odometerAt(qint64 t) const;
    MonitorSample sampleAt(qint64 t) const;
    void openWeld(int index, const QString &setName);
    void closeWeld(bool completed);
    void syncRealTime();
    void updateTimer();
    bool isBusy() const;

    ControllerSimulator *m_controller;
    WeldRecords *m_records;
    WeldMonitor m_monitor;
    WeldProcess m_process;
    QTimer *m_timer = nullptr;
    QElapsedTimer m_realClock;
    double m_realCarry = 0.0;
    bool m_realTime = true;
    double m_factor = 1.0;

    qint64 m_now = 0;
    qint64 m_nextSample = 0;
    State m_state = State::Idle;
    QStringList m_lines;
    QString m_program;
    int m_next = 0;
    int m_current = -1;
    bool m_programDone = false;
    bool m_stepDue = false;

    QVector3D m_position = homePosition();
    PathSegment m_segment;
    bool m_moving = false;
    bool m_wireBlocking = false;
    qint64 m_segmentStart = 0;
    qint64 m_activityEnd = 0;
    double m_carrySpeed = 0.0; // the speed the last motion flew by its point with
    double m_odometer = 0.0;   // path length of finished motions
    double m_lastOdometer = 0.0;
    QString m_matchName;
    bool m_simulated = false;

    bool m_recording = false;
    WeldRecords::Weld m_weld;
    qint64 m_weldStart = 0;
};

} // namespace kelcontroller
