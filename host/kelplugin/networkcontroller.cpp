#include "networkcontroller.h"

#include <QJsonArray>
#include <QTcpSocket>
#include <QTimer>

namespace kelplugin {

namespace {
// Often enough to notice a silent controller and to show a fresh round trip.
constexpr int kHeartbeatMs = 1000;

QJsonValue result(const QJsonObject &reply, bool *ok)
{
    const bool answered = reply.value(QLatin1String("ok")).toBool(false);
    if (ok)
        *ok = answered;
    return answered ? reply.value(QLatin1String("result")) : QJsonValue(QJsonValue::Undefined);
}
} // namespace

NetworkController::NetworkController(
    const QString &host, quint16 port, const QByteArray &key, QObject *parent)
    : ControllerBackend(parent)
    , m_host(host)
    , m_port(port)
    , m_key(key)
    , m_clientName(QStringLiteral("pendant"))
    , m_socket(new QTcpSocket(this))
    , m_stream(m_socket)
    , m_retry(new QTimer(this))
    , m_heartbeat(new QTimer(this))
    , m_handshakeTimer(new QTimer(this))
{
    m_handshakeTimer->setSingleShot(true);
    connect(m_handshakeTimer, &QTimer::timeout, this,
        [this] { lose(tr("no answer within %1 s").arg(m_timeoutMs / 1000.0)); });
    connect(m_socket, &QTcpSocket::readyRead, this, &NetworkController::readHello);
    m_retry->setSingleShot(true);
    connect(m_retry, &QTimer::timeout, this, &NetworkController::tryConnect);
    m_heartbeat->setInterval(kHeartbeatMs);
    connect(m_heartbeat, &QTimer::timeout, this, [this] { request(QStringLiteral("ping")); });
    connect(m_socket, &QTcpSocket::connected, this, &NetworkController::handshake);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        if (m_reachable)
            lose(tr("the connection was closed"));
    });
    connect(m_socket, &QAbstractSocket::errorOccurred, this, [this] {
        // While connecting: refused, timed out or no route. Once connected "disconnected"
        // tells the same, or a call notices first.
        if (!m_reachable && m_wanted)
            lose(m_socket->errorString());
    });
}

NetworkController::~NetworkController()
{
    m_wanted = false;
    m_socket->abort();
}

bool NetworkController::parseAddress(const QString &text, QString *host, quint16 *port)
{
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    if (colon <= 0)
        return false;
    QString name = text.left(colon);
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']')))
        name = name.mid(1, name.size() - 2);
    else if (name.contains(QLatin1Char(':')))
        return false; // an IPv6 address needs its brackets, or the port is ambiguous
    bool ok = false;
    const uint number = text.mid(colon + 1).toUInt(&ok);
    if (!ok || number == 0 || number > 65535 || name.isEmpty())
        return false;
    *host = name;
    *port = quint16(number);
    return true;
}

QString NetworkController::address() const
{
    return m_host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2").arg(m_host).arg(m_port)
                                             : QStringLiteral("%1:%2").arg(m_host).arg(m_port);
}

void NetworkController::setReconnectDelays(int firstMs, int maxMs)
{
    m_firstDelayMs = m_delayMs = firstMs;
    m_maxDelayMs = maxMs;
}

void NetworkController::setUserLevel(int level)
{
    if (m_userLevel == level)
        return;
    m_userLevel = level;
    emit userLevelChanged(level);
}

void NetworkController::connectToController()
{
    m_wanted = true;
    if (m_socket->state() == QAbstractSocket::UnconnectedState && !m_retry->isActive())
        tryConnect();
}

void NetworkController::disconnectFromController()
{
    m_wanted = false;
    m_retry->stop();
    m_heartbeat->stop();
    m_handshakeTimer->stop();
    m_helloId = 0;
    const bool was = m_reachable;
    m_reachable = false;
    m_socket->abort();
    m_stream = MessageStream(m_socket);
    if (was)
        emit reachabilityChanged(false);
}

void NetworkController::tryConnect()
{
    if (!m_wanted || m_socket->state() != QAbstractSocket::UnconnectedState)
        return;
    m_stream = MessageStream(m_socket);
    m_socket->connectToHost(m_host, m_port);
}

