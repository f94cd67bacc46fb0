#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"
#include "controller/recordschema.h"
#include "kelplugin/controllerbackend.h"
#include "kelplugin/interfacemanager.h"
#include "support/testenvironment.h"

#include <QtTest>

using kelcontroller::ControllerSimulator;
using kelcontroller::FactoryRecords;
using kelcontroller::RecordSchema;

namespace {

const QString key = QStringLiteral("kellaserweld");

// The entry of command in the reply to a request holding only it.
QJsonObject entryOf(ControllerSimulator &sim, const QString &command, const QJsonValue &payload)
{
    return sim.commandCustomData(nullptr, key, QJsonObject {{command, payload}})
        .at(0)[key][command]
        .toObject();
}

int returnOf(ControllerSimulator &sim, const QString &command, const QJsonValue &payload)
{
    return entryOf(sim, command, payload).value("return").toInt(-1);
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList asideFiles(const QTemporaryDir &dir)
{
    return QDir(dir.path()).entryList({QStringLiteral("kelcontroller.json.corrupt-*")});
}

// Root ignores permission bits; the immutable attribute stops it too.
bool makeUnwritable(const QString &dir)
{
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::ExeOwner);
    QProcess::execute(QStringLiteral("chattr"), {QStringLiteral("+i"), dir});
    QFile probe(dir + QStringLiteral("/probe"));
    const bool writable = probe.open(QIODevice::WriteOnly);
    probe.remove();
    return !writable;
}

void makeWritable(const QString &dir)
{
    QProcess::execute(QStringLiteral("chattr"), {QStringLiteral("-i"), dir});
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// A simulator on a data folder of its own that goes away with it.
struct FreshSimulator : QTemporaryDir, ControllerSimulator
{
    FreshSimulator() : ControllerSimulator(QTemporaryDir::path()) { }
};

} // namespace

class TestControllerSimulator : public QObject
{
    Q_OBJECT

private slots:
    void factoryRecordsFitTheirOwnRules()
    {
        FreshSimulator sim;
        QCOMPARE(
            RecordSchema::checkIoConfig(sim.record("weld_io_config"), sim.ioLayout()), QString());
        QCOMPARE(
            RecordSchema::checkSettingConfig(sim.record("weld_setting_config"), sim.ioLayout()),
            QString());
        const QJsonObject curves = sim.record("weld_curve_config");
        for (const auto &curve : RecordSchema::curves())
            QCOMPARE(RecordSchema::checkCurve(curve,
                         QJsonObject {{curve.countKey, curves.value(curve.countKey)},
                             {curve.nodesKey, curves.value(curve.nodesKey)}}),
                QString());
        QVERIFY(sim.record("weld_param_config").value("LsData1").isObject());
        QVERIFY(sim.record("weld_param_match").value("PowerData1").isObject());
        // Nothing changed yet, so nothing is written.
        QVERIFY(!QFile::exists(sim.dataFilePath()));
    }

    void changesSurviveARestart()
    {
        QTemporaryDir dir;
        QJsonObject io = FactoryRecords::ioConfig();
        io.insert("laser_enable_port", "DO12");
        {
            ControllerSimulator sim(dir.path());
            QCOMPARE(returnOf(sim, "set_weld_io_config", io), 0);
            QCOMPARE(returnOf(sim, "set_virtual_welding", true), 0);
            QCOMPARE(returnOf(sim, "set_weld_param_match_config",
                         QJsonObject {{"PowerData7", QJsonObject {{"power_enable", true}}}}),
                0);
            QVERIFY(sim.addCurrentPoint("p42", false, "tool0", "wobj0"));
            QVERIFY(QJsonDocument::fromJson(readAll(sim.dataFilePath())).isObject());
        }
        ControllerSimulator again(dir.path());
        QCOMPARE(again.record("weld_io_config"), io);
        QCOMPARE(
            again.getKelServiceData("laser_weld_data.virtual_welding_status"), QJsonValue(true));
        QVERIFY(again.record("weld_param_match").contains("PowerData7"));
        QVERIFY(again.record("weld_param_match").contains("PowerData1"));
        QVERIFY(again.getPointNameList().contains("p42"));
        QVERIFY(again.lastError().isEmpty());
    }

    void damagedFileIsKeptAsideAndFactoryRecordsUsed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("keepsLsData9");

