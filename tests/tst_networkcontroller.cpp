#include "celllink.h"
#include "messagelist.h"
#include "pendantwindow.h"
#include "remotecell.h"

#include "controller/controllerserver.h"
#include "controller/controllersimulator.h"
#include "kelplugin/interfacemanager.h"
#include "kelplugin/messagestream.h"
#include "kelplugin/networkcontroller.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <signal.h>
#include <thread>
#include <vector>

using kelplugin::MessageStream;
using kelplugin::NetworkController;

namespace {

const QString plugin = QStringLiteral("kellaserweld");

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

// A kelcontroller process on the loopback address.
struct Controller
{
    explicit Controller(const QString &dataDir) : dir(dataDir) { }
    ~Controller() { kill(); }
    bool start(quint16 onPort, const QStringList &extra = {})
    {
        port = onPort;
        process.setStandardErrorFile(QProcess::nullDevice()); // its log is in dataDir
        process.start(qEnvironmentVariable("KEL_CONTROLLER"),
            QStringList {QStringLiteral("--data-dir"), dir, QStringLiteral("--listen"),
                QStringLiteral("127.0.0.1:%1").arg(port)}
                + extra);
        for (int i = 0; i < 100; ++i) {
            QTcpSocket probe;
            probe.connectToHost(QHostAddress::LocalHost, port);
            if (probe.waitForConnected(100))
                return true;
            QTest::qWait(20);
        }
        return false;
    }
    void kill()
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished();
    }
    QByteArray key() const
    {
        QFile file(dir + QStringLiteral("/kelcontroller.key"));
        file.open(QIODevice::ReadOnly);
        return file.readLine().trimmed();
    }

    QString dir;
    quint16 port = 0;
    QProcess process;
};

// A client that speaks the protocol by hand, to send what a pendant never would.
struct RawClient
{
    explicit RawClient(quint16 port) : stream(&socket)
    {
        socket.connectToHost(QHostAddress::LocalHost, port);
        socket.waitForConnected(2000);
    }
    QJsonObject ask(const QByteArray &line)
    {
        socket.write(line);
        socket.flush();
        QJsonObject reply;
        while (stream.next(&reply) == MessageStream::Status::Pending) {
            if (!socket.waitForReadyRead(3000))
                return {};
        }
        return reply;
    }
    bool closedByPeer()
    {
        return socket.state() == QAbstractSocket::UnconnectedState
            || socket.waitForDisconnected(3000);
    }
    QTcpSocket socket;
    MessageStream stream;
};

QByteArray hello(const QByteArray &key)
{
    return MessageStream::encode({{"id", 1}, {"op", "hello"}, {"key", QString::fromLatin1(key)}});
}

using Operation = std::function<QJsonValue(kelplugin::ControllerBackend &)>;

QJsonValue strings(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestNetworkController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyOperationAnswersAsTheEmbeddedController_data();
    void everyOperationAnswersAsTheEmbeddedController();
    void levelBelowThreeIsRefusedByTheController_data();
    void levelBelowThreeIsRefusedByTheController();
    void withoutTheCellKeyNothingIsServed_data();
    void withoutTheCellKeyNothingIsServed();
    void badMessagesCloseOnlyTheirConnection_data();
    void badMessagesCloseOnlyTheirConnection();
    void aFloodOfClientsIsTurnedAway();
    void aClientThatDoesNotReadIsLetGo();
    void aFloodOfRequestsIsServedInTurn();
    void aLineWithoutEndIsReadOnlyToTheLimit();
    void idleConnectionsMakeRoomForPendants();
    void twoPendantsShareOneController();
    void remoteRunIsRefusedAndMarked();
    void killedMidCommandFailsWithinTheTimeout_data();
    void killedMidCommandFailsWithinTheTimeout();
    void reconnectsAndSaysSoOncePerOutage();
    void cleanupTestCase();

private:
    QTemporaryDir m_remoteData;
    QTemporaryDir m_localData;
    Controller *m_controller = nullptr;
    NetworkController *m_net = nullptr;
    kelcontroller::ControllerSimulator *m_local = nullptr;
};

void TestNetworkController::initTestCase()
{
    m_controller = new Controller(m_remoteData.path());
    QVERIFY(m_controller->start(freePort()));
    m_net = new NetworkController(
        QStringLiteral("127.0.0.1"), m_controller->port, m_controller->key(), this);
    m_net->setUserLevel(3);
    QSignalSpy up(m_net, &NetworkController::reachabilityChanged);
    m_net->connectToController();
    QVERIFY(up.wait(3000));
    QVERIFY(m_net->isReachable());
    m_local = new kelcontroller::ControllerSimulator(m_localData.path(), this);
    m_local->setUserLevel(3);
}

