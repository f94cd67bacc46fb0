#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"
#include "support/testenvironment.h"

#include <QtTest>

using kelcontroller::ControllerSimulator;
using kelcontroller::FactoryRecords;

// Rules of the simulated controller that the pages, the keys and the soak lean on. Each row
// takes a fresh controller through a few steps, judges the code of the last request and then
// one probe: the wire feeder, the assist gas, or a service key.
class TestSimulatorRules : public QObject
{
    Q_OBJECT

private slots:
    void lastRequest_data()
    {
        // Steps are requests, or one of {"powered": on}, {"restart": true}, {"wait": ms},
        // {"inject": code, "empty" or "malformed"} for the next request.
        QTest::addColumn<QJsonArray>("steps");
        QTest::addColumn<QJsonValue>("code");
        QTest::addColumn<QString>("probe"); // "feeder", "gas" or a service key
        QTest::addColumn<QJsonValue>("expected");

        const QJsonValue idle = int(ControllerSimulator::Feeder::Idle);
        const QJsonValue none(QJsonValue::Undefined);
        QJsonArray tenNodes;
        for (int i = 0; i < 10; ++i)
            tenNodes.append(QJsonArray {i, 10 * i});
        const QJsonObject enable {{"set_weld_enable", "TRUE"}};
        const QJsonObject feed {{"set_weld_feed_wire", true}};
        const QJsonObject gas {{"set_weld_manual_gas", true}};
        const QJsonObject light {{"set_weld_red_light", true}};
        const QJsonObject powered {{"powered", true}};
        const auto io = [](const QJsonObject &changes) {
            return QJsonObject {
                {"set_weld_io_config", testenv::patched(FactoryRecords::ioConfig(), changes)}};
        };
        const auto settings = [](const QJsonObject &changes) {
            return QJsonObject {{"set_weld_setting_config",
                testenv::patched(FactoryRecords::settingConfig(), changes)}};
        };
        const QString armed = QStringLiteral("weld_setting_config.laser_main_enable");
        const QString virtualMode = QStringLiteral("laser_weld_data.virtual_welding_status");
        const QString redLight = QStringLiteral("laser_weld_data.weld_redlight_status");

        QTest::newRow("ten curve nodes") << QJsonArray {QJsonObject {{"set_weld_curve_power_config",
            QJsonObject {{"laser_power_node", 10}, {"power_nodes_data", tenNodes}}}}}
                                         << QJsonValue(0) << "feeder" << idle;
        QTest::newRow("zero-padded port") << QJsonArray {io({{"laser_enable_port", "DO01"}})}
                                          << QJsonValue(2) << "feeder" << idle;
        QTest::newRow("stopping the retract leaves the feed running")
            << QJsonArray {feed, QJsonObject {{"set_weld_retract_wire", false}}} << QJsonValue(0)
            << "feeder" << QJsonValue(int(ControllerSimulator::Feeder::Feeding));
        QTest::newRow("retract") << QJsonArray {QJsonObject {{"set_weld_retract_wire", true}}}
                                 << QJsonValue(0) << "feeder"
                                 << QJsonValue(int(ControllerSimulator::Feeder::Retracting));
        QTest::newRow("no wire by hand while welding")
            << QJsonArray {enable, feed} << QJsonValue(3) << "feeder" << idle;
        // Releasing a wire key must always stop the wire.
        QTest::newRow("a release is taken while welding")
            << QJsonArray {enable, QJsonObject {{"set_weld_retract_wire", false}}} << QJsonValue(0)
            << "feeder" << idle;
        QTest::newRow("no wire with the feeder disabled")
            << QJsonArray {settings({{"feeder_enable", false}}), feed} << QJsonValue(4) << "feeder"
            << idle;
        QTest::newRow("wire switch not a boolean")
            << QJsonArray {QJsonObject {{"set_weld_feed_wire", "yes"}}} << QJsonValue(2) << "feeder"
            << idle;
        QTest::newRow("gas opens")
            << QJsonArray {gas} << QJsonValue(0) << "gas" << QJsonValue(true);
        QTest::newRow("gas closes after its purge time")
            << QJsonArray {settings({{"manual_gas_time", 1000}}), gas, QJsonObject {{"wait", 1500}}}
            << QJsonValue(0) << "gas" << QJsonValue(false);
        QTest::newRow("no gas without a gas port") << QJsonArray {io({{"gas_protect_port", ""}}),
            gas} << QJsonValue(4) << "gas" << QJsonValue(false);
        QTest::newRow("I/O assignment locked while welding")
            << QJsonArray {enable, io({})} << QJsonValue(3) << "feeder" << idle;
        QTest::newRow("work mode locked while powered")
            << QJsonArray {powered, QJsonObject {{"set_virtual_welding", true}}} << QJsonValue(3)
            << virtualMode << QJsonValue(false);
        QTest::newRow("two commands in one request")
            << QJsonArray {QJsonObject {{"set_weld_red_light", true}, {"set_weld_feed_wire", true}}}
            << QJsonValue(2) << "feeder" << idle;
        QTest::newRow("unknown command")
            << QJsonArray {QJsonObject {{"set_weld_teleport", true}}}
            << QJsonValue(ControllerSimulator::UnknownCommand) << redLight << QJsonValue(false);
        QTest::newRow("a member the controller does not keep")
            << QJsonArray {light} << QJsonValue(0) << "laser_weld_data.arc_status" << none;
        // Welding goes on only through set_weld_enable and its exact "TRUE", with a laser
        // enable port, unpowered; the answer is a JSON boolean.
        QTest::newRow("settings cannot arm the laser")
            << QJsonArray {settings({{"laser_main_enable", true}})} << QJsonValue(0) << armed
            << QJsonValue(false);
        QTest::newRow("welding on")
            << QJsonArray {enable} << QJsonValue(true) << armed << QJsonValue(true);
        QTest::newRow("welding on needs a laser enable port")
            << QJsonArray {io({{"laser_enable_port", ""}}), enable} << QJsonValue(false) << armed
            << QJsonValue(false);
        QTest::newRow("welding on while powered")
            << QJsonArray {powered, enable} << QJsonValue(false) << armed << QJsonValue(false);
        QTest::newRow("welding off while powered")
            << QJsonArray {enable, powered, QJsonObject {{"set_weld_enable", "FALSE"}}}
            << QJsonValue(true) << armed << QJsonValue(false);
        QTest::newRow("lower case true") << QJsonArray {QJsonObject {{"set_weld_enable", "true"}}}
                                         << QJsonValue(false) << armed << QJsonValue(false);
        QTest::newRow("a restart disarms the laser")
            << QJsonArray {enable, QJsonObject {{"restart", true}}} << QJsonValue(true) << armed
            << QJsonValue(false);
        // The faults the soak and the pendant's buttons inject, each for one request.
        QTest::newRow("forced return code") << QJsonArray {QJsonObject {{"inject", 7}}, light}
                                            << QJsonValue(7) << redLight << QJsonValue(false);
        QTest::newRow("empty reply") << QJsonArray {QJsonObject {{"inject", "empty"}}, light}
                                     << none << redLight << QJsonValue(true);
        QTest::newRow("malformed reply") << QJsonArray {QJsonObject {{"inject", "malformed"}},
            light} << none << redLight << QJsonValue(true);
        QTest::newRow("a fault is used once")
            << QJsonArray {QJsonObject {{"inject", 7}}, light, light} << QJsonValue(0) << redLight
            << QJsonValue(true);
    }

