#include "page/weldrecordsdialog.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

const QString kRecords = QStringLiteral("weld_records");
const QByteArray kHeader
    = "weld_id,t_ms,power_W,frequency_Hz,duty_cycle_pct,wire_speed_mm_s,weld_speed_mm_s\n";

QJsonObject knownRecord()
{
    return QJsonObject {{"id", 3},
        {"samples",
            QJsonArray {QJsonObject {{"t", 0}, {"power", 1500}, {"frequency", 2000},
                            {"duty_cycle", 100}, {"wire_speed", 40.5}, {"weld_speed", 20}},
                QJsonObject {{"t", 50}, {"power", 1420.1}, {"frequency", 2000},
                    {"duty_cycle", 99.9}, {"wire_speed", -12}, {"weld_speed", 18.2}}}}};
}

} // namespace

class TestWeldRecords : public QObject
{
    Q_OBJECT

private slots:
    void showingFillsListFromController_data()
    {
        QTest::addColumn<QJsonValue>("reply");
        QTest::addColumn<QList<QStringList>>("rows");
        QTest::addColumn<QString>("totals");

        const QString noTotals = QStringLiteral("Welds: 0    Laser on: 0.0 s    Wire used: 0.0 mm");
        QTest::newRow("complete weld and a stopped simulated one")
            << QJsonValue(QJsonDocument::fromJson(R"({
                "totals": {"welds": 7, "laser_on_ms": 63240, "wire_used_mm": 1234.56},
                "welds": [{"id": 2, "start": "2024-05-06T07:08:09.123", "program": "seam",
                    "line": 3, "data_set": "LsData2", "match_set": "PowerData1",
                    "duration_ms": 2500, "length_mm": 50.04, "laser_on_ms": 2400,
                    "wire_mm": 12.34, "simulated": true, "completed": false},
                  {"id": 1, "start": "2024-05-06T07:00:00.000", "program": "seam", "line": 2,
                    "data_set": "LsData1", "match_set": "", "duration_ms": 1000, "length_mm": 20,
                    "laser_on_ms": 1000, "wire_mm": 0, "simulated": false, "completed": true}]})")
                              .object())
            << QList<QStringList> {{"05-06 07:08:09", "seam", "3", "LsData2", "PowerData1", "2.50",
                                       "50.0", "2.40", "12.3", "simulated, stopped"},
                   {"05-06 07:00:00", "seam", "2", "LsData1", "", "1.00", "20.0", "1.00", "0.0",
                       ""}}
            << QStringLiteral("Welds: 7    Laser on: 63.2 s    Wire used: 1234.6 mm");
        QTest::newRow("odd fields show empty or 0")
            << QJsonValue(QJsonObject {{"totals", "many"},
                   {"welds",
                       QJsonArray {QJsonObject {{"id", "x"}, {"start", 5}, {"program", 3},
                           {"line", "7"}, {"duration_ms", "1"}, {"length_mm", QJsonValue()},
                           {"simulated", "yes"}, {"completed", QJsonValue()}}}}})
            << QList<QStringList> {{"", "", "0", "", "", "0.00", "0.0", "0.00", "0.0", ""}}
            << noTotals;
        QTest::newRow("not an object")
            << QJsonValue(QJsonArray {1, 2}) << QList<QStringList> {} << noTotals;
    }

    void showingFillsListFromController()
    {
        QFETCH(QJsonValue, reply);
        QFETCH(QList<QStringList>, rows);
        QFETCH(QString, totals);
        ScriptedController controller;
        controller.serviceData.insert(kRecords, reply);
        WeldRecordsDialog dialog;

        dialog.show();

        QCOMPARE(controller.readKeys, QStringList {kRecords});
        QCOMPARE(testenv::itemTexts(
                     dialog.findChild<QTableWidget *>(QStringLiteral("tableWidget_welds"))),
            rows);
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("label_weldTotals"))->text(), totals);
        QCOMPARE(
            dialog.findChild<QPushButton *>(QStringLiteral("pushButton_exportAll"))->isEnabled(),
            !rows.isEmpty());
        // Nothing is selected yet.
        QVERIFY(!dialog.findChild<QPushButton *>(QStringLiteral("pushButton_exportSelected"))
                     ->isEnabled());
    }

    void csvRowsFromRecord_data()
    {
        QTest::addColumn<QJsonValue>("record");
        QTest::addColumn<QByteArray>("rows");

        QTest::newRow("known record") << QJsonValue(knownRecord())
                                      << QByteArray("3,0,1500,2000,100,40.5,20\n"
                                                    "3,50,1420.1,2000,99.9,-12,18.2\n");
        QTest::newRow("odd samples read 0, non-objects skipped")
            << QJsonValue(QJsonObject {{"samples",
                   QJsonArray {QJsonObject {{"t", "5"}, {"power", "x"}}, 7, QJsonObject {}}}})
            << QByteArray("3,0,0,0,0,0,0\n3,0,0,0,0,0,0\n");
        QTest::newRow("not an object") << QJsonValue(QJsonValue::Undefined) << QByteArray();
    }

    void csvRowsFromRecord()
    {
        QFETCH(QJsonValue, record);
        QFETCH(QByteArray, rows);
        QCOMPARE(WeldRecordsDialog::csvRows(3, record), rows);
    }

    void exportWritesWholeFileOrTellsWhy_data()
    {
        QTest::addColumn<bool>("folderInTheWay");
        QTest::addColumn<bool>("written");
        // Beginnings of the operator messages; %1 is the file's path.
        QTest::addColumn<QStringList>("messages");

        // Weld 4 has gone from the controller's list since the dialog read it.
        QTest::newRow("written, a vanished weld left out")
            << false << true
            << QStringList {QStringLiteral(
                                "The controller no longer keeps weld 4; the export leaves it out."),
                   QStringLiteral("Welds exported to %1")};
        QTest::newRow("a folder where the file should go")
            << true << false
            << QStringList {QStringLiteral("Export failed: %1 could not be written")};
    }

    void exportWritesWholeFileOrTellsWhy()
    {
        QFETCH(bool, folderInTheWay);
        QFETCH(bool, written);
        QFETCH(QStringList, messages);
        ScriptedController controller;
        RecordingShell shell;
        controller.serviceData.insert(QStringLiteral("weld_record.3"), knownRecord());
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("welds.csv"));
        if (folderInTheWay)
            QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("welds.csv/kept")));
        WeldRecordsDialog dialog;

        QCOMPARE(dialog.exportCsv(path, {3, 4}), written);

        QCOMPARE(shell.messages.size(), messages.size());
        for (int i = 0; i < messages.size(); ++i) {
            const QString text = shell.messages.at(i).text;
            QVERIFY2(text.startsWith(messages.at(i).arg(path)), qPrintable(text));
        }
        if (folderInTheWay) {
            QCOMPARE(shell.messages.first().level, int(kelplugin::THROW_LOG_ERROR));
            QVERIFY(QDir(path).exists(QStringLiteral("kept")));
            return;
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
            kHeader + "3,0,1500,2000,100,40.5,20\n3,50,1420.1,2000,99.9,-12,18.2\n");
    }
};

QTEST_MAIN(TestWeldRecords)
#include "tst_weldrecords.moc"