void TestNetworkController::cleanupTestCase()
{
    delete m_controller;
}

void TestNetworkController::everyOperationAnswersAsTheEmbeddedController_data()
{
    QTest::addColumn<Operation>("operation");
    const auto add = [](const char *name, Operation op) { QTest::newRow(name) << op; };
    using B = kelplugin::ControllerBackend;
    add("command", [](B &b) {
        return b.commandCustomData(nullptr, plugin, QJsonObject {{"set_weld_red_light", true}});
    });
    add("command refused by its checks", [](B &b) {
        return b.commandCustomData(nullptr, plugin, QJsonObject {{"set_weld_io_config", 7}});
    });
    add("command as text",
        [](B &b) { return b.commandCustomData(nullptr, plugin, "set_weld_enable", "FALSE"); });
    add("service data",
        [](B &b) { return b.getKelServiceData("laser_weld_data.weld_redlight_status"); });
    add("record", [](B &b) { return b.getKelServiceData("weld_param_config"); });
    add("unknown key",
        [](B &b) { return QJsonValue(b.getKelServiceData("nothing.here").isUndefined()); });
    add("monitor started", [](B &b) {
        return b.commandCustomData(
            nullptr, plugin, QJsonObject {{"start_laserweld_monitor", true}});
    });
    add("stream released", [](B &b) {
        return QJsonValue(b.disconnectKelServiceData(plugin, "weld_monitor_data", ""));
    });
    add("robot power", [](B &b) { return QJsonValue(b.getRobotEleStatus()); });
    add("ports", [](B &b) { return strings(b.getIOByType("GO") + b.getIOByType("AI")); });
    add("registers", [](B &b) { return strings(b.getRegisterHash().value("int")); });
    add("point added",
        [](B &b) { return QJsonValue(b.addCurrentPoint("p99", false, "tool0", "wobj0")); });
    add("points", [](B &b) { return strings(b.getPointNameList()); });
    add("choices", [](B &b) {
        return strings(b.getZoneList() + b.getSpeedList() + b.getWobjList() + b.getToolList());
    });
    add("current", [](B &b) { return QJsonValue(b.getCurWobj() + b.getCurTool()); });
}

void TestNetworkController::everyOperationAnswersAsTheEmbeddedController()
{
    QFETCH(Operation, operation);
    const QJsonValue local = operation(*m_local);
    QCOMPARE(operation(*m_net), local);
}

void TestNetworkController::levelBelowThreeIsRefusedByTheController_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("code");
    QTest::newRow("level 2 changes nothing") << 2 << "set_weld_red_light" << 3;
    QTest::newRow("level 0 changes nothing") << 0 << "set_weld_manual_gas" << 3;
    QTest::newRow("level 2 may watch the process") << 2 << "start_laserweld_monitor" << 0;
    QTest::newRow("level 3 may change") << 3 << "set_weld_red_light" << 0;
}

void TestNetworkController::levelBelowThreeIsRefusedByTheController()
{
    QFETCH(int, level);
    QFETCH(QString, command);
    QFETCH(int, code);
    m_net->setUserLevel(level);
    const bool lightBefore
        = m_net->getKelServiceData("laser_weld_data.weld_redlight_status").toBool();
    const QJsonArray reply
        = m_net->commandCustomData(nullptr, plugin, QJsonObject {{command, !lightBefore}});
    m_net->setUserLevel(3);
    QCOMPARE(reply.at(0)[plugin][command]["return"].toInt(-1), code);
    const bool lightAfter
        = m_net->getKelServiceData("laser_weld_data.weld_redlight_status").toBool();
    QCOMPARE(lightAfter != lightBefore, command == "set_weld_red_light" && code == 0);
    QCOMPARE(m_net->addCurrentPoint("p_level", true, "tool0", "wobj0"), true);
}

void TestNetworkController::withoutTheCellKeyNothingIsServed_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::newRow("wrong key") << hello("0123");
    QTest::newRow("start of the key") << hello(m_controller->key().left(16));
    QTest::newRow("no key") << MessageStream::encode({{"id", 1}, {"op", "hello"}});
    QTest::newRow("command before hello")
        << MessageStream::encode({{"id", 1}, {"op", "command"}, {"level", 5}, {"plugin", plugin},
               {"command", QJsonObject {{"set_weld_manual_gas", true}}}});
    // The right key, but a first message longer than a hello needs is not even parsed.
    QTest::newRow("long hello") << MessageStream::encode({{"id", 1}, {"op", "hello"},
        {"key", QString::fromLatin1(m_controller->key())}, {"client", QString(5000, 'x')}});
}