void NetworkController::handshake()
{
    // Answered on readyRead: a controller that accepts but does not answer (hung, or not a
    // controller at all) must not freeze the pendant on every attempt.
    m_helloId = m_nextId++;
    m_stream.send(
        {{QStringLiteral("id"), m_helloId}, {QStringLiteral("op"), QStringLiteral("hello")},
            {QStringLiteral("key"), QString::fromLatin1(m_key)},
            {QStringLiteral("client"), m_clientName}});
    m_handshakeTimer->start(m_timeoutMs);
}

void NetworkController::readHello()
{
    if (m_helloId == 0)
        return; // a request waits for its own answer
    QJsonObject reply;
    const MessageStream::Status status = m_stream.next(&reply);
    if (status == MessageStream::Status::Pending)
        return;
    if (status != MessageStream::Status::Message
        || reply.value(QLatin1String("id")).toDouble() != double(m_helloId)) {
        lose(tr("its answer was unreadable (%1)").arg(m_stream.error()));
        return;
    }
    m_helloId = 0;
    m_handshakeTimer->stop();
    bool ok = false;
    const QJsonValue info = result(reply, &ok);
    if (!ok) {
        lose(
            tr("it refused this pendant (%1)").arg(reply.value(QLatin1String("error")).toString()));
        return;
    }
    m_info = info.toObject();
    m_reachable = true;
    m_lossTold = false;
    m_delayMs = m_firstDelayMs;
    m_heartbeat->start();
    emit reachabilityChanged(true);
    emit connectionRestored();
    // What the controller found wrong with its data (repairs, entries it could not keep).
    for (const QJsonValue &text : m_info.value(QLatin1String("problems")).toArray()) {
        if (!m_controllerProblemsTold.contains(text.toString())) {
            m_controllerProblemsTold.insert(text.toString());
            emit problem(tr("The controller reports: %1").arg(text.toString()));
        }
    }
}

void NetworkController::lose(const QString &why)
{
    const bool was = m_reachable;
    m_reachable = false;
    m_helloId = 0;
    m_handshakeTimer->stop();
    m_heartbeat->stop();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_socket->abort(); // may come back here through disconnected(): told once below
    m_stream = MessageStream(m_socket);
    if (!m_lossTold && m_wanted) {
        m_lossTold = true;
        emit problem(tr("Controller not reachable at %1: %2. Reconnecting…").arg(address(), why));
    }
    if (was)
        emit reachabilityChanged(false);
    scheduleRetry();
}

void NetworkController::scheduleRetry()
{
    if (!m_wanted || m_retry->isActive())
        return;
    m_retry->start(m_delayMs);
    m_delayMs = std::min(2 * m_delayMs, m_maxDelayMs);
}

QJsonObject NetworkController::exchange(QJsonObject message)
{
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return {};
    const qint64 id = m_nextId++;
    message.insert(QStringLiteral("id"), id);
    QElapsedTimer clock;
    clock.start();
    m_stream.send(message);
    for (;;) {
        QJsonObject reply;
        switch (m_stream.next(&reply)) {
        case MessageStream::Status::Message:
            if (reply.value(QLatin1String("id")).toDouble() != double(id))
                continue; // not ours: the controller speaks only when asked, so a stray line
            m_roundTripMs = clock.nsecsElapsed() / 1e6;
            return reply;
        case MessageStream::Status::Pending:
            break;
        default:
            lose(tr("its answer was unreadable (%1)").arg(m_stream.error()));
            return {};
        }
        const qint64 left = m_timeoutMs - clock.elapsed();
        if (left <= 0 || !m_socket->waitForReadyRead(int(left))) {
            const bool silent = m_socket->state() == QAbstractSocket::ConnectedState;
            lose(silent ? tr("no answer within %1 s").arg(m_timeoutMs / 1000.0)
                        : m_socket->errorString());
            return {};
        }
    }
}

QJsonValue NetworkController::request(const QString &op, QJsonObject arguments, bool *ok)
{
    if (!m_reachable) {
        if (ok)
            *ok = false;
        return QJsonValue(QJsonValue::Undefined);
    }
    arguments.insert(QStringLiteral("op"), op);
    arguments.insert(QStringLiteral("level"), m_userLevel);
    return result(exchange(arguments), ok);
}

