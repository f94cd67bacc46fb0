#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QHash>
#include <QHostAddress>
#include <QJsonObject>
#include <QObject>
#include <QSet>
#include <QVector>

#include <memory>

class QTcpServer;
class QTcpSocket;

namespace kelcontroller {

class ControllerSimulator;

// Serves a controller simulator to pendants over the network with the controller protocol:
// one JSON object per line, each request answered in order. A client is served nothing until
// it has presented the cell's key; changes from a client whose user level is below 3 are
// refused here too, whatever the client itself checked.
class KELPLUGIN_EXPORT ControllerServer : public QObject
{
    Q_OBJECT
public:
    // The user level from which a client may change the equipment.
    static constexpr int changeLevel = 3;
    // A cell has a few pendants and tools; a flood of connections is turned away beyond this.
    static constexpr int maxClients = 16;
    // Connections that have not presented the key yet, apart from the clients' places: when
    // they are all taken the oldest makes room, so idle connections cannot keep a pendant out.
    static constexpr int maxWaiting = 8;
    // A connection that has not presented the key by then is closed.
    static constexpr int helloTimeoutMs = 10000;
    // The first message holds a key and a name; a request at most a program or a record.
    // Anything longer is cut off before it is parsed, which would hold up the other clients.
    static constexpr int maxHelloBytes = 4096;
    static constexpr int maxRequestBytes = 1024 * 1024;
    // Replies a client has not read beyond this: it is not reading, and is let go rather than
    // held in the controller's memory.
    static constexpr qint64 maxUnreadBytes = 2 * qint64(16 * 1024 * 1024);

    ControllerServer(
        ControllerSimulator *controller, const QByteArray &key, QObject *parent = nullptr);
    ~ControllerServer() override;

    bool listen(const QHostAddress &address, quint16 port);
    quint16 port() const;
    QString errorString() const;
    int clientCount() const { return m_sessions.size(); }
    // Answers every request this much later (the work is done at once): a slow network, or a
    // controller that dies between doing a command and answering it.
    void setReplyDelay(int ms) { m_replyDelayMs = ms; }

    // The cell's key in dataDir: read, or made at the first start (random, for its owner's
    // eyes only). Empty, with error set, when it can be neither read nor made.
    static QByteArray cellKey(const QString &dataDir, QString *error);
    static QString keyFileName() { return QStringLiteral("kelcontroller.key"); }

signals:
    // What a controller's log holds: clients coming and going, refusals, protocol errors.
    void logLine(const QString &text);

private:
    struct Session;

    void accept();
    void read(QTcpSocket *socket);
    void handle(Session *session, const QJsonObject &message);
    void hello(Session *session, const QJsonObject &message);
    QJsonValue serve(
        Session *session, const QString &op, const QJsonObject &message, QString *error);
    QJsonValue command(Session *session, const QString &pluginKey, const QJsonObject &command);
    QJsonValue cellState(qint64 since) const;
    bool releaseMonitor(Session *session);
    // A reply that closes the connection goes out at once, ahead of the close.
    void answer(Session *session, QJsonObject reply, bool now = false);
    void write(QTcpSocket *socket, const QByteArray &line);
    void refuse(Session *session, const QJsonValue &id, const QString &error, bool close);
    void drop(QTcpSocket *socket);
    int count(bool admitted) const;

    ControllerSimulator *m_controller;
    QByteArray m_key;
    QTcpServer *m_server;
    QHash<QTcpSocket *, std::shared_ptr<Session>> m_sessions;
    QSet<Session *> m_monitorReaders;
    int m_replyDelayMs = 0;
    int m_clientNumber = 0;
    // The run's messages for the pendants to show, numbered so each takes what is new.
    QVector<QJsonObject> m_runMessages;
    qint64 m_runMessageCount = 0;
    QString m_runOwner; // the client that started the run the messages are about
};

} // namespace kelcontroller
