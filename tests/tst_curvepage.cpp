#include "page/characteristicscurvepage.h"
#include "page/curveaxes.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"
#include "widget/customchart.h"
#include "widget/fieldhint.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

#include <limits>

namespace {

QJsonValue json(const char *text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

const char *const kAllPortsIo = R"({"power_enabled": true, "power_port": "GO1",
    "wire_speed_enabled": true, "wire_speed_port": "AO2",
    "frequency_enabled": true, "frequency_port": "GO3",
    "duty_cycle_enabled": true, "duty_cycle_port": "AO4"})";

const char *const kFullCurves = R"({
    "laser_power_node": 3, "power_nodes_data": [[0, 0], [100.5, 1500], [200, 3000]],
    "laser_feed_node": 2, "feed_nodes_data": [[0, 0], [50, 100]],
    "laser_frequency_node": 2, "frequency_nodes_data": [[1, 10], [2, 20]],
    "laser_dutycycle_node": 2, "dutycycle_nodes_data": [[1, 1], [5, 100]]})";

// Each row of a node table as "raw,physical".
QStringList tableRows(const QTableWidget *table)
{
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        const auto *raw = qobject_cast<QDoubleSpinBox *>(table->cellWidget(row, 1));
        const auto *physical = qobject_cast<QSpinBox *>(table->cellWidget(row, 2));
        const QTableWidgetItem *number = table->item(row, 0);
        rows.append(QStringLiteral("%1:%2,%3")
                        .arg(number ? number->text() : QStringLiteral("?"))
                        .arg(raw ? QString::number(raw->value(), 'f', 2) : QStringLiteral("-"))
                        .arg(physical ? QString::number(physical->value()) : QStringLiteral("-")));
    }
    return rows;
}

void setNode(QTableWidget *table, int row, double raw, int physical)
{
    qobject_cast<QDoubleSpinBox *>(table->cellWidget(row, 1))->setValue(raw);
    qobject_cast<QSpinBox *>(table->cellWidget(row, 2))->setValue(physical);
}

} // namespace

// The curve page with the pendant and the controller stood in for; records as given.
struct PageUnderTest
{
    ScriptedController controller;
    RecordingShell shell;
    CharacteristicsCurvePage page {nullptr};

    explicit PageUnderTest(
        const QJsonValue &curves = json(kFullCurves), const QJsonValue &io = json(kAllPortsIo))
    {
        controller.serviceData.insert(QStringLiteral("weld_curve_config"), curves);
        controller.serviceData.insert(QStringLiteral("weld_io_config"), io);
    }

    void show()
    {
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        shell.clear();
        controller.clearSent();
    }

    template<typename T> T *child(const char *name) const
    {
        return page.findChild<T *>(QLatin1String(name));
    }
    void click(const char *button) const { child<QPushButton>(button)->click(); }
    QTableWidget *table(const char *name) const { return child<QTableWidget>(name); }
};