void TestNetworkController::withoutTheCellKeyNothingIsServed()
{
    QFETCH(QByteArray, first);
    RawClient raw(m_controller->port);
    const QJsonObject reply = raw.ask(first);
    QCOMPARE(reply["ok"].toBool(true), false);
    QVERIFY(!reply["error"].toString().isEmpty());
    QVERIFY(raw.closedByPeer());
    QCOMPARE(m_net->getKelServiceData("weld_setting_config").isObject(), true);
    QVERIFY(!QJsonDocument(m_net->request("cell_state").toObject())
                 .toJson()
                 .contains("\"gas_open\":true"));

    NetworkController wrong("127.0.0.1", m_controller->port, "not-the-key");
    QSignalSpy told(&wrong, &NetworkController::problem);
    wrong.setReconnectDelays(20, 40);
    wrong.connectToController();
    QTest::qWait(300);
    QVERIFY(!wrong.isReachable());
    QCOMPARE(told.count(), 1);
    QVERIFY(wrong.getKelServiceData("weld_io_config").isUndefined());
}

void TestNetworkController::badMessagesCloseOnlyTheirConnection_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("truncated") << QByteArray("{\"v\":1,\"id\":2,\"op\":\"pi\n");
    QTest::newRow("not JSON") << QByteArray("ping please\n");
    QTest::newRow("not an object") << QByteArray("[1,2]\n");
    QTest::newRow("unknown version") << QByteArray("{\"v\":2,\"id\":2,\"op\":\"ping\"}\n");
    QTest::newRow("no version") << QByteArray("{\"id\":2,\"op\":\"ping\"}\n");
    QTest::newRow("a key twice") << QByteArray(
        "{\"v\":1,\"id\":2,\"op\":\"ping\",\"a\":{\"b\":[1],\"b\":[2]}}\n");
    QTest::newRow("a key twice, once escaped")
        << QByteArray("{\"v\":1,\"id\":2,\"op\":\"ping\",\"\\u006fp\":\"ping\"}\n");
    QTest::newRow("64 MiB") << QByteArray(64 * 1024 * 1024, 'x');
    QTest::newRow("a valid request over 1 MiB")
        << MessageStream::encode({{"id", 2}, {"op", "ping"}, {"pad", QString(1024 * 1024, ' ')}});
}

void TestNetworkController::badMessagesCloseOnlyTheirConnection()
{
    QFETCH(QByteArray, message);
    RawClient raw(m_controller->port);
    QCOMPARE(raw.ask(hello(m_controller->key()))["ok"].toBool(), true);
    const QJsonObject reply = raw.ask(message);
    QCOMPARE(reply["ok"].toBool(true), false);
    QVERIFY(raw.closedByPeer());
    bool ok = false;
    QCOMPARE(m_net->request("ping", {}, &ok), QJsonValue(true));
}

void TestNetworkController::aFloodOfClientsIsTurnedAway()
{
    constexpr int most = kelcontroller::ControllerServer::maxClients;
    std::vector<std::unique_ptr<RawClient>> flood;
    const QByteArray key = hello(m_controller->key());
    const QByteArray ping = MessageStream::encode({{"id", 2}, {"op", "ping"}});
    QJsonObject reply;
    for (int i = 0; i < most + 1; ++i) {
        flood.push_back(std::make_unique<RawClient>(m_controller->port));
        if (i > 0) {
            reply = flood.back()->ask(key);
        } else { // a slow sender: the line's end once the rest was read, and a short message
            flood.back()->socket.write(key.chopped(1));
            flood.back()->socket.waitForBytesWritten(1000);
            QTest::qWait(200);
            reply = flood.back()->ask("\n" + ping);
            QCOMPARE(flood.back()->ask({})["result"].toBool(), true);
        }
        if (!reply["ok"].toBool())
            break;
    }
    QVERIFY(reply["error"].toString().startsWith("too many clients"));
    QVERIFY(flood.back()->closedByPeer());
    QVERIFY(flood.size() > 1 && flood.size() <= most);
    bool ok = false;
    QCOMPARE(m_net->request("ping", {}, &ok), QJsonValue(true));
    // Places come free as clients leave.
    flood.clear();
    QTest::qWait(100);
    RawClient later(m_controller->port);
    QCOMPARE(later.ask(key)["ok"].toBool(), true);
}

