#pragma once

#include "controllersimulator.h"
#include "programrunner.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>

namespace kelcontroller {

// What the pendant's cell panel shows of a controller at one moment, taken from an embedded
// simulator or sent over the network in the same form.
struct KELPLUGIN_EXPORT CellState
{
    bool connected = false;
    bool robotPowered = false;
    bool virtualWelding = false;
    bool weldingEnabled = false;
    bool redLight = false;
    bool gasOpen = false; // by hand or by a running weld
    bool monitorRunning = false;
    ControllerSimulator::Feeder feeder = ControllerSimulator::Feeder::Idle;
    ProgramRunner::State run = ProgramRunner::State::Idle;
    int runLine = -1;
    QList<ControllerSimulator::PortValue> outputs;
    // Enough to tell whether the change history grew.
    int historySize = 0;
    QDateTime historyLast;

    static CellState of(ControllerSimulator &controller);
    QJsonObject toJson() const;
    // Missing or mistyped members read as their defaults: the sender is not trusted.
    static CellState fromJson(const QJsonObject &object);
};

} // namespace kelcontroller
