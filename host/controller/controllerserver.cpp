#include "controllerserver.h"

#include "cellstate.h"
#include "changehistory.h"
#include "controllersimulator.h"
#include "programrunner.h"

#include "kelplugin/messagestream.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QPointer>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace kelcontroller {

namespace {
const QString monitorKey = QStringLiteral("weld_monitor_data");
const QString monitorCommand = QStringLiteral("start_laserweld_monitor");
// The run messages kept for pendants that poll now and then.
constexpr int kRunMessagesKept = 100;
// Requests, and bytes of them, served from one client before the others get their turn: a
// client that sends thousands at once must not hold the event loop for all of them.
constexpr int kRequestsPerTurn = 4;
constexpr int kBytesPerTurn = 256 * 1024;
// The change history in one answer: the newest entries (or CSV lines) that fit, with room for
// the escaping of a JSON string within the pendant's 16 MiB.
constexpr qint64 kHistoryBytes = 6 * 1024 * 1024;
static_assert(kHistoryBytes * 2 + 4096 < kelplugin::MessageStream::maxMessageBytes,
    "the history must fit a pendant's answer");
// What waits in a client's socket unread; beyond it TCP slows the sender down.
constexpr qint64 kSocketBufferBytes = 256 * 1024;

QJsonArray strings(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

// Equal keys take the same time to compare whatever their first difference.
bool sameKey(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size() || a.isEmpty())
        return false;
    unsigned char diff = 0;
    for (int i = 0; i < a.size(); ++i)
        diff |= static_cast<unsigned char>(a.at(i) ^ b.at(i));
    return diff == 0;
}
} // namespace

struct ControllerServer::Session
{
    explicit Session(QTcpSocket *s) : socket(s), stream(s, ControllerServer::maxHelloBytes) { }
    QPointer<QTcpSocket> socket;
    kelplugin::MessageStream stream;
    QString address;
    int number = 0;
    QString name; // as the history and the log name it: what it calls itself, its address
    bool admitted = false;
    bool closing = false;
};

ControllerServer::ControllerServer(
    ControllerSimulator *controller, const QByteArray &key, QObject *parent)
    : QObject(parent), m_controller(controller), m_key(key), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, &ControllerServer::accept);
    connect(controller->runner(), &ProgramRunner::message, this,
        [this](int level, const QString &text, int line) {
            m_runMessages.append({{QStringLiteral("n"), ++m_runMessageCount},
                {QStringLiteral("level"), level}, {QStringLiteral("text"), text},
                {QStringLiteral("line"), line}, {QStringLiteral("client"), m_runOwner}});
            if (m_runMessages.size() > kRunMessagesKept)
                m_runMessages.removeFirst();
        });
}

ControllerServer::~ControllerServer()
{
    // Closing a socket reports its session gone; that must not reach a half-destroyed server.
    for (QTcpSocket *socket : m_sessions.keys()) {
        socket->disconnect(this);
        socket->abort();
    }
}

bool ControllerServer::listen(const QHostAddress &address, quint16 port)
{
    return m_server->listen(address, port);
}

quint16 ControllerServer::port() const
{
    return m_server->serverPort();
}

QString ControllerServer::errorString() const
{
    return m_server->errorString();
}

QByteArray ControllerServer::cellKey(const QString &dataDir, QString *error)
{
    const QString path = QDir(dataDir).filePath(keyFileName());
    QFile existing(path);
    if (existing.exists()) {
        if (!existing.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("cannot read %1: %2").arg(path, existing.errorString());
            return {};
        }
        const QByteArray key = existing.readLine(4096).trimmed();
        if (key.isEmpty())
            *error = QStringLiteral("%1 holds no key; delete it to make a new one").arg(path);
        return key;
    }
    QByteArray random(32, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(
        reinterpret_cast<quint32 *>(random.data()), random.size() / int(sizeof(quint32)));
    const QByteArray key = random.toHex();
    QDir().mkpath(dataDir);
    QSaveFile file(path);
    // Unbuffered, as every file of the controller: see RecordStore::write.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        || file.write(key + '\n') != key.size() + 1 || !file.commit()) {
        *error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return {};
    }
    return key;
}

