#include "weldprocess.h"

#include <algorithm>

namespace kelcontroller {

qint64 WeldProcess::laserOn(qint64 now, const WeldSet &set, int preGas, int postGas)
{
    m_set = set;
    m_gasOn = std::min(m_gasOn, now);
    if (m_gasOff <= now)
        m_gasOn = now;
    m_gasOff = never;
    m_on = now + preGas;
    m_offCommand = never;
    m_off = never;
    m_postGas = postGas;
    m_wire.erase(
        std::remove_if(m_wire.begin(), m_wire.end(), [now](const Wire &w) { return w.to <= now; }),
        m_wire.end());
    const qint64 run = m_on + (set.wireStart ? set.wireStartTime : 0);
    if (set.wireStart)
        addWire(m_on, run, set.wireStartSpeed);
    addWire(run, never, set.wireRun);
    return m_on + set.delayStart;
}

void WeldProcess::laserOff(qint64 now, double speed)
{
    if (!isLaserCommanded())
        return;
    m_powerAtOff = valuesAt(now, speed).power;
    m_offCommand = now;
    m_off = std::max(now, m_on) + m_set.delayEnd;
    m_gasOff = m_off + m_postGas;
    cutWire(now);
    // The wire end sequence: end feed, retract, then the compensation after its delay.
    qint64 t = now;
    if (m_set.wireEnd) {
        addWire(t, t + m_set.wireEndTime, m_set.wireEndSpeed);
        t += m_set.wireEndTime;
    }
    if (m_set.retract) {
        addWire(t, t + m_set.retractTime, -m_set.retractSpeed);
        t += m_set.retractTime;
    }
    if (m_set.fill)
        addWire(t + m_set.fillDelay, t + m_set.fillDelay + m_set.fillTime, m_set.fillSpeed);
}

void WeldProcess::setMatching(const MatchSet &match)
{
    m_match = match;
    m_matching = true;
}

void WeldProcess::moveWire(qint64 now, double speed, int time)
{
    addWire(now, now + time, speed);
}

void WeldProcess::stop(qint64 now)
{
    if (m_off > now) {
        m_on = std::min(m_on, now);
        m_offCommand = std::min(m_offCommand, now);
        m_off = now;
    }
    m_gasOff = std::min(m_gasOff, now);
    cutWire(now);
    m_matching = false;
}

void WeldProcess::addWire(qint64 from, qint64 to, double speed)
{
    if (to > from && speed != 0.0)
        m_wire.append({from, to, speed});
}

void WeldProcess::cutWire(qint64 at)
{
    for (Wire &w : m_wire)
        w.to = std::min(w.to, std::max(at, w.from));
}

double WeldProcess::matched(MatchSet::Quantity q, double setValue, double speed) const
{
    return m_matching && m_match.follows(q) ? m_match.at(q, speed) : setValue;
}

WeldProcess::Values WeldProcess::valuesAt(qint64 t, double pathSpeed) const
{
    Values v;
    if (!isLaserOn(t))
        return v;
    if (t >= m_offCommand) {
        const double done
            = m_set.rampEnd > 0 ? std::min(1.0, double(t - m_offCommand) / m_set.rampEnd) : 1.0;
        v.power = m_powerAtOff + (m_set.powerEnd - m_powerAtOff) * done;
        v.frequency = m_set.frequencyEnd;
        v.duty = m_set.dutyEnd;
        return v;
    }
    const double weldPower = matched(MatchSet::Power, m_set.powerWeld, pathSpeed);
    if (t < m_on + m_set.rampStart) {
        const double done = double(t - m_on) / m_set.rampStart;
        v.power = m_set.powerStart + (weldPower - m_set.powerStart) * done;
        v.frequency = m_set.frequencyStart;
        v.duty = m_set.dutyStart;
        return v;
    }
    v.power = weldPower;
    v.frequency = matched(MatchSet::Frequency, m_set.frequencyWeld, pathSpeed);
    v.duty = matched(MatchSet::Duty, m_set.dutyWeld, pathSpeed);
    return v;
}

double WeldProcess::wireAt(qint64 t) const
{
    // Later steps take over from earlier ones (an LsWireFwd during the weld's own feed).
    for (int i = m_wire.size() - 1; i >= 0; --i)
        if (t >= m_wire.at(i).from && t < m_wire.at(i).to)
            return m_wire.at(i).speed;
    return 0.0;
}

WeldProcess::Phase WeldProcess::phaseAt(qint64 t) const
{
    if (t >= m_gasOn && t < m_on)
        return Phase::Start;
    if (!isLaserOn(t))
        return Phase::Off;
    if (t >= m_offCommand)
        return Phase::End;
    return t < m_on + m_set.rampStart ? Phase::Start : Phase::Weld;
}

qint64 WeldProcess::nextEvent(qint64 after) const
{
    qint64 next = never;
    const auto consider = [&](qint64 t) {
        if (t > after && t < next)
            next = t;
    };
    consider(m_gasOn);
    consider(m_gasOff);
    consider(m_on);
    if (m_on != never)
        consider(m_on + m_set.rampStart);
    consider(m_offCommand);
    if (m_offCommand != never)
        consider(m_offCommand + m_set.rampEnd);
    consider(m_off);
    for (const Wire &w : m_wire) {
        consider(w.from);
        consider(w.to);
    }
    return next;
}

bool WeldProcess::isBusy(qint64 t) const
{
    if (isLaserCommanded() || (m_off != never && t < m_off) || (m_gasOn != never && t < m_gasOff))
        return true;
    for (const Wire &w : m_wire)
        if (t < w.to)
            return true;
    return false;
}

} // namespace kelcontroller
