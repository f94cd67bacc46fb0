#include "remotecell.h"

#include "kelplugin/networkcontroller.h"

#include <QTimer>

RemoteCell::RemoteCell(kelplugin::NetworkController *controller, QObject *parent)
    : CellLink(parent), m_controller(controller), m_poll(new QTimer(this))
{
    using Net = kelplugin::NetworkController;
    m_poll->setInterval(pollMs);
    connect(m_poll, &QTimer::timeout, this, &RemoteCell::poll);
    connect(controller, &Net::problem, this, &CellLink::problem);
    connect(controller, &Net::commandHandled, this, &CellLink::commandHandled);
    connect(controller, &Net::userLevelChanged, this, &CellLink::stateChanged);
    connect(controller, &Net::reachabilityChanged, this, [this](bool reachable) {
        if (reachable) {
            // A run goes on while the link is down; the same speed is asked again.
            setSpeedFactor(m_speedFactor);
            emit notice(tr("Controller at %1 connected").arg(m_controller->address()));
            poll();
            m_poll->start();
        } else {
            m_poll->stop();
            m_state.connected = false;
            emit stateChanged();
        }
    });
}

void RemoteCell::poll()
{
    bool ok = false;
    const QJsonObject reply
        = m_controller
              ->request(QStringLiteral("cell_state"),
                  {{QStringLiteral("since"), std::max(0.0, m_messageCount)},
                      {QStringLiteral("problems_since"), std::max(0, m_problemCount)}},
                  &ok)
              .toObject();
    if (!ok)
        return;
    const kelcontroller::CellState before = m_state;
    m_state = kelcontroller::CellState::fromJson(reply);
    m_state.connected = true;
    const double count = reply.value(QLatin1String("message_count")).toDouble();
    // Messages of runs before this pendant connected are not news to its operator.
    if (m_messageCount >= 0) {
        for (const QJsonValue &value : reply.value(QLatin1String("messages")).toArray()) {
            const QJsonObject message = value.toObject();
            const QString owner = message.value(QLatin1String("client")).toString();
            const QString text = message.value(QLatin1String("text")).toString();
            // Another pendant's run: its line numbers are not this editor's.
            if (owner != m_controller->controllerInfo().value(QLatin1String("client")).toString())
                emit runMessage(message.value(QLatin1String("level")).toInt(),
                    tr("%1 (run of %2)").arg(text, owner), -1);
            else
                emit runMessage(message.value(QLatin1String("level")).toInt(), text,
                    message.value(QLatin1String("line")).toInt(-1));
        }
    }
    m_messageCount = count;
    // Those from before this pendant connected came with its admission (also when the
    // controller restarted and counts afresh).
    const int problems = reply.value(QLatin1String("problem_count")).toInt();
    if (m_problemCount >= 0 && problems >= m_problemCount) {
        for (const QJsonValue &text : reply.value(QLatin1String("problems")).toArray())
            emit problem(tr("The controller reports: %1").arg(text.toString()));
    }
    m_problemCount = problems;
    if (m_state.run != before.run)
        emit runStateChanged(m_state.run);
    if (m_state.runLine != before.runLine)
        emit runLineChanged(m_state.runLine);
    QJsonObject shown = reply;
    shown.remove(QStringLiteral("messages"));
    shown.remove(QStringLiteral("message_count"));
    shown.remove(QStringLiteral("problems"));
    shown.remove(QStringLiteral("problem_count"));
    if (shown != m_shown || !before.connected) {
        m_shown = shown;
        emit stateChanged();
    }
}

QVector<kelcontroller::ChangeHistory::Entry> RemoteCell::history()
{
    if (m_state.historySize == m_historySize && m_state.historyLast == m_historyLast)
        return m_history;
    bool ok = false;
    const QJsonArray entries = m_controller
                                   ->request(QStringLiteral("history"),
                                       {{QStringLiteral("last"), CellLink::historyShown}}, &ok)
                                   .toArray();
    if (!ok)
        return m_history;
    m_history.clear();
    for (const QJsonValue &value : entries) {
        kelcontroller::ChangeHistory::Entry entry;
        if (kelcontroller::ChangeHistory::fromJson(value, &entry))
            m_history.append(entry);
    }
    m_historySize = m_state.historySize;
    m_historyLast = m_state.historyLast;
    return m_history;
}

QByteArray RemoteCell::historyCsv(const QString &record)
{
    return m_controller->request(
                           QStringLiteral("history_csv"), {{QStringLiteral("record"), record}})
        .toString()
        .toUtf8();
}

QString RemoteCell::dataFile()
{
    const QString file
        = m_controller->controllerInfo().value(QLatin1String("data_file")).toString();
    return file.isEmpty() ? tr("on the controller") : tr("%1 on the controller").arg(file);
}

QString RemoteCell::linkText()
{
    if (!m_controller->isReachable())
        return tr("Controller: %1, not reachable").arg(m_controller->address());
    return tr("Controller: %1, round trip %2 ms")
        .arg(m_controller->address())
        .arg(m_controller->roundTripMs(), 0, 'f', 1);
}

int RemoteCell::userLevel()
{
    return m_controller->getUserOperateLevel();
}

void RemoteCell::setUserLevel(int level)
{
    m_controller->setUserLevel(level);
}

void RemoteCell::setRobotPowered(bool powered)
{
    if (m_state.robotPowered == powered)
        return;
    m_controller->request(QStringLiteral("set_robot_power"), {{QStringLiteral("on"), powered}});
    poll();
}

bool RemoteCell::isConnected()
{
    return m_controller->isReachable();
}

void RemoteCell::setConnected(bool connected)
{
    if (connected)
        m_controller->connectToController();
    else
        m_controller->disconnectFromController();
}

void RemoteCell::injectReturnCode(int code)
{
    m_controller->request(QStringLiteral("inject"),
        {{QStringLiteral("fault"), QStringLiteral("code")}, {QStringLiteral("code"), code}});
}

void RemoteCell::injectEmptyReply()
{
    m_controller->request(
        QStringLiteral("inject"), {{QStringLiteral("fault"), QStringLiteral("empty")}});
}

void RemoteCell::injectMalformedElement()
{
    m_controller->request(
        QStringLiteral("inject"), {{QStringLiteral("fault"), QStringLiteral("malformed")}});
}

bool RemoteCell::start(const char *op, const QStringList &lines, const QString &programName)
{
    const bool started = m_controller
                             ->request(QLatin1String(op),
                                 {{QStringLiteral("lines"), QJsonArray::fromStringList(lines)},
                                     {QStringLiteral("program"), programName}})
                             .toBool(false);
    poll(); // the refusal's message and the first line, without waiting for the timer
    return started;
}

bool RemoteCell::run(const QStringList &lines, const QString &programName)
{
    return start("run", lines, programName);
}

bool RemoteCell::step(const QStringList &lines, const QString &programName)
{
    return start("step", lines, programName);
}

void RemoteCell::stop()
{
    m_controller->request(QStringLiteral("stop"));
    poll();
}

void RemoteCell::setSpeedFactor(double factor)
{
    m_speedFactor = factor;
    m_controller->request(QStringLiteral("speed_factor"), {{QStringLiteral("factor"), factor}});
}