class TestCurvePage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }
    void init() { testenv::resetLogFile(); }

    void badTableStopsCompute_data()
    {
        QTest::addColumn<QByteArray>("powerNodes");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("hint"); // at the value to correct

        const QString order
            = QStringLiteral("1|The data in line %1 must be greater than the data in "
                             "row %2!");
        QTest::newRow("equal raw values") << QByteArray("[[5, 10], [5, 20]]") << order.arg(2).arg(1)
                                          << "Node 2 output value must be greater than in node 1";
        QTest::newRow("equal physical values")
            << QByteArray("[[5, 10], [6, 10]]") << order.arg(2).arg(1)
            << "Node 2 Power(W) must be greater than in node 1";
        QTest::newRow("only the first bad row is named")
            << QByteArray("[[1, 1], [2, 2], [2, 3], [1, 1]]") << order.arg(3).arg(2)
            << "Node 3 output value must be greater than in node 2";
        // The combo cannot make a one-row table, but a record with node count 1 does.
        const QString twoRows
            = QStringLiteral("1|Validation failed,The table requires at least two rows of data!");
        QTest::newRow("one row from the record")
            << QByteArray("[[1, 10]]") << twoRows << "At least two nodes";
    }

    void badTableStopsCompute()
    {
        QFETCH(QByteArray, powerNodes);
        QFETCH(QString, message);
        QFETCH(QString, hint);
        const QByteArray record
            = "{\"laser_power_node\": " + QByteArray::number(json(powerNodes).toArray().size())
            + ", \"power_nodes_data\": " + powerNodes + "}";
        PageUnderTest t(json(record.constData()));
        t.show();

        t.click("pushButton_compute");
        t.click("pushButton_Save_laserpower");

        QCOMPARE(testenv::shownMessages(t.shell), QStringList({message, message}));
        QVERIFY(t.controller.sent.isEmpty());
        QVERIFY(!t.child<CustomChart>("Chart_laserpower")->hasLine());
        const FieldHint *shown = FieldHint::visibleIn(&t.page);
        QCOMPARE(shown ? shown->text() : QString(), hint);
        QVERIFY(shown);
        QVERIFY(shown->field() == t.page.focusWidget()
            || shown->field()->isAncestorOf(t.page.focusWidget()));
    }

    void nodeCountChangeWipesTheTab()
    {
        PageUnderTest t;
        t.show();

        t.child<QComboBox>("comboBox_node_3")->setCurrentIndex(3);

        QCOMPARE(tableRows(t.table("tableWidget_frequency")),
            QStringList({"1:0.00,0", "2:0.00,0", "3:0.00,0", "4:0.00,0", "5:0.00,0"}));
        QCOMPARE(
            tableRows(t.table("tableWidget_feedspeed")), QStringList({"1:0.00,0", "2:50.00,100"}));
        QVERIFY(t.controller.sent.isEmpty());
    }

    void recordLoading_data()
    {
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<QString>("tableName");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<int>("comboIndex");

        QTest::newRow("duty cycle short array pads with the spin minimum")
            << QByteArray(R"({"laser_power_node": 2, "laser_dutycycle_node": 5,
            "dutycycle_nodes_data": [[1.5, 10], [2, 20], [3, 30]]})")
            << "tableWidget_dutycycle"
            << QStringList {"1:1.50,10", "2:2.00,20", "3:3.00,30", "4:0.00,1", "5:0.00,1"} << 3;
        QTest::newRow("node count 1 ignores the second row")
            << QByteArray(R"({"laser_power_node": 1, "power_nodes_data": [[1, 10], [2, 20]]})")
            << "tableWidget_laserpower" << QStringList {"1:1.00,10"} << -1;
        const QStringList tenRows {"1:0.00,0", "2:0.00,0", "3:0.00,0", "4:0.00,0", "5:0.00,0",
            "6:0.00,0", "7:0.00,0", "8:0.00,0", "9:0.00,0", "10:0.00,0"};
        QTest::newRow("ten nodes, the most the combo offers")
            << QByteArray(R"({"laser_power_node": 10, "power_nodes_data": []})")
            << "tableWidget_laserpower" << tenRows << 8;
        QTest::newRow("huge node count is capped at ten rows")
            << QByteArray(R"({"laser_power_node": 1e300, "power_nodes_data": []})")
            << "tableWidget_laserpower" << tenRows << -1;
    }

    void recordLoading()
    {
        QFETCH(QByteArray, record);
        QFETCH(QString, tableName);
        QFETCH(QStringList, rows);
        QFETCH(int, comboIndex);
        PageUnderTest t(json(record.constData()));

        t.show();

        const auto *table = t.page.findChild<QTableWidget *>(tableName);
        QCOMPARE(tableRows(table), rows);
        const QComboBox *combo
            = qobject_cast<QComboBox *>(table->parentWidget()->findChild<QComboBox *>());
        QVERIFY(combo);
        QCOMPARE(combo->currentIndex(), comboIndex);
        QVERIFY(t.controller.sent.isEmpty());
        QVERIFY(t.shell.messages.isEmpty());
    }

    void portLookup_data()
    {
        QTest::addColumn<QByteArray>("io");
        QTest::addColumn<QStringList>("headers");
        QTest::addColumn<QList<bool>>("tabsEnabled");

        const QString none = QStringLiteral("Not configured");
        QTest::newRow("all ports assigned")
            << QByteArray(kAllPortsIo) << QStringList {"GO1", "AO2", "GO3", "AO4"}
            << QList<bool> {true, true, true, true};
        QTest::newRow("port switched off or without its switch")
            << QByteArray(R"({"power_enabled": false, "power_port": "GO1",
            "wire_speed_enabled": true, "wire_speed_port": "AO2", "frequency_port": "GO3"})")
            << QStringList {none, "AO2", none, none} << QList<bool> {false, true, false, false};
        QTest::newRow("null or missing port")
            << QByteArray(R"({"power_enabled": true, "power_port": null, "frequency_enabled": true,
            "duty_cycle_enabled": true, "duty_cycle_port": ""})")
            << QStringList {none, none, none, ""} << QList<bool> {false, false, false, true};
    }

    void portLookup()
    {
        QFETCH(QByteArray, io);
        QFETCH(QStringList, headers);
        QFETCH(QList<bool>, tabsEnabled);
        PageUnderTest t(json(kFullCurves), json(io.constData()));

        t.show();

        const char *tables[] = {"tableWidget_laserpower", "tableWidget_feedspeed",
            "tableWidget_frequency", "tableWidget_dutycycle"};
        const char *tabs[] = {"laserpower", "feedspeed", "frequency", "dutycycle"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(t.table(tables[i])->horizontalHeaderItem(1)->text(), headers.at(i));
            QCOMPARE(t.child<QWidget>(tabs[i])->isEnabled(), tabsEnabled.at(i));
        }
    }

    void axisChoice_data()
    {
        QTest::addColumn<QVector<QPointF>>("points");
        QTest::addColumn<QVector<int>>("axes"); // xMin, xMax, xStep, yMin, yMax, yStep

        QTest::newRow("inside the start ranges")
            << QVector<QPointF> {{0, 0}, {10, 5}} << QVector<int> {0, 10, 2, 0, 5, 1};
        QTest::newRow("just over the start ranges")
            << QVector<QPointF> {{10.5, 5.5}} << QVector<int> {0, 11, 6, 0, 6, 1};
        QTest::newRow("steps follow the last growth")
            << QVector<QPointF> {{1, 8}, {2, 60}, {3, 7}} << QVector<int> {0, 10, 2, 0, 61, 16};
        QTest::newRow("exact power of ten")
            << QVector<QPointF> {{99, 999}} << QVector<int> {0, 100, 40, 0, 1000, 400};
        QTest::newRow("negative physical lowers y only")
            << QVector<QPointF> {{-5, -3.5}} << QVector<int> {0, 10, 2, -4, 5, 1};
        QTest::newRow("non-finite values stay bounded")
            << QVector<QPointF> {{std::numeric_limits<double>::quiet_NaN(),
                   std::numeric_limits<double>::infinity()}}
            << QVector<int> {0, 10, 2, 0, 1000000000, 400000000};
    }

    void axisChoice()
    {
        QFETCH(QVector<QPointF>, points);
        QFETCH(QVector<int>, axes);

        const CurveAxes chosen = CurveAxes::choose(points);

        QCOMPARE((QVector<int> {chosen.xMin, chosen.xMax, chosen.xStep, chosen.yMin, chosen.yMax,
                     chosen.yStep}),
            axes);
    }

    void saveSendsTheTabsCommand_data()
    {
        QTest::addColumn<QByteArray>("saveButton");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("curveKeys");
        QTest::addColumn<int>("code");

        QTest::newRow("power") << QByteArray("pushButton_Save_laserpower")
                               << "set_weld_curve_power_config"
                               << QStringList {"laser_power_node", "power_nodes_data"} << 0;
        QTest::newRow("feed speed")
            << QByteArray("pushButton_Save_speed") << "set_weld_curve_feed_config"
            << QStringList {"laser_feed_node", "feed_nodes_data"} << 0;
        QTest::newRow("frequency")
            << QByteArray("pushButton_Save_frequency") << "set_weld_curve_frequency_config"
            << QStringList {"laser_frequency_node", "frequency_nodes_data"} << 0;
        QTest::newRow("duty cycle refused")
            << QByteArray("pushButton_Save_dutycycle") << "set_weld_curve_dutycycle_config"
            << QStringList {"laser_dutycycle_node", "dutycycle_nodes_data"} << 4;
    }

    void saveSendsTheTabsCommand()
    {
        QFETCH(QByteArray, saveButton);
        QFETCH(QString, command);
        QFETCH(QStringList, curveKeys);
        QFETCH(int, code);
        PageUnderTest t;
        t.show();
        t.controller.repliesByCommand.insert(command, ScriptedController::reply(command, code));

        t.click(saveButton.constData());

        // The tab's own curve, as loaded, goes to the fit and then to the save.
        const QJsonObject all = json(kFullCurves).toObject();
        const QJsonValue curve = QJsonObject {{curveKeys.at(0), all.value(curveKeys.at(0))},
            {curveKeys.at(1), all.value(curveKeys.at(1))}};
        QCOMPARE(t.controller.sentCommands(), QStringList({"compute_curve_config", command}));
        QCOMPARE(t.controller.sent.at(0).sender, &t.page);
        QCOMPARE(t.controller.sent.at(0).value, curve);
        QCOMPARE(t.controller.sent.at(1).value, curve);
        QCOMPARE(testenv::shownMessages(t.shell),
            QStringList {code == 0 ? "0|Saved successfully"
                                   : "2|Save failed. Please check the parameter configuration."});
    }

    void cancelReloadsAndRecomputesOnlyDrawnTab_data()
    {
        QTest::addColumn<bool>("drawnBefore");
        QTest::addColumn<QStringList>("commands");

        QTest::newRow("tab without a line") << false << QStringList();
        QTest::newRow("tab with a line") << true << QStringList {"compute_curve_config"};
    }

    void cancelReloadsAndRecomputesOnlyDrawnTab()
    {
        QFETCH(bool, drawnBefore);
        QFETCH(QStringList, commands);
        PageUnderTest t;
        t.show();
        t.click("pushButton_compute_5"); // the feed chart has a line and must be left alone
        if (drawnBefore)
            t.click("pushButton_compute_2");
        setNode(t.table("tableWidget_frequency"), 0, 9, 99);
        setNode(t.table("tableWidget_feedspeed"), 0, 9, 99);
        t.controller.clearSent();
        t.shell.clear();

        t.click("pushButton_cancel_2");

        QCOMPARE(t.controller.sentCommands(), commands);
        if (drawnBefore)
            QCOMPARE(t.controller.sent.first().value.toObject().keys(),
                QStringList({"frequency_nodes_data", "laser_frequency_node"}));
        QCOMPARE(
            tableRows(t.table("tableWidget_frequency")), QStringList({"1:1.00,10", "2:2.00,20"}));
        // Cancel reloads every tab, not only its own.
        QCOMPARE(
            tableRows(t.table("tableWidget_feedspeed")), QStringList({"1:0.00,0", "2:50.00,100"}));
        QCOMPARE(testenv::shownMessages(t.shell), QStringList {"0|Cancel successful"});
    }

    void showRecomputesChartsWithALine()
    {
        PageUnderTest t;
        t.show();
        QVERIFY(t.controller.sent.isEmpty()); // nothing is computed on the first show
        t.controller.repliesByCommand.insert("compute_curve_config",
            json(R"([{"kellaserweld": {"compute_curve_config": {"slope": 3, "intercept": 4}}}])")
                .toArray());
        t.click("pushButton_compute_3");
        t.click("pushButton_compute");
        t.page.hide();
        t.controller.clearSent();

        t.page.show();

        QCOMPARE(t.controller.sentCommands(),
            QStringList({"compute_curve_config", "compute_curve_config"}));
        QVERIFY(
            t.controller.sent.at(0).value.toObject().contains(QStringLiteral("laser_power_node")));
        QVERIFY(t.controller.sent.at(1).value.toObject().contains(
            QStringLiteral("laser_dutycycle_node")));
        const auto *chart = t.child<CustomChart>("Chart_dutycycle");
        QCOMPARE(QPair(chart->slope(), chart->intercept()), QPair(3.0, 4.0));
    }

    void nodeOffTheLineStandsOutAfterCompute()
    {
        PageUnderTest t;
        t.show();
        QTableWidget *table = t.table("tableWidget_laserpower");
        const auto *chart = t.child<CustomChart>("Chart_laserpower");
        const auto *fit = t.child<QLabel>("label_fit_laserpower");
        const auto *figures = t.table("tableWidget_fit_laserpower");
        // 15 W per step, the last node typed 10 % high; the least-squares line through the four
        // leans towards it (16.35 x - 90), so its own deviation is not the largest.
        t.child<QComboBox>("comboBox_node")->setCurrentIndex(2);
        for (int row = 0; row < 3; ++row)
            setNode(table, row, 100 * row, 1500 * row);
        setNode(table, 3, 300, 4950);
        QCOMPARE(figures->rowCount(), 4);
        QVERIFY(!figures->item(3, 1));
        t.controller.repliesByCommand.insert("compute_curve_config",
            json(
                R"([{"kellaserweld": {"compute_curve_config": {"slope": 16.35, "intercept": -90}}}])")
                .toArray());

        t.click("pushButton_compute");

        QCOMPARE(table->columnCount(), 3);
        QCOMPARE(testenv::itemTexts(figures),
            QList<QStringList>({{"1", "90.0", "100.0"}, {"2", "-45.0", "-2.9"},
                {"3", "-180.0", "-5.7"}, {"4", "135.0", "2.8"}}));
        QCOMPARE(figures->horizontalHeaderItem(1)->text(), QStringLiteral("Deviation (W)"));
        QVERIFY(table->item(3, 0)->background() != table->item(2, 0)->background());
        QVERIFY(figures->item(3, 2)->background() != figures->item(2, 2)->background());
        QCOMPARE(chart->fitMark(), 3);
        QCOMPARE(fit->text(),
            QStringLiteral("R² = 0.9955 · stands out most: node 4, 450.0 W (10.0 %) off the line "
                           "through the others"));

        // A changed node makes the figures stale: they go until the next compute.
        setNode(table, 3, 300, 4500);
        QCOMPARE(testenv::itemTexts(figures).at(3), QStringList({"4", "?", "?"}));
        QCOMPARE(chart->fitMark(), -1);
        QVERIFY(fit->text().isEmpty());

        t.controller.repliesByCommand.insert("compute_curve_config",
            json(R"([{"kellaserweld": {"compute_curve_config": {"slope": 15, "intercept": 0}}}])")
                .toArray());
        t.click("pushButton_compute");
        QCOMPARE(chart->fitMark(), -1);
        QCOMPARE(fit->text(), QStringLiteral("R² = 1.0000 · every node lies on the line"));
        QCOMPARE(testenv::itemTexts(figures).at(0), QStringList({"1", "0.0", "line at 0"}));

        t.controller.repliesByCommand.insert("compute_curve_config", QJsonArray());
        t.click("pushButton_compute");
        QCOMPARE(
            fit->text(), QStringLiteral("No fitted line: the nodes' deviations cannot be shown."));
    }
};

QTEST_MAIN(TestCurvePage)
#include "tst_curvepage.moc"