QJsonArray NetworkController::sendCommand(const QString &pluginKey, const QJsonObject &command,
    const char *op, const QJsonObject &arguments)
{
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    bool ok = false;
    const QJsonValue answer = request(QLatin1String(op), arguments, &ok);
    QJsonArray reply = answer.toArray();
    if (!ok) {
        // Judged as a refusal by both of the plug-ins' reply checks.
        reply = QJsonArray {QJsonObject {{pluginKey,
            QJsonObject {{name,
                QJsonObject {{QStringLiteral("return"), unreachableCode},
                    {QStringLiteral("message"), tr("controller not reachable")}}}}}}};
    }
    emit commandHandled(
        name, command.isEmpty() ? QJsonValue() : command.constBegin().value(), reply);
    return reply;
}

QJsonArray NetworkController::commandCustomData(
    QObject *, const QString &pluginKey, const QJsonObject &command)
{
    return sendCommand(pluginKey, command, "command",
        {{QStringLiteral("plugin"), pluginKey}, {QStringLiteral("command"), command}});
}

QJsonArray NetworkController::commandCustomData(
    QObject *, const QString &pluginKey, const QString &command, const QString &value)
{
    return sendCommand(pluginKey, QJsonObject {{command, value}}, "command_text",
        {{QStringLiteral("plugin"), pluginKey}, {QStringLiteral("name"), command},
            {QStringLiteral("value"), value}});
}

QJsonValue NetworkController::getKelServiceData(const QString &key)
{
    return request(QStringLiteral("service_data"), {{QStringLiteral("key"), key}});
}

bool NetworkController::disconnectKelServiceData(
    const QString &pluginKey, const QString &key, const QString &third)
{
    return request(QStringLiteral("release"),
        {{QStringLiteral("plugin"), pluginKey}, {QStringLiteral("key"), key},
            {QStringLiteral("third"), third}})
        .toBool(false);
}

bool NetworkController::getRobotEleStatus()
{
    return request(QStringLiteral("robot_power")).toBool(false);
}

QStringList NetworkController::stringList(const QString &op, QJsonObject arguments)
{
    QStringList out;
    for (const QJsonValue &item : request(op, std::move(arguments)).toArray()) {
        if (item.isString())
            out.append(item.toString());
    }
    return out;
}

QString NetworkController::string(const QString &op)
{
    return request(op).toString();
}

QStringList NetworkController::getIOByType(const QString &type)
{
    return stringList(QStringLiteral("io_by_type"), {{QStringLiteral("type"), type}});
}

QHash<QString, QStringList> NetworkController::getRegisterHash()
{
    QHash<QString, QStringList> out;
    const QJsonObject registers = request(QStringLiteral("register_hash")).toObject();
    for (auto it = registers.constBegin(); it != registers.constEnd(); ++it) {
        QStringList names;
        for (const QJsonValue &name : it.value().toArray())
            names.append(name.toString());
        out.insert(it.key(), names);
    }
    return out;
}

QStringList NetworkController::getPointNameList()
{
    return stringList(QStringLiteral("point_names"));
}

bool NetworkController::addCurrentPoint(
    const QString &name, bool overwrite, const QString &tool, const QString &wobj)
{
    return request(QStringLiteral("add_point"),
        {{QStringLiteral("name"), name}, {QStringLiteral("overwrite"), overwrite},
            {QStringLiteral("tool"), tool}, {QStringLiteral("wobj"), wobj}})
        .toBool(false);
}

QStringList NetworkController::getZoneList()
{
    return stringList(QStringLiteral("zones"));
}

QStringList NetworkController::getSpeedList()
{
    return stringList(QStringLiteral("speeds"));
}

QStringList NetworkController::getWobjList()
{
    return stringList(QStringLiteral("wobjs"));
}

QStringList NetworkController::getToolList()
{
    return stringList(QStringLiteral("tools"));
}

QString NetworkController::getCurWobj()
{
    return string(QStringLiteral("current_wobj"));
}

QString NetworkController::getCurTool()
{
    return string(QStringLiteral("current_tool"));
}

} // namespace kelplugin