void ControllerServer::accept()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        socket->setReadBufferSize(kSocketBufferBytes);
        auto session = std::make_shared<Session>(socket);
        session->number = ++m_clientNumber;
        session->address
            = QStringLiteral("%1:%2").arg(socket->peerAddress().toString()).arg(socket->peerPort());
        session->name
            = QStringLiteral("client #%1 (%2)").arg(session->number).arg(session->address);
        // Places are counted when a key is presented; until then a connection waits here.
        if (count(false) >= maxWaiting) {
            Session *oldest = nullptr;
            for (const auto &other : qAsConst(m_sessions)) {
                if (!other->admitted && !other->closing
                    && (!oldest || other->number < oldest->number))
                    oldest = other.get();
            }
            refuse(oldest, QJsonValue(),
                QStringLiteral("no key presented yet, closed to make room for a newer connection"),
                true);
        }
        m_sessions.insert(socket, session);
        emit logLine(QStringLiteral("%1 connected").arg(session->name));
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { drop(socket); });
        QTimer::singleShot(helloTimeoutMs, socket, [this, socket] {
            const auto waiting = m_sessions.value(socket);
            if (waiting && !waiting->admitted && !waiting->closing)
                refuse(waiting.get(), QJsonValue(),
                    QStringLiteral("no key presented within %1 s").arg(helloTimeoutMs / 1000),
                    true);
        });
    }
}

int ControllerServer::count(bool admitted) const
{
    int n = 0;
    for (const auto &session : m_sessions)
        n += session->admitted == admitted && !session->closing;
    return n;
}

void ControllerServer::drop(QTcpSocket *socket)
{
    const auto session = m_sessions.take(socket);
    socket->deleteLater();
    if (!session)
        return;
    emit logLine(QStringLiteral("%1 disconnected").arg(session->name));
    // A pendant that went away reads no stream any more.
    releaseMonitor(session.get());
}

void ControllerServer::read(QTcpSocket *socket)
{
    const auto session = m_sessions.value(socket);
    if (!session)
        return;
    int bytes = 0;
    for (int served = 0; !session->closing; ++served) {
        if (served == kRequestsPerTurn || bytes >= kBytesPerTurn) {
            QTimer::singleShot(0, socket, [this, socket] { read(socket); });
            return;
        }
        QJsonObject message;
        const auto status = session->stream.next(&message);
        if (status == kelplugin::MessageStream::Status::Pending)
            return;
        if (status != kelplugin::MessageStream::Status::Message) {
            refuse(
                session.get(), message.value(QLatin1String("id")), session->stream.error(), true);
            break;
        }
        bytes += session->stream.lastLineBytes();
        handle(session.get(), message);
    }
    if (socket->isOpen())
        socket->readAll(); // whatever follows an error is not read
}

void ControllerServer::handle(Session *session, const QJsonObject &message)
{
    const QString op = message.value(QLatin1String("op")).toString();
    const QJsonValue id = message.value(QLatin1String("id"));
    if (!session->admitted) {
        if (op == QLatin1String("hello"))
            hello(session, message);
        else
            refuse(
                session, id, QStringLiteral("present the cell's key first (op \"hello\")"), true);
        return;
    }
    QString error;
    m_controller->setClientName(session->name);
    m_controller->setUserLevel(message.value(QLatin1String("level")).toInt(0));
    const QJsonValue result = serve(session, op, message, &error);
    m_controller->setClientName(QString());
    if (!error.isEmpty()) {
        refuse(session, id, error, false);
        return;
    }
    QJsonObject reply {{QStringLiteral("id"), id}, {QStringLiteral("ok"), true}};
    if (!result.isUndefined())
        reply.insert(QStringLiteral("result"), result);
    answer(session, reply);
}

void ControllerServer::hello(Session *session, const QJsonObject &message)
{
    const QJsonValue id = message.value(QLatin1String("id"));
    if (!sameKey(message.value(QLatin1String("key")).toString().toLatin1(), m_key)) {
        emit logLine(QStringLiteral("%1 refused: wrong or missing cell key").arg(session->name));
        refuse(session, id, QStringLiteral("wrong or missing cell key"), true);
        return;
    }
    const QString client = message.value(QLatin1String("client")).toString().left(64);
    if (!client.isEmpty())
        session->name
            = QStringLiteral("%1 #%2 (%3)").arg(client).arg(session->number).arg(session->address);
    if (count(true) >= maxClients) {
        refuse(session, id, QStringLiteral("too many clients (%1 at most)").arg(maxClients), true);
        return;
    }
    session->admitted = true;
    session->stream.setMaxMessageBytes(maxRequestBytes);
    emit logLine(QStringLiteral("%1 admitted").arg(session->name));
    answer(session,
        {{QStringLiteral("id"), id}, {QStringLiteral("ok"), true},
            {QStringLiteral("result"),
                QJsonObject {{QStringLiteral("controller"), QStringLiteral("kelcontroller")},
                    {QStringLiteral("client"), session->name},
                    {QStringLiteral("data_file"), m_controller->dataFilePath()},
                    {QStringLiteral("problems"),
                        QJsonArray::fromStringList(m_controller->storageProblems())}}}});
}

