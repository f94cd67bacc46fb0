#pragma once

#include "controllerbackend.h"
#include "messagestream.h"

#include <QElapsedTimer>
#include <QSet>

class QTcpSocket;
class QTimer;

namespace kelplugin {

// A controller reached over the network (a kelcontroller process): every host operation is
// one request of the controller protocol, answered before the call returns, as the plug-ins
// expect. A call the controller does not answer within the timeout fails as a refused or
// "not found" reply would; the backend then reports the controller unreachable once and
// reconnects by itself, and each connection made again emits connectionRestored().
class KELPLUGIN_EXPORT NetworkController : public ControllerBackend
{
    Q_OBJECT
public:
    static constexpr int defaultTimeoutMs = 2000;
    // The "return" code of a command that no controller answered.
    static constexpr int unreachableCode = 6;

    NetworkController(
        const QString &host, quint16 port, const QByteArray &key, QObject *parent = nullptr);
    // "HOST:PORT", "[IPv6]:PORT"; false for anything else or a port outside 1..65535.
    static bool parseAddress(const QString &text, QString *host, quint16 *port);
    ~NetworkController() override;

    // Starts connecting, and reconnecting whenever the connection drops.
    void connectToController();
    // Drops the connection and stops reconnecting.
    void disconnectFromController();
    bool isReachable() const { return m_reachable; }
    QString address() const;
    // The last request's round trip; negative before the first.
    double roundTripMs() const { return m_roundTripMs; }
    // What the controller said of itself when the connection was made ("data_file", ...).
    QJsonObject controllerInfo() const { return m_info; }

    void setClientName(const QString &name) { m_clientName = name; }
    void setTimeout(int ms) { m_timeoutMs = ms; }
    void setReconnectDelays(int firstMs, int maxMs);
    // The pendant's own login; sent with every request so the controller can refuse changes.
    void setUserLevel(int level);

    // One request; the reply's "result", or an undefined value (ok false) when none came.
    QJsonValue request(const QString &op, QJsonObject arguments = {}, bool *ok = nullptr);

    // ControllerBackend
    QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QJsonObject &command) override;
    QJsonArray commandCustomData(QObject *sender, const QString &pluginKey, const QString &command,
        const QString &value) override;
    QJsonValue getKelServiceData(const QString &key) override;
    bool disconnectKelServiceData(
        const QString &pluginKey, const QString &key, const QString &third) override;
    int getUserOperateLevel() override { return m_userLevel; }
    bool getRobotEleStatus() override;
    QStringList getIOByType(const QString &type) override;
    QHash<QString, QStringList> getRegisterHash() override;
    QStringList getPointNameList() override;
    bool addCurrentPoint(
        const QString &name, bool overwrite, const QString &tool, const QString &wobj) override;
    QStringList getZoneList() override;
    QStringList getSpeedList() override;
    QStringList getWobjList() override;
    QStringList getToolList() override;
    QString getCurWobj() override;
    QString getCurTool() override;

signals:
    void reachabilityChanged(bool reachable);
    // Said once per loss, not once per failed call.
    void problem(const QString &text);
    void userLevelChanged(int level);
    // Every command as sent and answered, for the pendant's traffic view.
    void commandHandled(const QString &command, const QJsonValue &payload, const QJsonArray &reply);

private:
    void tryConnect();
    void handshake();
    void readHello();
    void lose(const QString &why);
    void scheduleRetry();
    QJsonObject exchange(QJsonObject message);
    QJsonArray sendCommand(const QString &pluginKey, const QJsonObject &command, const char *op,
        const QJsonObject &arguments);
    QStringList stringList(const QString &op, QJsonObject arguments = {});
    QString string(const QString &op);

    QString m_host;
    quint16 m_port;
    QByteArray m_key;
    QString m_clientName;
    QTcpSocket *m_socket;
    MessageStream m_stream;
    QTimer *m_retry;
    QTimer *m_heartbeat;
    QTimer *m_handshakeTimer;
    qint64 m_helloId = 0; // the hello waiting for its answer
    int m_timeoutMs = defaultTimeoutMs;
    int m_firstDelayMs = 250;
    int m_maxDelayMs = 5000;
    int m_delayMs = 250;
    int m_userLevel = 0;
    qint64 m_nextId = 1;
    bool m_wanted = false;
    bool m_reachable = false;
    bool m_lossTold = false;
    double m_roundTripMs = -1.0;
    QJsonObject m_info;
    QSet<QString> m_controllerProblemsTold; // shown once, not on every reconnect
};

} // namespace kelplugin
