// The backup file, the restore's refusals and reports, and the controller's change history.
#include "controller/changehistory.h"
#include "controller/controllersimulator.h"
#include "core/recorddiff.h"
#include "page/configbackup.h"
#include "page/configrestore.h"
#include "page/laserweldpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include "kelplugin/controllerbackend.h"

#include <QtTest>

using kelcontroller::ChangeHistory;
using kelcontroller::ControllerSimulator;
using kellaser::RecordDiff;

namespace {

QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

QByteArray backupOf(const QJsonObject &records)
{
    return ConfigBackup::write(records, {}, QDateTime::fromSecsSinceEpoch(0));
}

// A simulator in a folder of its own, installed as the plug-in's controller.
struct Cell : QTemporaryDir, ControllerSimulator
{
    Cell() : ControllerSimulator(QTemporaryDir::path()) { kelplugin::setControllerBackend(this); }
    ~Cell() override { kelplugin::setControllerBackend(nullptr); }
    QJsonObject records() const
    {
        QJsonObject all;
        for (const QString &key : ConfigBackup::recordKeys())
            all.insert(key, record(key));
        return all;
    }
};

} // namespace

class TestConfigBackup : public QObject
{
    Q_OBJECT
private slots:
    void diffNamesEveryChangedKey_data()
    {
        QTest::addColumn<QJsonObject>("before");
        QTest::addColumn<QJsonObject>("after");
        QTest::addColumn<QStringList>("changes"); // kind letter and key

        QTest::newRow("equal") << json(R"({"a": 1, "s": {"x": [1, 2]}})")
                               << json(R"({"a": 1, "s": {"x": [1, 2]}})") << QStringList();
        QTest::newRow("added, removed, changed")
            << json(R"({"a": 1, "b": 2})") << json(R"({"b": 3, "c": 4})")
            << QStringList {"R a", "C b", "A c"};
        QTest::newRow("nested set field")
            << json(R"({"LsData3": {"laser_power_weld": 2000, "Tips": "x"}})")
            << json(R"({"LsData3": {"laser_power_weld": 1800, "Tips": "x"}})")
            << QStringList {"C LsData3.laser_power_weld"};
        QTest::newRow("whole set added")
            << json(R"({})") << json(R"({"LsData4": {"a": 1}})") << QStringList {"A LsData4"};
        QTest::newRow("array changes whole")
            << json(R"({"n": [[0, 0], [10, 6000]]})") << json(R"({"n": [[0, 0], [10, 5000]]})")
            << QStringList {"C n"};
        QTest::newRow("object turned number")
            << json(R"({"s": {"a": 1}})") << json(R"({"s": 1})") << QStringList {"C s"};
    }

    void diffNamesEveryChangedKey()
    {
        QFETCH(QJsonObject, before);
        QFETCH(QJsonObject, after);
        QFETCH(QStringList, changes);
        QStringList seen;
        for (const auto &change : RecordDiff::diff(before, after)) {
            const char kind = change.kind == RecordDiff::Kind::Added ? 'A'
                : change.kind == RecordDiff::Kind::Removed           ? 'R'
                                                                     : 'C';
            seen.append(QStringLiteral("%1 %2").arg(QLatin1Char(kind)).arg(change.key));
        }
        QCOMPARE(seen, changes);
        // The controller's history sees the same keys change.
        QCOMPARE(ChangeHistory::changes(before, after).size(), changes.size());
    }

    void unusableFilesAreRefusedWhole_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");

