#include "page/buttonmonitorpage.h"
#include "page/weldrecordsdialog.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include "widget/trendchart.h"

namespace {

const QString kStream = QStringLiteral("weld_monitor_data");
const QString kStart = QStringLiteral("start_laserweld_monitor");

QStringList calls(const RecordingShell &shell, const QString &function)
{
    QStringList found;
    for (const RecordingShell::Call &call : shell.calls) {
        if (call.function == function)
            found.append(call.arguments.join(QLatin1Char('|')));
    }
    return found;
}

} // namespace

class TestMonitorDialog : public QObject
{
    Q_OBJECT

private slots:
    void openingStartsTheStreamAndShowsIt()
    {
        ScriptedController controller;
        RecordingShell shell;
        QWidget mainPage;
        auto *dialog = new ButtonMonitorPage(&mainPage);
        controller.serviceData.insert(kStream, QJsonObject {{QStringLiteral("power"), 1500.5}});

        dialog->openMonitor();

        QCOMPARE(controller.sentCommands(), QStringList {kStart});
        QCOMPARE(controller.sent.first().value, QJsonValue(true));
        QCOMPARE(controller.sent.first().sender, dialog);
        QCOMPARE(calls(shell, QStringLiteral("ChangeModelWindowStatus")),
            QStringList {QStringLiteral("kellaserweld|true")});
        QVERIFY(dialog->isVisible());
        auto *power = dialog->findChild<QDoubleSpinBox *>(QStringLiteral("doubleSpinBox_Power"));
        QCOMPARE(power->value(), 1500.5);

        // The stream moves on while the dialog is open.
        controller.serviceData.insert(kStream, QJsonObject {{QStringLiteral("power"), 1420.0}});
        QTRY_COMPARE(power->value(), 1420.0);
        dialog->reject();
    }

    void closeStopsStreamAndReleasesModalState_data()
    {
        QTest::addColumn<int>("result");
        QTest::newRow("closed with the window button") << int(QDialog::Rejected);
        QTest::newRow("accepted") << int(QDialog::Accepted);
    }

    void closeStopsStreamAndReleasesModalState()
    {
        QFETCH(int, result);
        ScriptedController controller;
        RecordingShell shell;
        QWidget mainPage;
        auto *dialog = new ButtonMonitorPage(&mainPage);
        dialog->openMonitor();
        controller.clearSent();
        shell.clear();

        dialog->done(result);

        QCOMPARE(controller.sentCommands(), QStringList {kStart});
        QCOMPARE(controller.sent.first().value, QJsonValue(false));
        QCOMPARE(controller.sent.first().sender, dialog);
        QCOMPARE(controller.disconnected,
            QStringList {QStringLiteral("kellaserweld|weld_monitor_data|")});
        QCOMPARE(calls(shell, QStringLiteral("ChangeModelWindowStatus")),
            QStringList {QStringLiteral("kellaserweld|false")});

        // A closed monitor no longer reads the stream.
        auto *poll = dialog->findChild<QTimer *>(QStringLiteral("monitorPollTimer"));
        QVERIFY(poll);
        QVERIFY(!poll->isActive());
    }

    void sampleValues_data()
    {
        QTest::addColumn<QJsonValue>("sample");
        QTest::addColumn<QList<double>>("shown");

        const QList<double> before {1.0, 2.0, 3.0, 4.0, 5.0};
        QTest::newRow("all five fields") << QJsonValue(QJsonObject {{"power", 1500},
            {"frequency", 2000.4}, {"duty_cycle", 80}, {"wire_speed", 40.5}, {"weld_speed", 20}})
                                         << QList<double> {1500.0, 2000.4, 80.0, 40.5, 20.0};
        QTest::newRow("missing and text fields show 0")
            << QJsonValue(QJsonObject {{"power", "1500"}, {"weld_speed", 12}})
            << QList<double> {0.0, 0.0, 0.0, 0.0, 12.0};
        QTest::newRow("not an object keeps the last values")
            << QJsonValue(QJsonArray {1, 2}) << before;
    }