QJsonValue ControllerServer::serve(
    Session *session, const QString &op, const QJsonObject &m, QString *error)
{
    const auto text = [&m](const char *key) { return m.value(QLatin1String(key)).toString(); };
    const int level = m.value(QLatin1String("level")).toInt(0);
    ControllerSimulator *c = m_controller;
    ProgramRunner *runner = c->runner();

    if (op == QLatin1String("ping"))
        return true;
    if (op == QLatin1String("command")) {
        if (!m.value(QLatin1String("command")).isObject()) {
            *error = QStringLiteral("\"command\" must be an object");
            return {};
        }
        return command(session, text("plugin"), m.value(QLatin1String("command")).toObject());
    }
    if (op == QLatin1String("command_text"))
        return command(session, text("plugin"), {{text("name"), text("value")}});
    if (op == QLatin1String("service_data"))
        return c->getKelServiceData(text("key"));
    if (op == QLatin1String("release")) {
        if (text("key") == monitorKey && !releaseMonitor(session))
            return true; // another pendant still reads it
        return c->disconnectKelServiceData(text("plugin"), text("key"), text("third"));
    }
    if (op == QLatin1String("robot_power"))
        return c->getRobotEleStatus();
    if (op == QLatin1String("io_by_type"))
        return strings(c->getIOByType(text("type")));
    if (op == QLatin1String("register_hash")) {
        QJsonObject out;
        const auto registers = c->getRegisterHash();
        for (auto it = registers.cbegin(); it != registers.cend(); ++it)
            out.insert(it.key(), strings(it.value()));
        return out;
    }
    if (op == QLatin1String("point_names"))
        return strings(c->getPointNameList());
    if (op == QLatin1String("add_point")) {
        if (level < changeLevel) {
            emit logLine(QStringLiteral("%1 at user level %2: add_point refused")
                             .arg(session->name)
                             .arg(level));
            return false;
        }
        return c->addCurrentPoint(
            text("name"), m.value(QLatin1String("overwrite")).toBool(), text("tool"), text("wobj"));
    }
    if (op == QLatin1String("zones"))
        return strings(c->getZoneList());
    if (op == QLatin1String("speeds"))
        return strings(c->getSpeedList());
    if (op == QLatin1String("wobjs"))
        return strings(c->getWobjList());
    if (op == QLatin1String("tools"))
        return strings(c->getToolList());
    if (op == QLatin1String("current_wobj"))
        return c->getCurWobj();
    if (op == QLatin1String("current_tool"))
        return c->getCurTool();

    // The cell around the controller, for the pendant's panel.
    if (op == QLatin1String("cell_state")) {
        QJsonObject state
            = cellState(qint64(m.value(QLatin1String("since")).toDouble(0))).toObject();
        // Storage problems since the pendant last asked (a history entry the disk did not take):
        // told to every pendant, as the run messages are.
        const QStringList problems = c->storageProblems();
        const int first = c->storageProblemCount() - problems.size() + 1;
        const int since = m.value(QLatin1String("problems_since")).toInt(0);
        QJsonArray told;
        for (int i = std::max(0, since + 1 - first); i < problems.size(); ++i)
            told.append(problems.at(i));
        state.insert(QStringLiteral("problems"), told);
        state.insert(QStringLiteral("problem_count"), c->storageProblemCount());
        return state;
    }
    if (op == QLatin1String("set_robot_power")) {
        c->setRobotPowered(m.value(QLatin1String("on")).toBool());
        return true;
    }
    if (op == QLatin1String("inject")) {
        const QString fault = text("fault");
        if (fault == QLatin1String("code"))
            c->injectReturnCode(m.value(QLatin1String("code")).toInt(5));
        else if (fault == QLatin1String("empty"))
            c->injectEmptyReply();
        else if (fault == QLatin1String("malformed"))
            c->injectMalformedElement();
        else
            *error = QStringLiteral("unknown fault \"%1\"").arg(fault);
        return true;
    }
    if (op == QLatin1String("history")) {
        // The newest entries that fit a pendant's answer (and the number asked for), oldest
        // first.
        const auto &all = c->history().entries();
        const int last = m.value(QLatin1String("last")).toInt(0);
        const int oldest = last > 0 ? std::max(0, all.size() - last) : 0;
        int first = all.size();
        qint64 bytes = 0;
        while (
            first > oldest && bytes + ChangeHistory::entryBytes(all.at(first - 1)) <= kHistoryBytes)
            bytes += ChangeHistory::entryBytes(all.at(--first));
        QJsonArray entries;
        for (int i = first; i < all.size(); ++i)
            entries.append(ChangeHistory::toJson(all.at(i)));
        return entries;
    }
    if (op == QLatin1String("history_csv"))
        return QString::fromUtf8(c->history().csv(text("record"), kHistoryBytes));
    if (op == QLatin1String("run") || op == QLatin1String("step")) {
        QStringList lines;
        for (const QJsonValue &line : m.value(QLatin1String("lines")).toArray())
            lines.append(line.toString());
        m_runOwner = session->name;
        return op == QLatin1String("run") ? runner->run(lines, text("program"))
                                          : runner->step(lines, text("program"));
    }
    if (op == QLatin1String("stop")) {
        runner->stop();
        return true;
    }
    if (op == QLatin1String("speed_factor")) {
        runner->setSpeedFactor(m.value(QLatin1String("factor")).toDouble(1.0));
        return true;
    }
    *error = QStringLiteral("unknown operation \"%1\"").arg(op);
    return {};
}

