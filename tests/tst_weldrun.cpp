#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"
#include "controller/matchset.h"
#include "controller/outputcalibration.h"
#include "controller/programrunner.h"
#include "support/testenvironment.h"

#include <QtTest>

using kelcontroller::ControllerSimulator;
using kelcontroller::FactoryRecords;
using kelcontroller::ProgramRunner;
using testenv::patched;

namespace {

const QString key = QStringLiteral("kellaserweld");
const QString toP10 = QStringLiteral("LsMoveL(p10, v100, fine, tool0, wobj0);");

// A simulated cell ready to weld: welding on, robot powered, the clock driven by the test.
struct Cell
{
    explicit Cell(bool welding = true)
    {
        runner->setRealTime(false);
        if (welding)
            sim.commandCustomData(nullptr, key, QStringLiteral("set_weld_enable"), "TRUE");
        sim.setRobotPowered(true);
        send("start_laserweld_monitor", true);
    }

    int send(const QString &command, const QJsonValue &payload)
    {
        const QJsonArray reply = sim.commandCustomData(nullptr, key, {{command, payload}});
        return reply.at(0).toObject().value(key).toObject().value(command)["return"].toInt(-1);
    }

    // Changes a record the way the pages do; I/O changes need welding off for a moment.
    void change(const QString &record, const QJsonObject &changes)
    {
        const bool welding = sim.isWeldingEnabled();
        sim.setRobotPowered(false);
        sim.commandCustomData(nullptr, key, QStringLiteral("set_weld_enable"), "FALSE");
        const QJsonObject value = patched(sim.record(record), changes);
        if (record == "weld_param_config")
            QCOMPARE(send("set_weld_param_list_config", value), 0);
        else if (record == "weld_curve_config")
            QCOMPARE(send("set_weld_curve_power_config", changes), 0);
        else
            QCOMPARE(send("set_" + record, value), 0);
        if (welding)
            sim.commandCustomData(nullptr, key, QStringLiteral("set_weld_enable"), "TRUE");
        sim.setRobotPowered(true);
    }

    void changeSet(const QJsonObject &changes)
    {
        const QJsonObject set = sim.record("weld_param_config").value("LsData1").toObject();
        change("weld_param_config", {{"LsData1", patched(set, changes)}});
    }

    QJsonObject stream() { return sim.getKelServiceData("weld_monitor_data").toObject(); }

    double output(const QString &signal) const
    {
        for (const ControllerSimulator::PortValue &p : sim.assignedOutputs())
            if (p.signal == signal)
                return p.value;
        return -1.0;
    }

    QTemporaryDir dir;
    ControllerSimulator sim {dir.path()};
    ProgramRunner *runner = sim.runner();
};

} // namespace

class TestWeldRun : public QObject
{
    Q_OBJECT

private slots:
    // LsData1: start 750 W, weld 1500 W, end 500 W, start and end ramp 100 ms, motion and off delay
    // 50 ms; the gas flows 300 ms before the laser. A 500 ms motion delay puts LaserOff at 800 ms.
    void processValues_data()
    {
        QTest::addColumn<QJsonObject>("set");
        QTest::addColumn<int>("atMs");
        QTest::addColumn<QString>("field");
        QTest::addColumn<double>("expected");

        const QJsonObject base {{"delay_time_start", 500}};
        QTest::newRow("before the laser, gas only") << base << 299 << "power" << 0.0;
        QTest::newRow("start ramp midpoint") << base << 350 << "power" << 1125.0;
        QTest::newRow("start ramp quarter") << base << 325 << "power" << 937.5;
        QTest::newRow("start phase frequency")
            << patched(base, {{"frequency_start", 1000}}) << 350 << "frequency" << 1000.0;
        QTest::newRow("weld phase frequency")
            << patched(base, {{"frequency_start", 1000}}) << 400 << "frequency" << 2000.0;
        const QJsonObject slowEnd
            = patched(base, {{"ramp_value_end", 400}, {"delay_time_end", 300}});
        QTest::newRow("end ramp midpoint") << slowEnd << 1000 << "power" << 1000.0;
        // LaserOff at 350 ms, halfway up the start ramp: down from 1125 W.
        QTest::newRow("end ramp from the power at LaserOff")
            << QJsonObject() << 370 << "power" << 1000.0;
        QTest::newRow("laser off cuts a longer end ramp") << slowEnd << 1100 << "power" << 0.0;
        QTest::newRow("negative ramp time is no ramp")
            << patched(base, {{"ramp_value_start", -100}}) << 300 << "power" << 1500.0;
        QTest::newRow("laser welding moves no wire") << patched(base,
            {{"wire_feed_enable_start", false}, {"wire_feed_enable_end", false},
                {"feeding_speed_run", 40}, {"wire_retraction_end", true}, {"wire_retract_end", 20},
                {"wire_retract_time_end", 200}}) << 400
                                                     << "wire_speed" << 0.0;
        const QJsonObject wireEnd = patched(base,
            {{"wire_feed_enable_end", true}, {"wire_speed_end", 30}, {"wire_feed_time_end", 100},
                {"wire_retraction_end", true}, {"wire_retract_end", 20},
                {"wire_retract_time_end", 200}, {"wire_fill_com_end", true},
                {"fill_delay_time_end", 100}, {"fill_wire_speed_end", 15},
                {"fill_wire_time_end", 100}});
        QTest::newRow("end feed") << wireEnd << 850 << "wire_speed" << 30.0;
        QTest::newRow("retract after the end feed") << wireEnd << 950 << "wire_speed" << -20.0;
        QTest::newRow("compensation waits its delay") << wireEnd << 1150 << "wire_speed" << 0.0;
        QTest::newRow("compensation") << wireEnd << 1250 << "wire_speed" << 15.0;
        QTest::newRow("start wire, then the run speed") << patched(base,
            {{"wire_feed_enable_start", true}, {"feeding_speed_start", 10},
                {"wire_feed_time_start", 100}, {"feeding_speed_run", 40}})
                                                        << 400 << "wire_speed" << 40.0;
    }