void TestNetworkController::aClientThatDoesNotReadIsLetGo()
{
    RawClient raw(m_controller->port);
    QCOMPARE(raw.ask(hello(m_controller->key()))["ok"].toBool(), true);
    raw.socket.setReadBufferSize(4096);
    // 20,000 requests of the largest record: about 50 MiB of replies nobody reads.
    const QByteArray read = MessageStream::encode(
        {{"id", 3}, {"op", "service_data"}, {"key", "weld_param_config"}, {"level", 3}});
    for (int i = 0; i < 20000; ++i)
        raw.socket.write(read);
    const auto logged = [this] {
        QFile log(m_controller->dir + QStringLiteral("/kelcontroller.log"));
        return log.open(QIODevice::ReadOnly) && log.readAll().contains("does not read its replies");
    };
    QTRY_VERIFY_WITH_TIMEOUT(logged(), 10000);
    // Served the others all along.
    bool ok = false;
    QCOMPARE(m_net->request("ping", {}, &ok), QJsonValue(true));
}

void TestNetworkController::aFloodOfRequestsIsServedInTurn()
{
    RawClient raw(m_controller->port);
    QCOMPARE(raw.ask(hello(m_controller->key()))["ok"].toBool(), true);
    const QByteArray ping = MessageStream::encode({{"id", 2}, {"op", "ping"}});
    constexpr int flood = 64 * 1024 * 1024;
    raw.socket.write(ping.repeated(flood / ping.size()));
    QTest::qWait(300);
    // The controller reads no faster than it serves: what it has not served waits in the
    // sender's buffers, not in the controller's memory.
    QVERIFY(raw.socket.bytesToWrite() > flood / 2);
    // The others are answered meanwhile, and so is the flood.
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        QCOMPARE(m_net->request("ping", {}, &ok), QJsonValue(true));
    }
    QCOMPARE(raw.ask({})["result"].toBool(), true);
}

void TestNetworkController::aLineWithoutEndIsReadOnlyToTheLimit()
{
    QByteArray bytes(64 * 1024, 'x');
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    MessageStream stream(&device, 4096);
    QJsonObject message;
    QCOMPARE(stream.next(&message), MessageStream::Status::Oversized);
    QCOMPARE(device.pos(), 4097);
}

void TestNetworkController::idleConnectionsMakeRoomForPendants()
{
    // More idle connections than there are places for clients.
    std::vector<std::unique_ptr<RawClient>> idle;
    for (int i = 0; i < kelcontroller::ControllerServer::maxClients + 2; ++i)
        idle.push_back(std::make_unique<RawClient>(m_controller->port));
    RawClient pendant(m_controller->port);
    QCOMPARE(pendant.ask(hello(m_controller->key()))["ok"].toBool(), true);
    // The oldest idle ones went; the newest still wait for their key.
    QVERIFY(idle.front()->closedByPeer());
    QVERIFY(!idle.back()->socket.waitForDisconnected(100));
    QCOMPARE(idle.back()->ask(hello(m_controller->key()))["ok"].toBool(), true);
}

void TestNetworkController::twoPendantsShareOneController()
{
    NetworkController other("127.0.0.1", m_controller->port, m_controller->key());
    other.setClientName("second pendant");
    other.setUserLevel(3);
    QSignalSpy up(&other, &NetworkController::connectionRestored);
    other.connectToController();
    QVERIFY(up.wait(3000));

    QJsonObject settings = m_net->getKelServiceData("weld_setting_config").toObject();
    settings["feedback_delay"] = settings["feedback_delay"].toInt() + 7;
    const QJsonArray saved = other.commandCustomData(
        nullptr, plugin, QJsonObject {{"set_weld_setting_config", settings}});
    QCOMPARE(saved.at(0)[plugin]["set_weld_setting_config"]["return"].toInt(-1), 0);
    QCOMPARE(m_net->getKelServiceData("weld_setting_config").toObject(), settings);
    const QJsonArray history = m_net->request("history").toArray();
    QVERIFY(history.last()["client"].toString().startsWith("second pendant"));

    // The stream ends when its last reader lets go, not its first.
    for (NetworkController *pendant : {m_net, &other})
        pendant->commandCustomData(
            nullptr, plugin, QJsonObject {{"start_laserweld_monitor", true}});
    other.disconnectKelServiceData(plugin, "weld_monitor_data", "");
    QVERIFY(m_net->getKelServiceData("weld_monitor_data").isObject());
    other.commandCustomData(nullptr, plugin, QJsonObject {{"start_laserweld_monitor", true}});
    other.disconnectFromController(); // a pendant that goes away reads no more
    m_net->disconnectKelServiceData(plugin, "weld_monitor_data", "");
    QVERIFY(m_net->getKelServiceData("weld_monitor_data").isUndefined());
}

