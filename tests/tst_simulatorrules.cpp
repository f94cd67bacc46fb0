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

        const auto row = [](const char *name, const QJsonArray &steps, const QJsonValue &code,
                             const QString &probe, const QJsonValue &expected) {
            QTest::newRow(name) << steps << code << probe << expected;
        };
        const QJsonObject retract {{"set_weld_retract_wire", true}};
        const QJsonObject release {{"set_weld_retract_wire", false}};
        const QJsonValue feeding = int(ControllerSimulator::Feeder::Feeding);

        row("ten curve nodes",
            {QJsonObject {{"set_weld_curve_power_config",
                QJsonObject {{"laser_power_node", 10}, {"power_nodes_data", tenNodes}}}}},
            0, "feeder", idle);
        row("zero-padded port", {io({{"laser_enable_port", "DO01"}})}, 2, "feeder", idle);
        row("stopping the retract leaves the feed running", {feed, release}, 0, "feeder", feeding);
        row("retract", {retract}, 0, "feeder", int(ControllerSimulator::Feeder::Retracting));
        row("no wire by hand while welding", {enable, feed}, 3, "feeder", idle);
        // Releasing a wire key must always stop the wire.
        row("a release is taken while welding", {enable, release}, 0, "feeder", idle);
        row("no wire with the feeder disabled", {settings({{"feeder_enable", false}}), feed}, 4,
            "feeder", idle);
        row("wire switch not a boolean", {QJsonObject {{"set_weld_feed_wire", "yes"}}}, 2, "feeder",
            idle);
        row("gas opens", {gas}, 0, "gas", true);
        row("gas closes after its purge time",
            {settings({{"manual_gas_time", 1000}}), gas, QJsonObject {{"wait", 1500}}}, 0, "gas",
            false);
        row("no gas without a gas port", {io({{"gas_protect_port", ""}}), gas}, 4, "gas", false);
        row("I/O assignment locked while welding", {enable, io({})}, 3, "feeder", idle);
        row("work mode locked while powered",
            {powered, QJsonObject {{"set_virtual_welding", true}}}, 3, virtualMode, false);
        row("two commands in one request",
            {QJsonObject {{"set_weld_red_light", true}, {"set_weld_feed_wire", true}}}, 2, "feeder",
            idle);
        row("unknown command", {QJsonObject {{"set_weld_teleport", true}}},
            ControllerSimulator::UnknownCommand, redLight, false);
        row("a member the controller does not keep", {light}, 0, "laser_weld_data.arc_status",
            none);
        // Welding goes on only through set_weld_enable and its exact "TRUE", with a laser
        // enable port, unpowered; the answer is a JSON boolean.
        row("settings cannot arm the laser", {settings({{"laser_main_enable", true}})}, 0, armed,
            false);
        row("welding on", {enable}, true, armed, true);
        row("welding on needs a laser enable port", {io({{"laser_enable_port", ""}}), enable},
            false, armed, false);
        row("welding on while powered", {powered, enable}, false, armed, false);
        row("welding off while powered",
            {enable, powered, QJsonObject {{"set_weld_enable", "FALSE"}}}, true, armed, false);
        row("lower case true", {QJsonObject {{"set_weld_enable", "true"}}}, false, armed, false);
        row("a restart disarms the laser", {enable, QJsonObject {{"restart", true}}}, true, armed,
            false);
        // The faults the soak and the pendant's buttons inject, each for one request.
        row("forced return code", {QJsonObject {{"inject", 7}}, light}, 7, redLight, false);
        row("empty reply", {QJsonObject {{"inject", "empty"}}, light}, none, redLight, true);
        row("malformed reply", {QJsonObject {{"inject", "malformed"}}, light}, none, redLight,
            true);
        row("a fault is used once", {QJsonObject {{"inject", 7}}, light, light}, 0, redLight, true);
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