    void processValues()
    {
        QFETCH(QJsonObject, set);
        QFETCH(int, atMs);
        QFETCH(QString, field);
        QFETCH(double, expected);

        Cell cell;
        cell.changeSet(set);
        QVERIFY(cell.runner->run({"LaserOn(\"LsData1\");", "LaserOff;"}));
        cell.runner->advance(atMs);
        QCOMPARE(cell.stream().value(field).toDouble(), expected);
    }

    // PowerData1 nodes: 5 mm/s 800 W, 10 mm/s 1200 W, 20 mm/s 1800 W, 30 mm/s 2400 W.
    void matchedValue_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("power");

        QTest::newRow("between two nodes") << 15.0 << 1500.0;
        QTest::newRow("below the first node") << 2.0 << 800.0;
        QTest::newRow("above the last node") << 45.0 << 2400.0;
    }

    void matchedValue()
    {
        QFETCH(double, speed);
        QFETCH(double, power);

        const QJsonObject factory = FactoryRecords::paramMatch().value("PowerData1").toObject();
        QJsonArray reversed;
        for (const QJsonValue &node : factory["power_data"].toArray())
            reversed.prepend(node);
        // Stored out of speed order, the nodes are still used in order of speed.
        for (const QJsonObject &stored : {factory, patched(factory, {{"power_data", reversed}})}) {
            kelcontroller::MatchSet set;
            QString error;
            QVERIFY(kelcontroller::MatchSet::read(stored, &set, &error));
            QCOMPARE(set.at(kelcontroller::MatchSet::Power, speed), power);
        }

        // Along a seam at that speed, while cruising.
        Cell cell;
        const QString seam = QStringLiteral("LsMoveL(Offs(p10,%1,0,0), v%2, fine, tool0, wobj0);")
                                 .arg(speed * 10.0)
                                 .arg(speed);
        QVERIFY(cell.runner->run(
            {toP10, "LsParaMatch(\"PowerData1\");", "LaserOn(\"LsData1\");", seam, "LaserOff;"}));
        // p10 at 2 s, the laser on at 2.3 s, the seam from 2.35 s, cruising after speed/100 s.
        cell.runner->advance(2350 + 1000 + qint64(speed * 10.0));
        QCOMPARE(cell.stream().value("weld_speed").toDouble(), speed);
        QCOMPARE(cell.stream().value("power").toDouble(), power);
        QCOMPARE(cell.stream().value("frequency").toDouble(), 2000.0); // its switch is off
        QCOMPARE(cell.stream().value("matching").toString(), QString("PowerData1"));
    }

    // p10 -> p20 along x at v50, then on to the third point at v50.
    void cornerSpeed_data()
    {
        QTest::addColumn<QString>("third");
        QTest::addColumn<QString>("zone");
        QTest::addColumn<double>("speed");

        QTest::newRow("right angle halves the speed") << "p30"
                                                      << "z10" << 25.0;
        QTest::newRow("fine stops") << "p30"
                                    << "fine" << 0.0;
        QTest::newRow("straight on keeps the speed") << "Offs(p20,100,0,0)"
                                                     << "z10" << 50.0;
        QTest::newRow("turning back stops") << "p10"
                                            << "z10" << 0.0;
    }

    void cornerSpeed()
    {
        QFETCH(QString, third);
        QFETCH(QString, zone);
        QFETCH(double, speed);

        Cell cell;
        QVERIFY(cell.runner->run({toP10, QString("LsMoveL(p20, v50, %1, tool0, wobj0);").arg(zone),
            QString("LsMoveL(%1, v50, fine, tool0, wobj0);").arg(third)}));
        for (int ms = 0; cell.runner->currentLine() != 2 && ms < 10000; ++ms)
            cell.runner->advance(1);
        QCOMPARE(cell.stream().value("weld_speed").toDouble(), speed);
    }

    // From p10 (400, 0, 300), welded so that the record gives the length.
    void pathOfAMotion_data()
    {
        QTest::addColumn<QString>("motion");
        QTest::addColumn<QVector3D>("end");
        QTest::addColumn<double>("length");

        QTest::newRow("half circle") << "LsMoveC(Offs(p10,50,50,0), p20, v50, fine, tool0, wobj0);"
                                     << QVector3D(500, 0, 300) << 157.1;
        QTest::newRow("half circle, orientation held")
            << "LsMoveCF(Offs(p10,50,50,0), p20, v50, fine, tool0, wobj0);"
            << QVector3D(500, 0, 300) << 157.1;
        QTest::newRow("quarter circle, the short way round")
            << "LsMoveC(Offs(p10,14.645,35.355,0), Offs(p10,50,50,0), v50, fine, tool0, wobj0);"
            << QVector3D(450, 50, 300) << 78.5;
        QTest::newRow("tool frame points down")
            << "LsMoveL(RelTool(p20,0,10,-50), v50, fine, tool0, wobj0);"
            << QVector3D(500, -10, 350) << 112.2;
    }

    void pathOfAMotion()
    {
        QFETCH(QString, motion);
        QFETCH(QVector3D, end);
        QFETCH(double, length);

        Cell cell;
        QVERIFY(cell.runner->run({toP10, "LaserOn(\"LsData1\");", motion, "LaserOff;"}));
        cell.runner->advance(20000);
        QCOMPARE(cell.sim.robotPosition(), end);
        QCOMPARE(cell.sim.getKelServiceData("weld_record.1")["length_mm"].toDouble(), length);
    }

    // A 100 mm seam at v10 with 100 mm/s²: 0.1 s up, 9.9 s at 10 mm/s, 0.1 s down. LaserOn at
    // 2 s (p10 reached), laser on at 2.3 s, the seam from 2.35 s to 12.45 s, laser off at 12.5 s.
    void weldRecord_data()
    {
        QTest::addColumn<int>("stopAtMs");
        QTest::addColumn<int>("duration");
        QTest::addColumn<int>("laserOn");
        QTest::addColumn<double>("length");
        QTest::addColumn<bool>("completed");

        QTest::newRow("seam to its end") << 0 << 10500 << 10200 << 100.0 << true;
        QTest::newRow("stopped 5 s into the seam") << 7350 << 5350 << 5050 << 49.5 << false;
    }

    void weldRecord()
    {
        QFETCH(int, stopAtMs);
        QFETCH(int, duration);
        QFETCH(int, laserOn);
        QFETCH(double, length);
        QFETCH(bool, completed);

        QTemporaryDir dir;
        {
            Cell cell;
            QVERIFY(cell.runner->run({toP10, "LaserOn(\"LsData1\");",
                                         "LsMoveL(p20, v10, fine, tool0, wobj0);", "LaserOff;"},
                "seam"));
            if (stopAtMs) {
                cell.runner->advance(stopAtMs);
                cell.runner->stop();
            }
            cell.runner->advance(20000);
            QCOMPARE(cell.runner->state(), ProgramRunner::State::Idle);
            QCOMPARE(cell.stream()["samples"].toArray().size(), 100); // the last 5 s
            QFile::copy(
                cell.dir.filePath("kelweldrecords.json"), dir.filePath("kelweldrecords.json"));
        }
        // Read back by a controller started afresh.
        ControllerSimulator sim(dir.path());
        const QJsonObject list = sim.getKelServiceData("weld_records").toObject();
        QCOMPARE(list["totals"]["welds"].toInt(), 1);
        QCOMPARE(list["totals"]["laser_on_ms"].toInt(), laserOn);
        const QJsonObject weld = sim.getKelServiceData("weld_record.1").toObject();
        QCOMPARE(weld["duration_ms"].toInt(), duration);
        QCOMPARE(weld["laser_on_ms"].toInt(), laserOn);
        QCOMPARE(weld["length_mm"].toDouble(), length);
        QCOMPARE(weld["completed"].toBool(), completed);
        QCOMPARE(weld["line"].toInt(), 2);
        QCOMPARE(weld["program"].toString(), QString("seam"));
        const QJsonArray samples = weld["samples"].toArray();
        QCOMPARE(samples.size(), duration / 50 + 1);
        // 350 ms after LaserOn: halfway up the start ramp.
        QCOMPARE(samples.at(7)["power"].toDouble(), 1125.0);
    }

    void rawOutput_data()
    {
        QTest::addColumn<QJsonArray>("nodes");
        QTest::addColumn<double>("physical");
        QTest::addColumn<double>("raw");

        const QJsonArray volts {QJsonArray {0, 0}, QJsonArray {10, 6000}};
        QTest::newRow("0..10 V for 0..6000 W") << volts << 1500.0 << 2.5;
        QTest::newRow("above the curve held at its last node") << volts << 7000.0 << 10.0;
        // Least squares: slope 600, intercept -133.33.
        QTest::newRow("fitted through three nodes")
            << QJsonArray {QJsonArray {0, 0}, QJsonArray {5, 2600}, QJsonArray {10, 6000}} << 1500.0
            << 1633.333333 / 600.0;
    }

    void rawOutput()
    {
        QFETCH(QJsonArray, nodes);
        QFETCH(double, physical);
        QFETCH(double, raw);

        kelcontroller::OutputCalibration calibration;
        QString error;
        QVERIFY(calibration.load(
            {{"laser_power_node", nodes.size()}, {"power_nodes_data", nodes}}, 0, &error));
        QVERIFY(qAbs(calibration.raw(physical) - raw) < 1e-6);
    }

    // Mid-weld at 1500 W through a 12-bit group output: 1500 / 6000 * 4095 = 1023.75.
    void outputsOnTheirPorts_data()
    {
        QTest::addColumn<bool>("virtualWelding");
        QTest::addColumn<double>("laserEnable");

        QTest::newRow("welding") << false << 1.0;
        QTest::newRow("virtual welding keeps the laser off") << true << 0.0;
    }

    void outputsOnTheirPorts()
    {
        QFETCH(bool, virtualWelding);
        QFETCH(double, laserEnable);

        Cell cell(!virtualWelding);
        cell.change("weld_io_config",
            {{"power_type", 1}, {"power_port", "GO1"}, {"power_enabled", true},
                {"retract_direction_enabled", true}});
        cell.change("weld_curve_config",
            {{"laser_power_node", 2},
                {"power_nodes_data", QJsonArray {QJsonArray {0, 0}, QJsonArray {4095, 6000}}}});
        if (virtualWelding) {
            cell.sim.setRobotPowered(false);
            QCOMPARE(cell.send("set_virtual_welding", true), 0);
            cell.sim.setRobotPowered(true);
        }
        QVERIFY(cell.runner->run({"LaserOn(\"LsData1\");", "LsWireBwd(50,1000);", "LaserOff;"}));
        cell.runner->advance(600);
        QCOMPARE(cell.output("laser_enable_port"), laserEnable);
        QCOMPARE(cell.output("gas_protect_port"), 1.0);
        QCOMPARE(cell.output("power_port"), 1024.0);
        QCOMPARE(cell.output("retract_direction_port"), 1.0);
        QCOMPARE(
            cell.stream().value("laser").toString(), QString(virtualWelding ? "simulated" : "on"));
        cell.runner->advance(5000);
        QCOMPARE(cell.output("power_port"), 0.0);
        QCOMPARE(cell.output("gas_protect_port"), 0.0);
        // Retracted while the laser was on: wire used goes down.
        QCOMPARE(cell.sim.getKelServiceData("weld_record.1")["wire_mm"].toDouble(), -50.0);
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("program");
        QTest::addColumn<QString>("text");

        const QString laserOn = "LaserOn(\"LsData1\");";
        // Each row is named by the refusal it expects.
        const auto row = [](const char *setup, const QStringList &program, const char *text) {
            QTest::newRow(text) << QString(setup) << program << QString(text);
        };
        row("unpowered", {toP10}, "Line 2: the robot is not powered.");
        row("level 2", {toP10}, "Line 2: user level 3 or more is needed to run a program.");
        row("welding off", {toP10, laserOn}, "Line 3: welding is switched off.");
        row("gas_protect_port", {toP10, laserOn}, "Line 3: no assist gas port is assigned.");
        row("laser_enable_port", {toP10, laserOn}, "Line 3: no laser enable port is assigned.");
        row("power row without port", {toP10, laserOn},
            "Line 3: the power output is switched on without a port.");
        row("feeder off", {toP10, "LsWireBwd(20,500);"}, "Line 3: the wire feeder is disabled.");
        row("", {toP10, "LaserOn(\"LsData9\");"}, "Line 3: LsData9 does not exist.");
        row("", {toP10, "LsParaMatch(\"PowerData7\");"}, "Line 3: PowerData7 does not exist.");
        row("power text", {toP10, laserOn}, "Line 3: LsData1 has no valid laser_power_weld.");
        row("", {toP10, laserOn, laserOn}, "Line 4: the laser is already on.");
        row("", {toP10, "MoveJ p20;"}, "Line 3: unknown instruction MoveJ.");
        row("", {"LsMoveL(p10, v100, fine, tool0, wobj0;"}, "Line 2: LsMoveL is malformed.");
        row("", {"LsMoveL(p10, v100, fine, tool0);"}, "Line 2: LsMoveL takes 5 parameters.");
        row("", {toP10, "LsMoveL(p99, v100, fine, tool0, wobj0);"}, "Line 3: p99 has no position.");
        row("", {"LsMoveL(p10, v0, fine, tool0, wobj0);"},
            "Line 2: the speed v0 is outside v1..v7000.");
        row("", {toP10, "LsWireFwd(150,1000);"},
            "Line 3: the wire speed 150 is outside 1..100 mm/s.");
        row("", {toP10, "LsWireFwd(50,0);"}, "Line 3: the wire time 0 is outside 1..10000 ms.");
        row("", {toP10, "LsMoveC(p20, Offs(p20,100,0,0), v100, fine, tool0, wobj0);"},
            "Line 3: the points of the circle lie on one line.");
        row("", {"LsMoveL(p10, v100, fine, tool9, wobj0);"}, "Line 2: tool9 is not a tool.");
    }

    void refusals()
    {
        QFETCH(QString, setup);
        QFETCH(QStringList, program);
        QFETCH(QString, text);

        Cell cell(setup != "welding off");
        if (setup == "unpowered")
            cell.sim.setRobotPowered(false);
        if (setup == "level 2")
            cell.sim.setUserLevel(2);
        if (setup.endsWith("_port"))
            cell.change("weld_io_config", {{setup, ""}});
        if (setup == "laser_enable_port") { // welding cannot be switched on without it
            cell.sim.setRobotPowered(false);
            QCOMPARE(cell.send("set_virtual_welding", true), 0);
            cell.sim.setRobotPowered(true);
        }
        if (setup == "power row without port")
            cell.change("weld_io_config", {{"power_port", ""}, {"power_enabled", true}});
        if (setup == "feeder off")
            cell.change("weld_setting_config", {{"feeder_enable", false}});
        if (setup == "power text")
            cell.changeSet({{"laser_power_weld", "1500 W"}});
        const QJsonObject records = QJsonObject {{"sets", cell.sim.record("weld_param_config")}};

        QSignalSpy messages(cell.runner, &ProgramRunner::message);
        program.prepend("// seam 1");
        QVERIFY(!cell.runner->run(program));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(0).toInt(), 1);
        QCOMPARE(messages.at(0).at(1).toString(), text);
        QCOMPARE(messages.at(0).at(2).toInt(), text.section(' ', 1, 1).chopped(1).toInt() - 1);
        cell.runner->advance(5000);
        QCOMPARE(cell.sim.robotPosition(), ProgramRunner::homePosition());
        QCOMPARE(cell.runner->state(), ProgramRunner::State::Idle);
        QCOMPARE(cell.sim.getKelServiceData("weld_records")["totals"]["welds"].toInt(), 0);
        QCOMPARE(QJsonObject({{"sets", cell.sim.record("weld_param_config")}}), records);
    }

    void recordChangedDuringTheRunStopsAtItsLine()
    {
        Cell cell;
        QSignalSpy messages(cell.runner, &ProgramRunner::message);
        QSignalSpy finished(cell.runner, &ProgramRunner::finished);
        QVERIFY(cell.runner->run({toP10, "LaserOn(\"LsData1\");", "LsParaSet(\"LsData2\");"}));
        const QJsonObject set = cell.sim.record("weld_param_config").value("LsData2").toObject();
        cell.change("weld_param_config", {{"LsData2", patched(set, {{"laser_power_weld", "x"}})}});
        cell.runner->advance(3000);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(1).toString(),
            QString("Line 3: LsData2 has no valid laser_power_weld."));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toBool(), false);
        QCOMPARE(cell.output("laser_enable_port"), 0.0);
        QCOMPARE(cell.sim.getKelServiceData("weld_record.1")["completed"].toBool(), false);
    }

    void oddProgramsEnd_data()
    {
        QTest::addColumn<QStringList>("program");
        QTest::addColumn<bool>("runs");

        QTest::newRow("nothing but comments") << QStringList {"// a", "", "   "} << true;
        QTest::newRow("no motion")
            << QStringList {"LsParaMatch(\"PowerData1\");", "LsParaMatchOff"} << true;
        QTest::newRow("laser left on") << QStringList {"LaserOn(\"LsData2\");"} << true;
        QTest::newRow("many lines without time")
            << QStringList(QVector<QString>(150000, QStringLiteral("LsParaMatchOff;")).toList())
            << true;
        QTest::newRow("motion to where the robot is")
            << QStringList {"LsMoveL(Offs(p10,0,0,100), v100, z10, tool0, wobj0);"} << true;
        QTest::newRow("parentheses only") << QStringList {"(((("} << false;
        QTest::newRow("empty set name") << QStringList {"LaserOn(\"\");"} << false;
        QTest::newRow("offset not a number")
            << QStringList {"LsMoveL(Offs(p10,nan,0,0), v100, fine, tool0, wobj0);"} << false;
        QTest::newRow("huge wire time") << QStringList {"LsWireFwd(50,1e308);"} << false;
    }

    void oddProgramsEnd()
    {
        QFETCH(QStringList, program);
        QFETCH(bool, runs);

        Cell cell;
        QSignalSpy finished(cell.runner, &ProgramRunner::finished);
        QCOMPARE(cell.runner->run(program), runs);
        for (int i = 0; i < 10 && cell.runner->state() != ProgramRunner::State::Idle; ++i)
            cell.runner->advance(1000);
        QCOMPARE(cell.runner->state(), ProgramRunner::State::Idle);
        QCOMPARE(finished.count(), runs ? 1 : 0);
    }

    void runsInRealTimeScaledByTheFactor()
    {
        Cell cell;
        cell.runner->setRealTime(true);
        cell.runner->setSpeedFactor(100.0);
        QSignalSpy finished(cell.runner, &ProgramRunner::finished);
        // Two simulated seconds: 20 ms at a hundredfold speed, far from the time-out either way.
        QVERIFY(cell.runner->run({toP10}));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 2000);
        QCOMPARE(cell.sim.robotPosition(), cell.sim.pointPosition("p10"));
    }

    void pointPositions()
    {
        QTemporaryDir dir;
        {
            // A file written before points had positions.
            QFile file(dir.filePath("kelcontroller.json"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(R"({"points": ["p10", "p20", "p30", "p40"]})");
        }
        {
            ControllerSimulator sim(dir.path());
            QCOMPARE(sim.pointPosition("p20"), QVector3D(500, 0, 300));
            QVERIFY(!sim.hasPointPosition("p40"));
            sim.runner()->setRealTime(false);
            sim.setRobotPowered(true);
            QVERIFY(sim.runner()->run({"LsMoveL(Offs(p20,0,0,50), v100, fine, tool0, wobj0);"}));
            sim.runner()->advance(5000);
            QVERIFY(sim.addCurrentPoint("p40", true, "tool0", "wobj0"));
        }
        ControllerSimulator sim(dir.path());
        QCOMPARE(sim.pointPosition("p40"), QVector3D(500, 0, 350));
    }
};

QTEST_MAIN(TestWeldRun)
#include "tst_weldrun.moc"
