#include "localcell.h"

#include "controller/controllersimulator.h"
#include "controller/programrunner.h"

LocalCell::LocalCell(kelcontroller::ControllerSimulator *controller, QObject *parent)
    : CellLink(parent), m_controller(controller)
{
    using Sim = kelcontroller::ControllerSimulator;
    using Runner = kelcontroller::ProgramRunner;
    connect(controller, &Sim::stateChanged, this, &CellLink::stateChanged);
    connect(controller, &Sim::problem, this, &CellLink::problem);
    connect(controller, &Sim::commandHandled, this, &CellLink::commandHandled);
    connect(controller->runner(), &Runner::lineChanged, this, &CellLink::runLineChanged);
    connect(controller->runner(), &Runner::stateChanged, this, &CellLink::runStateChanged);
    connect(controller->runner(), &Runner::message, this, &CellLink::runMessage);
    connect(controller->runner(), &Runner::stateChanged, this, &CellLink::stateChanged);
    connect(controller->runner(), &Runner::lineChanged, this, &CellLink::stateChanged);
}

kelcontroller::CellState LocalCell::state()
{
    return kelcontroller::CellState::of(*m_controller);
}

QVector<kelcontroller::ChangeHistory::Entry> LocalCell::history()
{
    return m_controller->history().entries();
}

QByteArray LocalCell::historyCsv(const QString &record)
{
    return m_controller->history().csv(record);
}

QString LocalCell::dataFile()
{
    return m_controller->dataFilePath();
}

QString LocalCell::linkText()
{
    return tr("Controller: simulated in this pendant");
}

int LocalCell::userLevel()
{
    return m_controller->getUserOperateLevel();
}

void LocalCell::setUserLevel(int level)
{
    m_controller->setUserLevel(level);
}

void LocalCell::setRobotPowered(bool powered)
{
    m_controller->setRobotPowered(powered);
}

bool LocalCell::isConnected()
{
    return m_controller->isConnected();
}

void LocalCell::setConnected(bool connected)
{
    m_controller->setConnected(connected);
}

void LocalCell::injectReturnCode(int code)
{
    m_controller->injectReturnCode(code);
}

void LocalCell::injectEmptyReply()
{
    m_controller->injectEmptyReply();
}

void LocalCell::injectMalformedElement()
{
    m_controller->injectMalformedElement();
}

bool LocalCell::run(const QStringList &lines, const QString &programName)
{
    return m_controller->runner()->run(lines, programName);
}

bool LocalCell::step(const QStringList &lines, const QString &programName)
{
    return m_controller->runner()->step(lines, programName);
}

void LocalCell::stop()
{
    m_controller->runner()->stop();
}

void LocalCell::setSpeedFactor(double factor)
{
    m_controller->runner()->setSpeedFactor(factor);
}