    void lastRequest()
    {
        QFETCH(QJsonArray, steps);
        QFETCH(QJsonValue, code);
        QFETCH(QString, probe);
        QFETCH(QJsonValue, expected);
        QTemporaryDir dir;
        std::unique_ptr<ControllerSimulator> sim(new ControllerSimulator(dir.path()));

        QJsonValue last;
        for (const QJsonValue &step : steps) {
            const QString command = step.toObject().constBegin().key();
            const QJsonValue value = step.toObject().constBegin().value();
            if (command == QLatin1String("powered"))
                sim->setRobotPowered(value.toBool());
            else if (command == QLatin1String("restart"))
                sim.reset(new ControllerSimulator(dir.path()));
            else if (command == QLatin1String("wait"))
                QTest::qWait(value.toInt());
            else if (command == QLatin1String("inject") && value.isDouble())
                sim->injectReturnCode(value.toInt());
            else if (command == QLatin1String("inject"))
                value == QLatin1String("empty") ? sim->injectEmptyReply()
                                                : sim->injectMalformedElement();
            else
                last = sim->commandCustomData(nullptr, "kellaserweld", step.toObject())
                           .at(0)["kellaserweld"][command]["return"];
        }
        QCOMPARE(last, code);
        QCOMPARE(probe == QLatin1String("feeder") ? QJsonValue(int(sim->feeder()))
                : probe == QLatin1String("gas")   ? QJsonValue(sim->isGasOpen())
                                                  : sim->getKelServiceData(probe),
            expected);
    }
};

QTEST_GUILESS_MAIN(TestSimulatorRules)
#include "tst_simulatorrules.moc"