        QTest::newRow("garbage") << QByteArray("{\"weld_io_config\": {\x01 nonsense") << false;
        QTest::newRow("record of wrong type") << QByteArray(
            "{\"weld_io_config\": 5, \"weld_param_config\": {\"LsData9\": {\"Tips\": "
            "\"kept\"}}}") << true;
    }

    void damagedFileIsKeptAsideAndFactoryRecordsUsed()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, keepsLsData9);

        QTemporaryDir dir;
        {
            QFile file(dir.filePath("kelcontroller.json"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        {
            ControllerSimulator sim(dir.path());
            QSignalSpy problems(&sim, &ControllerSimulator::problem);

            QTRY_COMPARE(problems.count(), 1);
            QVERIFY(problems.at(0).at(0).toString().contains("damaged"));
            QCOMPARE(sim.lastError(), problems.at(0).at(0).toString());
            const QStringList aside = asideFiles(dir);
            QCOMPARE(aside.size(), 1);
            QCOMPARE(readAll(dir.filePath(aside.first())), content);
            QCOMPARE(sim.record("weld_io_config"), FactoryRecords::ioConfig());
            QCOMPARE(sim.record("weld_param_config").contains("LsData9"), keepsLsData9);
            QCOMPARE(sim.record("weld_param_config").contains("LsData1"), !keepsLsData9);
        }

        // What was kept must survive the next start, and the aside copy is never overwritten.
        ControllerSimulator again(dir.path());
        QCOMPARE(again.record("weld_param_config").contains("LsData9"), keepsLsData9);
        QCOMPARE(asideFiles(dir).size(), 1);
    }

    void failedWriteKeepsOldFileAndRecord()
    {
        QTemporaryDir dir;
        ControllerSimulator sim(dir.path());
        QCOMPARE(returnOf(sim, "set_weld_red_light", true), 0);
        QCOMPARE(returnOf(sim, "set_virtual_welding", true), 0);
        const QByteArray before = readAll(sim.dataFilePath());
        QVERIFY(!before.isEmpty());

        const bool locked = makeUnwritable(dir.path());
        QSignalSpy problems(&sim, &ControllerSimulator::problem);
        QJsonObject io = FactoryRecords::ioConfig();
        io.insert("gas_protect_port", "DO20");
        const QJsonObject entry = entryOf(sim, "set_weld_io_config", io);
        makeWritable(dir.path());
        if (!locked)
            QSKIP("the data folder cannot be made read-only here");

        QCOMPARE(entry.value("return").toInt(), int(ControllerSimulator::StoreFailed));
        // The reason in words, not only the system's.
        const QString message = entry.value("message").toString();
        QVERIFY2(message.startsWith("store failed: permission denied: ")
                || message.startsWith("store failed: read-only folder: "),
            qPrintable(message));
        QCOMPARE(problems.count(), 1);
        QCOMPARE(sim.record("weld_io_config"), FactoryRecords::ioConfig());
        QCOMPARE(readAll(sim.dataFilePath()), before);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files),
            (QStringList {"kelcontroller.json", "kelcontroller.lock"}));
    }

    void recordSave_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QJsonObject>("payload");
        QTest::addColumn<int>("code");

        const QString io = "set_weld_io_config";
        const QString setting = "set_weld_setting_config";
        const QString list = "set_weld_param_list_config";
        const QString match = "set_weld_param_match_config";
        const auto ioWith = [](const QJsonObject &changes) {
            return testenv::patched(FactoryRecords::ioConfig(), changes);
        };
        const auto settingWith = [](const QJsonObject &changes) {
            return testenv::patched(FactoryRecords::settingConfig(), changes);
        };
        const QJsonArray three {QJsonArray {0, 0}, QJsonArray {5, 40}, QJsonArray {10, 90}};
        const QJsonObject set {{"Tips", "new"}};

        const auto row = [](const char *name, const QString &command, const QJsonObject &payload,
                             int code) { QTest::newRow(name) << command << payload << code; };
        row("valid port", io, ioWith({{"laser_enable_port", "DO32"}}), 0);
        row("port unassigned", io, ioWith({{"red_light_port", ""}}), 0);
        row("missing key", io, ioWith({{"external_alarm_enabled", QJsonValue()}}), 2);
        row("port as number", io, ioWith({{"power_port", 1}}), 2);
        row("port beyond layout", io, ioWith({{"laser_enable_port", "DO33"}}), 2);
        row("input port on output", io, ioWith({{"gas_protect_port", "DI2"}}), 2);
        row("analogue port on group type", io, ioWith({{"power_type", 1}}), 2);
        row("gas purge at its minimum", setting, settingWith({{"manual_gas_time", 1000}}), 0);
        row("gas purge below its minimum", setting, settingWith({{"manual_gas_time", 999}}), 2);
        row("fractional power", setting, settingWith({{"laser_power", 3000.5}}), 2);
        row("selector beyond its items", setting, settingWith({{"wire_feeder_comm_type", 3}}), 2);
        row("equal detect and check-out times", setting,
            settingWith({{"feedback_delay", 200}, {"laser_check_out_time", 200}}), 0);
        row("detect time before check-out", setting,
            settingWith({{"feedback_delay", 199}, {"laser_check_out_time", 200}}), 2);
        row("trigger on an input", setting, settingWith({{"detection_do", "DI1"}}), 2);
        row("feed curve", "set_weld_curve_feed_config",
            QJsonObject {{"laser_feed_node", 3}, {"feed_nodes_data", three}}, 0);
        row("count and rows disagree", "set_weld_curve_feed_config",
            QJsonObject {{"laser_feed_node", 4}, {"feed_nodes_data", three}}, 2);
        row("eleven nodes", "set_weld_curve_feed_config",
            QJsonObject {{"laser_feed_node", 11}, {"feed_nodes_data", three}}, 2);
        row("row of three numbers", "set_weld_curve_power_config",
            QJsonObject {{"laser_power_node", 2},
                {"power_nodes_data", QJsonArray {QJsonArray {0, 0}, QJsonArray {1, 2, 3}}}},
            2);
        row("keys of another curve", "set_weld_curve_power_config",
            QJsonObject {{"laser_feed_node", 3}, {"feed_nodes_data", three}}, 2);
        row("last weld data set", list, QJsonObject {{"LsData30", set}}, 0);
        row("weld data set 31", list, QJsonObject {{"LsData31", set}}, 2);
        row("zero-padded name", list, QJsonObject {{"LsData07", set}}, 2);
        row("matching name in the list", list, QJsonObject {{"PowerData1", set}}, 2);
        row("set not an object", list, QJsonObject {{"LsData4", 4}}, 2);
        row("last matching set", match, QJsonObject {{"PowerData10", set}}, 0);
        row("matching set 11", match, QJsonObject {{"PowerData11", set}}, 2);
    }

    void recordSave()
    {
        QFETCH(QString, command);
        QFETCH(QJsonObject, payload);
        QFETCH(int, code);

        FreshSimulator sim;
        QSignalSpy changed(&sim, &ControllerSimulator::stateChanged);
        const QString record = command.contains("curve") ? QString("weld_curve_config")
            : command.contains("match")                  ? QString("weld_param_match")
            : command.contains("list")                   ? QString("weld_param_config")
                                                         : command.mid(4);
        const QJsonObject before = sim.record(record);

        QCOMPARE(returnOf(sim, command, payload), code);
        // An accepted save merges into the record and is stored; a refused one leaves both alone.
        QCOMPARE(sim.record(record), code == 0 ? testenv::patched(before, payload) : before);
        QCOMPARE(changed.isEmpty(), code != 0);
        QCOMPARE(QFile::exists(sim.dataFilePath()), code == 0);
    }

    void computeCurve_data()
    {
        QTest::addColumn<QJsonObject>("curve");
        QTest::addColumn<int>("code");
        QTest::addColumn<double>("slope");
        QTest::addColumn<double>("intercept");

        QTest::newRow("two nodes") << QJsonObject {{"laser_power_node", 2},
            {"power_nodes_data", QJsonArray {QJsonArray {0, 0}, QJsonArray {10, 6000}}}}
                                   << 0 << 600.0 << 0.0;
        QTest::newRow("three scattered nodes") << QJsonObject {{"laser_frequency_node", 3},
            {"frequency_nodes_data",
                QJsonArray {QJsonArray {0, 0}, QJsonArray {1, 1}, QJsonArray {2, 3}}}}
                                               << 0 << 1.5 << -1.0 / 6.0;
        QTest::newRow("node count below the rows") << QJsonObject {{"laser_dutycycle_node", 2},
            {"dutycycle_nodes_data",
                QJsonArray {QJsonArray {0, 1}, QJsonArray {10, 100}, QJsonArray {20, 0}}}}
                                                   << 0 << 9.9 << 1.0;
        QTest::newRow("one node") << QJsonObject {{"laser_power_node", 1},
            {"power_nodes_data", QJsonArray {QJsonArray {0, 0}}}}
                                  << 2 << 0.0 << 0.0;
        QTest::newRow("equal raw values") << QJsonObject {{"laser_power_node", 2},
            {"power_nodes_data", QJsonArray {QJsonArray {5, 0}, QJsonArray {5, 6000}}}}
                                          << 2 << 0.0 << 0.0;
        QTest::newRow("raw values beyond a double's reach") << QJsonObject {{"laser_power_node", 2},
            {"power_nodes_data", QJsonArray {QJsonArray {-1e308, 0}, QJsonArray {1e308, 1}}}}
                                                            << 2 << 0.0 << 0.0;
    }

    void computeCurve()
    {
        QFETCH(QJsonObject, curve);
        QFETCH(int, code);
        QFETCH(double, slope);
        QFETCH(double, intercept);

        FreshSimulator sim;
        const QJsonObject entry = entryOf(sim, "compute_curve_config", curve);
        QCOMPARE(entry.value("return").toInt(), code);
        if (code != 0) {
            QVERIFY(!entry.contains("slope"));
            QVERIFY(!entry.contains("intercept"));
            return;
        }
        QVERIFY(qAbs(entry.value("slope").toDouble() - slope) < 1e-9);
        QVERIFY(qAbs(entry.value("intercept").toDouble() - intercept) < 1e-9);
    }

    void droppedConnectionAnswersNothingUntilRestored()
    {
        FreshSimulator sim;
        kelplugin::setControllerBackend(&sim);
        QSignalSpy restored(
            &kelplugin::kelPluginInterface(), &kelplugin::InterfaceManager::sigNetworkConnect);

        sim.setConnected(false);
        QVERIFY(sim.commandCustomData(nullptr, key, QJsonObject {{"set_weld_red_light", true}})
                    .isEmpty());
        QVERIFY(!sim.isRedLightOn());
        QVERIFY(kelplugin::kelPluginInterface().getKelServiceData("weld_io_config").isUndefined());
        QCOMPARE(restored.count(), 0);

        sim.setConnected(true);
        QCOMPARE(restored.count(), 1);
        QVERIFY(kelplugin::kelPluginInterface().getKelServiceData("weld_io_config").isObject());
        kelplugin::setControllerBackend(nullptr);
    }

    void addCurrentPoint_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("overwrite");
        QTest::addColumn<QString>("tool");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("pointCount");

        QTest::newRow("new name") << "pWeld1" << false << "tool1" << true << 4;
        QTest::newRow("duplicate") << "p20" << false << "tool0" << false << 3;
        QTest::newRow("duplicate overwritten") << "p20" << true << "tool0" << true << 3;
        QTest::newRow("not an identifier") << "1p" << false << "tool0" << false << 3;
        QTest::newRow("unknown tool") << "p99" << false << "tool7" << false << 3;
    }

    void addCurrentPoint()
    {
        QFETCH(QString, name);
        QFETCH(bool, overwrite);
        QFETCH(QString, tool);
        QFETCH(bool, accepted);
        QFETCH(int, pointCount);

        FreshSimulator sim;
        QCOMPARE(sim.addCurrentPoint(name, overwrite, tool, "wobj0"), accepted);
        QCOMPARE(sim.getPointNameList().size(), pointCount);
    }

    void lists_data()
    {
        QTest::addColumn<int>("portsPerType");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<QStringList>("expected");

        QStringList outputs;
        for (int i = 1; i <= 32; ++i)
            outputs.append(QStringLiteral("DO%1").arg(i));
        QTest::newRow("default digital outputs") << -1 << "DO" << true << outputs;
        QTest::newRow("uniform group inputs")
            << 3 << "GI" << true << QStringList {"GI1", "GI2", "GI3"};
        QTest::newRow("disconnected") << 3 << "DI" << false << QStringList {};
    }

    void lists()
    {
        QFETCH(int, portsPerType);
        QFETCH(QString, type);
        QFETCH(bool, connected);
        QFETCH(QStringList, expected);

        FreshSimulator sim;
        if (portsPerType >= 0)
            sim.setIoLayout(kelcontroller::IoLayout::uniform(portsPerType));
        sim.setConnected(connected);
        QCOMPARE(sim.getIOByType(type), expected);
        QCOMPARE(sim.getRegisterHash().value("R").size(), connected ? 32 : 0);
    }
};

QTEST_GUILESS_MAIN(TestControllerSimulator)
#include "tst_controllersimulator.moc"