    void sampleValues()
    {
        QFETCH(QJsonValue, sample);
        QFETCH(QList<double>, shown);
        ButtonMonitorPage dialog;
        dialog.showSample(QJsonObject {{"power", 1}, {"frequency", 2}, {"duty_cycle", 3},
            {"wire_speed", 4}, {"weld_speed", 5}});

        dialog.showSample(sample);

        QList<double> values;
        for (const ButtonMonitorPage::Field &field : ButtonMonitorPage::fields()) {
            auto *box = dialog.findChild<QDoubleSpinBox *>(QLatin1String(field.box));
            values.append(box->value());
            // Shown, never typed into.
            QCOMPARE(box->focusPolicy(), Qt::NoFocus);
            QVERIFY(box->findChild<QLineEdit *>()->testAttribute(Qt::WA_TransparentForMouseEvents));
        }
        QCOMPARE(values, shown);
    }

    void runLabelFollowsTheStream_data()
    {
        QTest::addColumn<QJsonObject>("stream");
        QTest::addColumn<QString>("run");
        QTest::addColumn<QString>("laser");
        QTest::addColumn<QString>("laserState");

        QTest::newRow("welding in virtual mode")
            << QJsonObject {{"line", 3}, {"phase", "weld"}, {"laser", "simulated"}}
            << QStringLiteral("Line 3 · Weld") << QStringLiteral("Laser SIMULATED")
            << QStringLiteral("simulated");
        QTest::newRow("idle") << QJsonObject {{"line", 0}, {"phase", "idle"}, {"laser", "off"}}
                              << QStringLiteral("No program running · Idle")
                              << QStringLiteral("Laser off") << QStringLiteral("off");
        QTest::newRow("odd fields")
            << QJsonObject {{"line", "3"}, {"phase", "cooling"}, {"laser", "maybe"}}
            << QStringLiteral("No program running · cooling") << QStringLiteral("Laser off")
            << QStringLiteral("off");
    }

    void runLabelFollowsTheStream()
    {
        QFETCH(QJsonObject, stream);
        QFETCH(QString, run);
        QFETCH(QString, laser);
        QFETCH(QString, laserState);
        ScriptedController controller;
        ButtonMonitorPage dialog;

        dialog.showSample(stream);

        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("label_run"))->text(), run);
        auto *laserLabel = dialog.findChild<QLabel *>(QStringLiteral("label_laser"));
        QCOMPARE(laserLabel->text(), laser);
        QCOMPARE(laserLabel->property("laser").toString(), laserState);
    }

    void pollsFeedTheTrendAndTotals()
    {
        ScriptedController controller;
        RecordingShell shell;
        QWidget mainPage;
        auto *dialog = new ButtonMonitorPage(&mainPage);
        const auto stream = [](const QList<int> &times) {
            QJsonArray samples;
            for (int t : times)
                samples.append(QJsonObject {{"t", t}, {"power", t}});
            return QJsonObject {{"phase", "weld"}, {"samples", samples}};
        };
        controller.serviceData.insert(kStream, stream({0, 50, 100}));
        controller.serviceData.insert(QStringLiteral("weld_records"),
            QJsonObject {{"totals",
                QJsonObject {{"welds", 2}, {"laser_on_ms", 4500}, {"wire_used_mm", 80.24}}}});
        auto *trend = dialog->findChild<TrendChart *>(QStringLiteral("trendChart"));
        QVERIFY(trend);

        dialog->openMonitor();
        controller.serviceData.insert(kStream, stream({50, 100, 150, 200}));

        QTRY_COMPARE(trend->samples().size(), 5);
        QCOMPARE(trend->samples().last().values[0], 200.0);
        QCOMPARE(dialog->findChild<QLabel *>(QStringLiteral("label_totals"))->text(),
            QStringLiteral("Welds: 2\nLaser on: 4.5 s\nWire used: 80.2 mm"));

        dialog->findChild<QPushButton *>(QStringLiteral("pushButton_welds"))->click();
        auto *records = dialog->findChild<WeldRecordsDialog *>();
        QVERIFY(records && records->isVisible());
        records->reject();
        dialog->reject();
    }
};

QTEST_MAIN(TestMonitorDialog)
#include "tst_monitordialog.moc"
