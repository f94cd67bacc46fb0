#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using kelcontroller::ControllerSimulator;

// Rules of the simulated controller that the pages and keys lean on. Each row sends a few
// commands to a fresh controller; the last one's code and the wire feeder are judged.
class TestSimulatorRules : public QObject
{
    Q_OBJECT

private slots:
    void lastCommand_data();
    void lastCommand();
};

using Steps = QList<QPair<QString, QJsonValue>>;

void TestSimulatorRules::lastCommand_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("feeder");

    const int idle = int(ControllerSimulator::Feeder::Idle);
    QJsonArray tenNodes;
    for (int i = 0; i < 10; ++i)
        tenNodes.append(QJsonArray {i, 10 * i});
    QTest::newRow("ten curve nodes") << Steps {{"set_weld_curve_power_config",
        QJsonObject {{"laser_power_node", 10}, {"power_nodes_data", tenNodes}}}}
                                     << 0 << idle;
    QJsonObject padded = kelcontroller::FactoryRecords::ioConfig();
    padded.insert("laser_enable_port", "DO01");
    QTest::newRow("zero-padded port") << Steps {{"set_weld_io_config", padded}} << 2 << idle;
    QTest::newRow("stopping the retract leaves the feed running")
        << Steps {{"set_weld_feed_wire", true}, {"set_weld_retract_wire", false}} << 0
        << int(ControllerSimulator::Feeder::Feeding);
    QTest::newRow("I/O assignment locked while welding") << Steps {{"set_weld_enable", "TRUE"},
        {"set_weld_io_config", kelcontroller::FactoryRecords::ioConfig()}}
                                                         << 3 << idle;
}

void TestSimulatorRules::lastCommand()
{
    QFETCH(Steps, steps);
    QFETCH(int, code);
    QFETCH(int, feeder);
    QTemporaryDir dir;
    ControllerSimulator sim(dir.path());

    QJsonValue last;
    for (const auto &step : steps) {
        const QJsonArray reply = sim.commandCustomData(
            nullptr, "kellaserweld", QJsonObject {{step.first, step.second}});
        last = reply.at(0)["kellaserweld"][step.first]["return"];
    }

    QCOMPARE(last, QJsonValue(code));
    QCOMPARE(int(sim.feeder()), feeder);
}

QTEST_GUILESS_MAIN(TestSimulatorRules)
#include "tst_simulatorrules.moc"