void TestNetworkController::remoteRunIsRefusedAndMarked()
{
    RemoteCell cell(m_net);
    cell.poll();
    QSignalSpy messages(&cell, &CellLink::runMessage);
    cell.setRobotPowered(false);
    QCOMPARE(cell.run({"LsMoveL(p10, v100, fine, tool0, wobj0);"}, "seam"), false);
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first().at(0).toInt(), 1);
    QCOMPARE(messages.first().at(2).toInt(), 0);
    QCOMPARE(cell.state().run, kelcontroller::ProgramRunner::State::Idle);
    QVERIFY(cell.linkText().contains(QString::number(m_controller->port)));
}

void TestNetworkController::killedMidCommandFailsWithinTheTimeout_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("killed") << int(SIGKILL);
    QTest::newRow("hung") << int(SIGSTOP);
}

void TestNetworkController::killedMidCommandFailsWithinTheTimeout()
{
    QFETCH(int, signal);
    QTemporaryDir data;
    Controller slow(data.path());
    QVERIFY(slow.start(freePort(), {"--reply-delay", "1000"}));
    NetworkController net("127.0.0.1", slow.port, slow.key());
    net.setUserLevel(3);
    QSignalSpy up(&net, &NetworkController::connectionRestored);
    QSignalSpy told(&net, &NetworkController::problem);
    net.connectToController();
    QVERIFY(up.wait(4000));
    QJsonObject io = net.getKelServiceData("weld_io_config").toObject();
    QVERIFY(!io.isEmpty());

    const qint64 pid = slow.process.processId();
    std::thread killer([pid, signal] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ::kill(pid_t(pid), signal);
    });
    QElapsedTimer clock;
    clock.start();
    const QJsonArray reply
        = net.commandCustomData(nullptr, plugin, QJsonObject {{"set_weld_io_config", io}});
    killer.join();
    QVERIFY(clock.elapsed() < 2500); // the operator waits at most 2 s, and a little
    QCOMPARE(reply.at(0)[plugin]["set_weld_io_config"]["return"].toInt(),
        NetworkController::unreachableCode);
    QCOMPARE(told.count(), 1);
    clock.restart();
    QVERIFY(net.getKelServiceData("weld_io_config").isUndefined());
    QVERIFY(clock.elapsed() < 50); // known down: no wait per call
    QCOMPARE(told.count(), 1);

    QFile file(data.filePath("kelcontroller.json"));
    if (file.open(QIODevice::ReadOnly)) // written whole or not at all
        QVERIFY(QJsonDocument::fromJson(file.readAll()).isObject());
    slow.kill();
}

void TestNetworkController::reconnectsAndSaysSoOncePerOutage()
{
    QTemporaryDir data;
    Controller controller(data.path());
    QVERIFY(controller.start(freePort()));
    NetworkController net("127.0.0.1", controller.port, controller.key());
    net.setReconnectDelays(20, 100);
    kelplugin::setControllerBackend(&net);
    QSignalSpy restored(
        &kelplugin::kelPluginInterface(), &kelplugin::InterfaceManager::sigNetworkConnect);
    // The pendant's own window follows the link; showing its state must not change it.
    RemoteCell cell(&net);
    PendantWindow window(&cell);
    auto *link = window.findChild<QLabel *>("controllerLink");
    const auto errors = [&window] {
        return window.messageList()->findItems("not reachable", Qt::MatchContains, 3).count();
    };
    cell.setConnected(true);
    QTRY_COMPARE_WITH_TIMEOUT(restored.count(), 1, 3000);

    for (int outage = 1; outage <= 2; ++outage) {
        controller.kill();
        QTRY_VERIFY_WITH_TIMEOUT(link->text().contains("not reachable"), 3000);
        QTest::qWait(400); // several attempts fail meanwhile
        QCOMPARE(errors(), outage);
        QCOMPARE(restored.count(), outage);
        QVERIFY(controller.start(controller.port));
        QTRY_COMPARE_WITH_TIMEOUT(restored.count(), outage + 1, 3000);
        QTest::qWait(200);
        QCOMPARE(restored.count(), outage + 1);
        QTRY_VERIFY(link->text().contains("round trip"));
        QCOMPARE(net.getKelServiceData("weld_io_config").isObject(), true);
    }
    kelplugin::setControllerBackend(nullptr);
}

QTEST_MAIN(TestNetworkController)
#include "tst_networkcontroller.moc"