        const QByteArray good = backupOf({{"weld_param_config", QJsonObject()}});
        QTest::newRow("empty") << QByteArray("  \n") << "empty";
        QTest::newRow("huge") << QByteArray(ConfigBackup::maxFileSize + 1, ' ') + "{}"
                              << "too large";
        QTest::newRow("not json") << QByteArray("LsData1=3") << "damaged";
        QTest::newRow("cut short") << good.left(good.size() / 2) << "damaged";
        QTest::newRow("other format")
            << QByteArray(R"({"format": "x", "version": 1})") << "no laser welding backup";
        QTest::newRow("newer version")
            << QByteArray(good).replace("\"version\": 1", "\"version\": 2") << "newer version";
        QTest::newRow("version as text")
            << QByteArray(good).replace("\"version\": 1", "\"version\": \"1\"") << "version";
        QTest::newRow("unknown record") << QByteArray(good).replace("weld_param_config",
            "weld_param_configs") << "unknown record";
        QTest::newRow("record not an object")
            << QByteArray(good).replace("{\n        }", "[]") << "not an object";
    }

    void unusableFilesAreRefusedWhole()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        const ConfigBackup::Contents contents = ConfigBackup::read(bytes);
        QVERIFY2(contents.error.contains(error), qPrintable(contents.error));
        QVERIFY(contents.records.isEmpty());
    }

    void recordsThePagesWouldRefuseAreNotSent_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("key"); // dotted path of the value changed
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("refusal");

        QTest::newRow("duplicate port") << "weld_io_config"
                                        << "gas_protect_port" << QJsonValue("DO1") << "DO1";
        QTest::newRow("empty port") << "weld_io_config"
                                    << "laser_enable_port" << QJsonValue("") << "empty port";
        QTest::newRow("feedback delay below check-out")
            << "weld_setting_config"
            << "feedback_delay" << QJsonValue(100) << "light output";
        QTest::newRow("curve not increasing")
            << "weld_curve_config"
            << "power_nodes_data" << QJsonValue(QJsonArray {QJsonArray {0, 0}, QJsonArray {0, 10}})
            << "line 2";
        QTest::newRow("matching speed equal")
            << "weld_param_match"
            << "PowerData1.power_data"
            << QJsonValue(QJsonArray {QJsonArray {10, 1, 1, 1}, QJsonArray {10, 2, 2, 2},
                   QJsonArray {30, 3, 3, 3}, QJsonArray {40, 4, 4, 4}})
            << "row 2";
        QTest::newRow("wrong type") << "weld_io_config"
                                    << "power_type" << QJsonValue("0") << "wrong type";
        QTest::newRow("unknown key") << "weld_setting_config"
                                     << "laser_powr" << QJsonValue(3000) << "unknown key";
        QTest::newRow("set beyond the list")
            << "weld_param_config"
            << "LsData31" << QJsonValue(QJsonObject()) << "set name";
        QTest::newRow("padded set name") << "weld_param_config"
                                         << "LsData01" << QJsonValue(QJsonObject()) << "set name";
        QTest::newRow("unknown set field") << "weld_param_config"
                                           << "LsData1.power" << QJsonValue(1) << "unknown key";
        QTest::newRow("nested object in a set")
            << "weld_param_config"
            << "LsData1.Tips" << QJsonValue(QJsonObject()) << "wrong type";
    }

    void recordsThePagesWouldRefuseAreNotSent()
    {
        QFETCH(QString, record);
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(QString, refusal);
        Cell cell;
        QJsonObject records = cell.records();
        QJsonObject changed = records.value(record).toObject();
        const QStringList path = key.split('.');
        if (path.size() == 2) {
            QJsonObject set = changed.value(path.first()).toObject();
            set.insert(path.last(), value);
            changed.insert(path.first(), set);
        } else {
            changed.insert(key, value);
        }
        records.insert(record, changed);
        QVERIFY(ConfigRestore::refusal(record, changed, cell.record(record)).contains(refusal));

        QSignalSpy sent(&cell, &ControllerSimulator::commandHandled);
        const auto results = ConfigRestore::restore(this, records, {record});
        QCOMPARE(results.size(), 1);
        QVERIFY(!results.first().restored);
        QVERIFY2(results.first().message.contains(refusal), qPrintable(results.first().message));
        QCOMPARE(sent.count(), 0);
    }

    void backupRestoresIntoAnotherCell()
    {
        Cell source;
        const QJsonObject set {{"LsData5", QJsonObject {{"laser_power_weld", 900}}}};
        QCOMPARE(ConfigRestore::restore(this, {{"weld_param_config", set}}, {"weld_param_config"})
                     .first()
                     .restored,
            true);
        const QByteArray backup = backupOf(source.records());
        const ConfigBackup::Contents contents = ConfigBackup::read(backup);
        QVERIFY2(contents.error.isEmpty(), qPrintable(contents.error));

        Cell target;
        const auto results
            = ConfigRestore::restore(this, contents.records, ConfigBackup::recordKeys());
        QCOMPARE(results.size(), 5);
        for (const auto &result : results)
            QVERIFY2(result.restored, qPrintable(result.record + ": " + result.message));
        QCOMPARE(backupOf(target.records()), backup);
        // The history shows the restore like any other save, with the level it was made at.
        const auto &entries = target.history().entries();
        QVERIFY(!entries.isEmpty());
        QCOMPARE(entries.last().command, QStringLiteral("set_weld_param_list_config"));
        QCOMPARE(entries.last().userLevel, 3);
        QCOMPARE(entries.last().changes.first().key, QStringLiteral("LsData5"));
    }

    void restoreGoesOnPastARefusedRecord()
    {
        Cell cell;
        QJsonObject records = cell.records();
        const auto change = [&records](const char *record, const char *key, const QJsonValue &v) {
            QJsonObject r = records.value(record).toObject();
            r.insert(key, v);
            records.insert(record, r);
        };
        change("weld_io_config", "red_light_port", "DO20");
        change("weld_setting_config", "laser_power", 2500);
        change("weld_param_config", "LsData2", QJsonObject {{"laser_power_weld", 777}});
        // The controller refuses the second record's command, half-way through the restore.
        int handled = 0;
        connect(&cell, &ControllerSimulator::commandHandled, this, [&cell, &handled] {
            if (++handled == 1)
                cell.injectReturnCode(ControllerSimulator::Refused);
        });
        const auto results = ConfigRestore::restore(
            this, records, {"weld_io_config", "weld_setting_config", "weld_param_config"});
        QCOMPARE(results.size(), 3);
        QCOMPARE(results.at(1).record, QStringLiteral("weld_setting_config"));
        QVERIFY(results.at(0).restored);
        QVERIFY(!results.at(1).restored);
        QVERIFY(results.at(1).message.contains("code 3"));
        QVERIFY(results.at(2).restored);
        QCOMPARE(cell.record("weld_io_config").value("red_light_port").toString(),
            QStringLiteral("DO20"));
        QVERIFY(cell.record("weld_setting_config").value("laser_power").toInt() != 2500);
        QCOMPARE(
            QJsonValue(cell.record("weld_param_config"))["LsData2"]["laser_power_weld"].toInt(),
            777);
    }

    // A controller that does not answer for a record: no backup that would restore it empty,
    // and no restore of it without its current state to check against.
    void anUnansweredRecordIsNeitherBackedUpNorRestored()
    {
        QJsonObject records;
        {
            Cell cell;
            records = cell.records();
        }
        ScriptedController controller;
        for (const QString &key : ConfigBackup::recordKeys())
            controller.serviceData.insert(key, records.value(key));
        controller.serviceData.remove("weld_curve_config");
        kelplugin::setControllerBackend(&controller);
        RecordingShell shell;
        QTemporaryDir dir;
        LaserWeldPage page;
        QVERIFY(!page.backupTo(dir.filePath("backup.json")));
        QVERIFY(!QFile::exists(dir.filePath("backup.json")));
        QVERIFY(shell.messageTexts().last().contains("weld_curve_config"));

        const auto results
            = ConfigRestore::restore(this, records, {"weld_setting_config", "weld_curve_config"});
        kelplugin::setControllerBackend(nullptr);
        QCOMPARE(results.size(), 2);
        QVERIFY(results.at(0).restored);
        QVERIFY(!results.at(1).restored);
        QVERIFY(!results.at(1).message.isEmpty());
        QCOMPARE(controller.sentCommands(), QStringList {"set_weld_setting_config"});
    }

    void restoreWhileWeldingIsRefused()
    {
        Cell cell;
        cell.commandCustomData(nullptr, "kellaserweld", "set_weld_enable", "TRUE");
        QVERIFY(cell.isWeldingEnabled());
        QSignalSpy sent(&cell, &ControllerSimulator::commandHandled);
        const auto results
            = ConfigRestore::restore(this, cell.records(), ConfigBackup::recordKeys());
        QCOMPARE(results.size(), 1);
        QVERIFY(results.first().message.contains("Welding is switched on"));
        QCOMPARE(sent.count(), 0);
    }

    void historyIsBoundedAndSurvivesARestart()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("history.json");
        {
            ChangeHistory history(path, 3);
            QString error;
            for (int i = 1; i <= 5; ++i)
                QVERIFY(history.add({QDateTime::fromSecsSinceEpoch(i), i % 6, "set_weld_io_config",
                                        "weld_io_config",
                                        ChangeHistory::changes(json("{}"), QJsonObject {{"n", i}}),
                                        QStringLiteral("pendant %1").arg(i)},
                    &error));
            QVERIFY(history.add({QDateTime::fromSecsSinceEpoch(9), 3, "c", "r", {}, {}}, &error));
        }
        ChangeHistory reread(path, 3);
        QCOMPARE(reread.load(), QString());
        QCOMPARE(reread.entries().size(), 3);
        QCOMPARE(reread.entries().first().changes.first().after.toInt(), 3);
        QVERIFY(reread.entries().first().changes.first().before.isUndefined());
        QCOMPARE(reread.csv().split('\n').at(1),
            QByteArray(
                "1970-01-01T00:00:03.000Z,3,set_weld_io_config,weld_io_config,n,,3,pendant 3"));
        QCOMPARE(reread.csv("weld_setting_config").count('\n'), 1);

        QFile damaged(path);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(R"({"entries": [{"time": 5}]})");
        damaged.close();
        ChangeHistory repaired(path, 3);
        QVERIFY(repaired.load().contains("damaged"));
        QVERIFY(repaired.entries().isEmpty());
    }

private:
    RecordingShell m_shell;
};

QTEST_MAIN(TestConfigBackup)
#include "tst_configbackup.moc"