QJsonValue ControllerServer::command(
    Session *session, const QString &pluginKey, const QJsonObject &command)
{
    const QString name = command.isEmpty() ? QString() : command.constBegin().key();
    const int level = m_controller->getUserOperateLevel();
    // Starting and stopping the monitor reads the process; it changes nothing.
    if (name == monitorCommand) {
        if (command.constBegin().value().toBool(false)) {
            m_monitorReaders.insert(session);
        } else if (!releaseMonitor(session)) {
            return QJsonArray {QJsonObject {
                {pluginKey, QJsonObject {{name, QJsonObject {{QStringLiteral("return"), 0}}}}}}};
        }
    } else if (level < changeLevel) {
        emit logLine(QStringLiteral("%1 at user level %2: %3 refused")
                         .arg(session->name)
                         .arg(level)
                         .arg(name));
        return QJsonArray {QJsonObject {{pluginKey,
            QJsonObject {{name,
                QJsonObject {{QStringLiteral("return"), ControllerSimulator::Refused},
                    {QStringLiteral("message"),
                        QStringLiteral("user level %1 may not change the equipment")
                            .arg(level)}}}}}}};
    }
    return m_controller->commandCustomData(nullptr, pluginKey, command);
}

bool ControllerServer::releaseMonitor(Session *session)
{
    const bool wasReader = m_monitorReaders.remove(session);
    if (!m_monitorReaders.isEmpty())
        return false;
    if (wasReader && m_controller->isMonitorRunning())
        m_controller->disconnectKelServiceData(QString(), monitorKey, QString());
    return true;
}

QJsonValue ControllerServer::cellState(qint64 since) const
{
    QJsonObject state = CellState::of(*m_controller).toJson();
    QJsonArray messages;
    for (const QJsonObject &message : m_runMessages) {
        if (message.value(QLatin1String("n")).toDouble() > double(since))
            messages.append(message);
    }
    state.insert(QStringLiteral("messages"), messages);
    state.insert(QStringLiteral("message_count"), double(m_runMessageCount));
    return state;
}

void ControllerServer::answer(Session *session, QJsonObject reply, bool now)
{
    QPointer<QTcpSocket> socket = session->socket;
    if (!socket)
        return;
    const QByteArray line = kelplugin::MessageStream::encode(std::move(reply));
    if (now || m_replyDelayMs <= 0) {
        write(socket, line);
        return;
    }
    QTimer::singleShot(m_replyDelayMs, socket, [this, socket, line] { write(socket, line); });
}

void ControllerServer::write(QTcpSocket *socket, const QByteArray &line)
{
    socket->write(line);
    if (socket->bytesToWrite() <= maxUnreadBytes)
        return;
    const auto session = m_sessions.value(socket);
    emit logLine(QStringLiteral("%1: does not read its replies (%2 bytes waiting), connection "
                                "closed")
                     .arg(session ? session->name : QStringLiteral("client"))
                     .arg(socket->bytesToWrite()));
    if (session)
        session->closing = true;
    // Its replies are dropped: waiting to hand them over is what it stops us doing.
    socket->abort();
}

void ControllerServer::refuse(
    Session *session, const QJsonValue &id, const QString &error, bool close)
{
    emit logLine(
        QStringLiteral("%1: %2%3")
            .arg(session->name, error, close ? QStringLiteral(", connection closed") : QString()));
    answer(session,
        {{QStringLiteral("id"), id.isUndefined() ? QJsonValue() : id},
            {QStringLiteral("ok"), false}, {QStringLiteral("error"), error}},
        close);
    if (close && session->socket) {
        session->closing = true;
        session->socket->disconnectFromHost();
    }
}

} // namespace kelcontroller
