#include "cellstate.h"

#include "changehistory.h"

#include <QJsonArray>

namespace kelcontroller {

namespace {
const QStringList feederNames {
    QStringLiteral("idle"), QStringLiteral("feeding"), QStringLiteral("retracting")};
const QStringList runNames {
    QStringLiteral("idle"), QStringLiteral("running"), QStringLiteral("stepping")};
} // namespace

CellState CellState::of(ControllerSimulator &controller)
{
    CellState s;
    const ProgramRunner *runner = controller.runner();
    s.connected = controller.isConnected();
    s.robotPowered = controller.getRobotEleStatus();
    s.virtualWelding = controller.isVirtualWelding();
    s.weldingEnabled = controller.isWeldingEnabled();
    s.redLight = controller.isRedLightOn();
    s.gasOpen = controller.isGasOpen() || runner->outputs().gas;
    s.monitorRunning = controller.isMonitorRunning();
    s.feeder = controller.feeder();
    s.run = runner->state();
    s.runLine = runner->currentLine();
    s.outputs = controller.assignedOutputs();
    const auto &entries = controller.history().entries();
    s.historySize = entries.size();
    if (!entries.isEmpty())
        s.historyLast = entries.last().time;
    return s;
}

QJsonObject CellState::toJson() const
{
    QJsonArray ports;
    for (const auto &port : outputs)
        ports.append(QJsonArray {port.signal, port.port, port.value});
    return {{QStringLiteral("connected"), connected},
        {QStringLiteral("robot_powered"), robotPowered},
        {QStringLiteral("virtual_welding"), virtualWelding},
        {QStringLiteral("welding_enabled"), weldingEnabled},
        {QStringLiteral("red_light"), redLight}, {QStringLiteral("gas_open"), gasOpen},
        {QStringLiteral("monitor_running"), monitorRunning},
        {QStringLiteral("feeder"), feederNames.at(int(feeder))},
        {QStringLiteral("run"), runNames.at(int(run))}, {QStringLiteral("run_line"), runLine},
        {QStringLiteral("outputs"), ports}, {QStringLiteral("history_size"), historySize},
        {QStringLiteral("history_last"), historyLast.toUTC().toString(Qt::ISODateWithMs)}};
}

CellState CellState::fromJson(const QJsonObject &o)
{
    CellState s;
    const auto flag = [&o](const char *key) { return o.value(QLatin1String(key)).toBool(false); };
    s.connected = flag("connected");
    s.robotPowered = flag("robot_powered");
    s.virtualWelding = flag("virtual_welding");
    s.weldingEnabled = flag("welding_enabled");
    s.redLight = flag("red_light");
    s.gasOpen = flag("gas_open");
    s.monitorRunning = flag("monitor_running");
    s.feeder = ControllerSimulator::Feeder(
        std::max(0, int(feederNames.indexOf(o.value(QLatin1String("feeder")).toString()))));
    s.run = ProgramRunner::State(
        std::max(0, int(runNames.indexOf(o.value(QLatin1String("run")).toString()))));
    s.runLine = o.value(QLatin1String("run_line")).toInt(-1);
    for (const QJsonValue &row : o.value(QLatin1String("outputs")).toArray()) {
        const QJsonArray port = row.toArray();
        if (port.size() == 3 && port.at(0).isString() && port.at(1).isString()
            && port.at(2).isDouble())
            s.outputs.append({port.at(0).toString(), port.at(1).toString(), port.at(2).toDouble()});
    }
    s.historySize = std::max(0, o.value(QLatin1String("history_size")).toInt(0));
    s.historyLast = QDateTime::fromString(
        o.value(QLatin1String("history_last")).toString(), Qt::ISODateWithMs);
    return s;
}

} // namespace kelcontroller
