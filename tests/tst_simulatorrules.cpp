#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"
#include "support/testenvironment.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using kelcontroller::ControllerSimulator;
using kelcontroller::FactoryRecords;

// Rules of the simulated controller that the pages and keys lean on. Each row sends a few
// requests to a fresh controller; the last one's code is judged, and then one probe: the
// wire feeder, or a service key, read from the running controller or one started afresh.
class TestSimulatorRules : public QObject
{
    Q_OBJECT

private slots:
    void lastRequest_data()
    {
        QTest::addColumn<QJsonArray>("requests");
        QTest::addColumn<QJsonValue>("code");
        QTest::addColumn<bool>("restart");
        QTest::addColumn<QString>("probe"); // "feeder" or a service key
        QTest::addColumn<QJsonValue>("expected");

        const QJsonValue idle = int(ControllerSimulator::Feeder::Idle);
        QJsonArray tenNodes;
        for (int i = 0; i < 10; ++i)
            tenNodes.append(QJsonArray {i, 10 * i});
        const QJsonObject enable {{"set_weld_enable", "TRUE"}};
        const QString armed = QStringLiteral("weld_setting_config.laser_main_enable");

        QTest::newRow("ten curve nodes") << QJsonArray {QJsonObject {{"set_weld_curve_power_config",
            QJsonObject {{"laser_power_node", 10}, {"power_nodes_data", tenNodes}}}}}
                                         << QJsonValue(0) << false << "feeder" << idle;
        QTest::newRow("zero-padded port") << QJsonArray {QJsonObject {{"set_weld_io_config",
            testenv::patched(FactoryRecords::ioConfig(), {{"laser_enable_port", "DO01"}})}}}
                                          << QJsonValue(2) << false << "feeder" << idle;
        QTest::newRow("stopping the retract leaves the feed running")
            << QJsonArray {QJsonObject {{"set_weld_feed_wire", true}},
                   QJsonObject {{"set_weld_retract_wire", false}}}
            << QJsonValue(0) << false << "feeder"
            << QJsonValue(int(ControllerSimulator::Feeder::Feeding));
        QTest::newRow("I/O assignment locked while welding")
            << QJsonArray {enable, QJsonObject {{"set_weld_io_config", FactoryRecords::ioConfig()}}}
            << QJsonValue(3) << false << "feeder" << idle;
        QTest::newRow("two commands in one request")
            << QJsonArray {QJsonObject {{"set_weld_red_light", true}, {"set_weld_feed_wire", true}}}
            << QJsonValue(2) << false << "feeder" << idle;
        QTest::newRow("settings cannot arm the laser") << QJsonArray {QJsonObject {
            {"set_weld_setting_config",
                testenv::patched(FactoryRecords::settingConfig(), {{"laser_main_enable", true}})}}}
                                                       << QJsonValue(0) << false << armed
                                                       << QJsonValue(false);
        QTest::newRow("a restart disarms the laser")
            << QJsonArray {enable} << QJsonValue(true) << true << armed << QJsonValue(false);
    }

    void lastRequest()
    {
        QFETCH(QJsonArray, requests);
        QFETCH(QJsonValue, code);
        QFETCH(bool, restart);
        QFETCH(QString, probe);
        QFETCH(QJsonValue, expected);
        QTemporaryDir dir;
        std::unique_ptr<ControllerSimulator> sim(new ControllerSimulator(dir.path()));

        QJsonValue last;
        for (const QJsonValue &request : requests) {
            const QString command = request.toObject().constBegin().key();
            last = sim->commandCustomData(nullptr, "kellaserweld", request.toObject())
                       .at(0)["kellaserweld"][command]["return"];
        }
        QCOMPARE(last, code);

        if (restart)
            sim.reset(new ControllerSimulator(dir.path()));
        QCOMPARE(probe == QLatin1String("feeder") ? QJsonValue(int(sim->feeder()))
                                                  : sim->getKelServiceData(probe),
            expected);
    }
};

QTEST_GUILESS_MAIN(TestSimulatorRules)
#include "tst_simulatorrules.moc"
