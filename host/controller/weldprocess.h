#pragma once

#include "matchset.h"
#include "weldset.h"

#include "kelplugin/kelplugin_global.h"

#include <QVector>

#include <limits>

namespace kelcontroller {

// The laser, wire and gas of the simulated cell as a timeline on the controller's clock (ms).
// Each instruction lays down what happens from its moment on; the values at any time are then
// computed, so that sampling does not depend on the step the clock advances by.
class KELPLUGIN_EXPORT WeldProcess
{
public:
    static constexpr qint64 never = std::numeric_limits<qint64>::max() / 4;

    enum class Phase { Off, Start, Weld, End };

    struct Values
    {
        double power = 0.0;
        double frequency = 0.0;
        double duty = 0.0;
    };

    // Gas on now, laser on after preGas; returns when the robot may move on (after the
    // set's motion delay). Gas closes postGas after the laser goes off.
    qint64 laserOn(qint64 now, const WeldSet &set, int preGas, int postGas);
    // Starts the end phase; speed is the path speed now, for a matched power.
    void laserOff(qint64 now, double speed);
    void setWeldSet(const WeldSet &set) { m_set = set; }
    void setMatching(const MatchSet &match);
    void clearMatching() { m_matching = false; }
    bool isMatching() const { return m_matching; }
    // Wire at speed (negative: retract) from now for time ms, ahead of the weld's own wire.
    void moveWire(qint64 now, double speed, int time);
    // Everything off at once.
    void stop(qint64 now);

    Values valuesAt(qint64 t, double pathSpeed) const;
    double wireAt(qint64 t) const;
    Phase phaseAt(qint64 t) const;
    bool isLaserOn(qint64 t) const { return t >= m_on && t < m_off; }
    bool isGasOpen(qint64 t) const { return t >= m_gasOn && t < m_gasOff; }
    bool isLaserCommanded() const { return m_on != never && m_offCommand == never; }
    qint64 laserOnTime() const { return m_on; }
    qint64 laserOffTime() const { return m_off; }
    // The first moment after `after` at which a value changes its course; never when none.
    qint64 nextEvent(qint64 after) const;
    // Whether anything (gas, wire, laser) still happens at or after t.
    bool isBusy(qint64 t) const;

private:
    struct Wire
    {
        qint64 from;
        qint64 to;
        double speed;
    };

    double matched(MatchSet::Quantity q, double setValue, double speed) const;
    void addWire(qint64 from, qint64 to, double speed);
    void cutWire(qint64 at);

    WeldSet m_set;
    MatchSet m_match;
    bool m_matching = false;
    qint64 m_gasOn = never;
    qint64 m_gasOff = never;
    qint64 m_on = never;
    qint64 m_offCommand = never;
    qint64 m_off = never;
    int m_postGas = 0;
    double m_powerAtOff = 0.0;
    QVector<Wire> m_wire;
};

} // namespace kelcontroller
