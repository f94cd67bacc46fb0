#include "page/weldparameterpage.h"
#include "parampagefixture.h"
#include "support/leveltexts.h"
#include "support/testenvironment.h"
#include "widget/fieldhint.h"
#include "widget/previewchart.h"
#include "widget/switchbutton.h"

#include <QLabel>
#include <QSpinBox>
#include <QtTest>

namespace {

using Nodes = QList<QList<int>>;

const QString kMatchRecord = QStringLiteral("weld_param_match");
const QString kSaveCommand = QStringLiteral("set_weld_param_match_config");

QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

QTableWidget *editorTable(const ParamPageFixture &t)
{
    return t.child<QTableWidget>("tableWidget_matching");
}

// Node rows 1..4 of the editor, columns 1..4: speed, power, frequency, duty cycle.
Nodes tableNodes(QTableWidget *table)
{
    Nodes nodes;
    for (int row = 1; row < table->rowCount(); ++row) {
        QList<int> values;
        for (int column = 1; column < table->columnCount(); ++column) {
            auto *spin = qobject_cast<QSpinBox *>(table->cellWidget(row, column));
            const QTableWidgetItem *item = table->item(row, column);
            values.append(spin ? spin->value() : item ? item->text().toInt() : -1);
        }
        nodes.append(values);
    }
    return nodes;
}

void setTableNodes(QTableWidget *table, const Nodes &nodes)
{
    for (int r = 0; r < nodes.size(); ++r) {
        for (int c = 0; c < nodes.at(r).size(); ++c)
            qobject_cast<QSpinBox *>(table->cellWidget(r + 1, c + 1))->setValue(nodes.at(r).at(c));
    }
}

void setSwitches(QTableWidget *table, bool power, bool frequency, bool duty)
{
    // As a click does, so that the preview follows.
    WeldParameterPage::headerSwitch(table, 2)->setOn(power, true);
    WeldParameterPage::headerSwitch(table, 3)->setOn(frequency, true);
    WeldParameterPage::headerSwitch(table, 4)->setOn(duty, true);
}

// A 5 x 5 table with spin boxes but a plain header: no switches at all.
void fillBareTable(QTableWidget &table, const Nodes &nodes)
{
    table.setRowCount(WeldParameterPage::matchingRows);
    table.setColumnCount(WeldParameterPage::matchingColumns);
    for (int row = 1; row < table.rowCount(); ++row) {
        for (int column = 1; column < table.columnCount(); ++column) {
            auto *spin = new QSpinBox;
            spin->setRange(0, 9999);
            table.setCellWidget(row, column, spin);
        }
    }
    setTableNodes(&table, nodes);
}

const QString kRule = QStringLiteral(
    " parameter validation failed at row %1. Previous row value must be less than current row "
    "value.");

QString failure(const char *what, int row)
{
    return QStringLiteral("1|") + QLatin1String(what) + kRule.arg(row);
}

QList<bool> switchStates(QTableWidget *table)
{
    return {WeldParameterPage::headerSwitch(table, 2)->isOn(),
        WeldParameterPage::headerSwitch(table, 3)->isOn(),
        WeldParameterPage::headerSwitch(table, 4)->isOn()};
}

// The preview's lanes by name, then its marks: a ring on a lane's node or a line at a speed.
QStringList previewOf(const PreviewChart::Content &content)
{
    QStringList shown;
    for (const PreviewChart::Lane &lane : content.lanes)
        shown.append(lane.name);
    for (const PreviewChart::Mark &mark : content.marks) {
        shown.append(mark.lane < 0 ? QStringLiteral("line at %1").arg(mark.at.x())
                                   : QStringLiteral("ring on %1 at %2")
                                         .arg(content.lanes.value(mark.lane).name)
                                         .arg(mark.at.x()));
    }
    return shown;
}

const Nodes kRising {
    {10, 100, 1000, 10}, {20, 200, 2000, 20}, {30, 300, 3000, 30}, {40, 400, 4000, 40}};

} // namespace

class TestParamMatching : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void validation_data()
    {
        QTest::addColumn<Nodes>("nodes");
        QTest::addColumn<QList<bool>>("switches");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("preview");
        QTest::addColumn<QPoint>("pointed"); // (table row, column) of the refused value

        const QList<bool> allOn {true, true, true};
        QTest::newRow("speeds 100, 100 in nodes 2 and 3")
            << Nodes {{50, 100, 1000, 10}, {100, 200, 2000, 20}, {100, 300, 3000, 30},
                   {150, 400, 4000, 40}}
            << allOn << QStringList {failure("Speed", 3)}
            << QStringList {"Power", "Frequency", "Duty cycle", "line at 100"} << QPoint(3, 1);
        QTest::newRow("falling power passes with its switch off")
            << Nodes {{10, 400, 1000, 10}, {20, 300, 2000, 20}, {30, 200, 3000, 30},
                   {40, 100, 4000, 40}}
            << QList<bool> {false, true, true} << QStringList()
            << QStringList {"Frequency", "Duty cycle"} << QPoint(-1, -1);
        QTest::newRow("falling power fails first with its switch on")
            << Nodes {{40, 400, 4000, 40}, {30, 300, 3000, 30}, {20, 200, 2000, 20},
                   {10, 100, 1000, 10}}
            << allOn << QStringList {failure("Power", 2)}
            << QStringList {"Power", "Frequency", "Duty cycle", "ring on Power at 30"}
            << QPoint(2, 2);
        QTest::newRow("frequency is checked before duty cycle and speed")
            << Nodes {{10, 100, 4000, 40}, {20, 200, 3000, 30}, {10, 300, 3000, 30},
                   {40, 400, 4000, 40}}
            << allOn << QStringList {failure("Frequency", 2)}
            << QStringList {"Power", "Frequency", "Duty cycle", "ring on Frequency at 20"}
            << QPoint(2, 3);
        QTest::newRow("duty cycle is checked before speed")
            << Nodes {{20, 100, 1000, 40}, {10, 200, 2000, 40}, {30, 300, 3000, 50},
                   {40, 400, 4000, 60}}
            << QList<bool> {false, false, true} << QStringList {failure("Duty Cycle", 2)}
            << QStringList {"Duty cycle", "ring on Duty cycle at 10"} << QPoint(2, 4);
        QTest::newRow("switched-off columns may do anything, speed must still rise")
            << Nodes {{10, 0, 0, 0}, {20, 0, 0, 0}, {30, 5, 5, 5}, {30, 0, 0, 0}}
            << QList<bool> {false, false, false} << QStringList {failure("Speed", 4)}
            << QStringList {"line at 30"} << QPoint(4, 1);
    }

    void validation()
    {
        QFETCH(Nodes, nodes);
        QFETCH(QList<bool>, switches);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, preview);
        QFETCH(QPoint, pointed);
        ParamPageFixture t;
        t.show();
        QTableWidget *table = editorTable(t);
        setTableNodes(table, nodes);
        setSwitches(table, switches.at(0), switches.at(1), switches.at(2));

        const bool valid = t.page->validateMatchingTableParams();

        QCOMPARE(valid, messages.isEmpty());
        QCOMPARE(testenv::shownMessages(t.shell), messages);
        // The preview names, before any Save, the node the validation refuses.
        QCOMPARE(t.child<QLabel>("label_matchingHint")->text(),
            messages.isEmpty() ? QString() : messages.first().section(QLatin1Char('|'), 1));
        // Only switched-on quantities are drawn, the refused node marked on its own lane.
        QCOMPARE(previewOf(t.child<PreviewChart>("matchingChart")->content()), preview);
        // Validation never edits what the operator typed.
        QCOMPARE(tableNodes(table), nodes);
        // The refused value takes the focus and the hint.
        const FieldHint *hint = FieldHint::visibleIn(table);
        QCOMPARE(hint ? hint->field() : nullptr,
            pointed.x() < 0 ? nullptr : table->cellWidget(pointed.x(), pointed.y()));
        if (hint)
            QVERIFY(hint->field()->isAncestorOf(t.page->focusWidget()));
    }

    void missingSwitchesCountAsOnButAreWrittenOff()
    {
        RecordingShell shell;
        QTableWidget table;
        fillBareTable(table,
            Nodes {{10, 400, 1000, 10}, {20, 300, 2000, 20}, {30, 200, 3000, 30},
                {40, 100, 4000, 40}});
        QTest::ignoreMessage(QtWarningMsg,
            "validateMatchingTableParams: Power validation failed at row 2 . Previous: 400  "
            "Current: "
            "300");

        QVERIFY(!WeldParameterPage::validateMatchingTableParams(&table));
        QCOMPARE(testenv::shownMessages(shell), QStringList {failure("Power", 2)});

        const QJsonObject set = WeldParameterPage::createMatchDataJson("PowerData4", &table);
        QCOMPARE(set.value("power_enable"), QJsonValue(false));
        QCOMPARE(set.value("frequency_enable"), QJsonValue(false));
        QCOMPARE(set.value("dutycycle_enable"), QJsonValue(false));
    }

    void matchList_data()
    {
        QTest::addColumn<QJsonValue>("record");
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QString>("warning");

        const QStringList nothing {"-", "-", "-", "-"};
        QTest::newRow("the last node is listed")
            << QJsonValue(json(R"({"PowerData2": {"power_data": [[10, 100, 1000, 10],
            [20, 200, 2000, 20], [30, 300, 3000, 30], [40, 400, 4000, 40]]}})"))
            << 1 << QStringList {"40", "400", "4000", "40"} << QString();
        QTest::newRow("three nodes list nothing")
            << QJsonValue(json(R"({"PowerData2": {"power_data": [[10, 100, 1000, 10],
            [20, 200, 2000, 20], [30, 300, 3000, 30]]}})"))
            << 1 << nothing << "PowerData2 power_data element 3 is not an array of 4 numbers";
        QTest::newRow("record that is no object") << QJsonValue(
            QJsonArray {1}) << 0 << nothing << "weld_param_match is not an object or not found";
        QTest::newRow("PowerData10 is the last row")
            << QJsonValue(json(R"({"PowerData10": {"power_data": [[], [], [], [4, 3, 2, 1]]},
            "PowerData11": {"power_data": [[], [], [], [9, 9, 9, 9]]}})"))
            << 9 << QStringList {"4", "3", "2", "1"} << QString();
    }

    void matchList()
    {
        QFETCH(QJsonValue, record);
        QFETCH(int, row);
        QFETCH(QStringList, shown);
        QFETCH(QString, warning);
        ParamPageFixture t;
        t.controller.serviceData.insert(kMatchRecord, record);
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, qPrintable("setTableMatchData: " + warning));

        t.show();

        auto *list = t.child<QTableWidget>("tableWidget_matchList");
        QCOMPARE(list->rowCount(), WeldParameterPage::matchingSetCount);
        QCOMPARE(ParamPageFixture::listRow(list, row), shown);
    }

    void savingAMatchingSet_data()
    {
        QTest::addColumn<int>("lastPower");
        QTest::addColumn<QStringList>("messages");

        QTest::newRow("edited set is sent") << 450 << QStringList {"0|Saved successfully"};
        QTest::newRow("falling power sends nothing") << 250 << QStringList {failure("Power", 4)};
    }

    void savingAMatchingSet()
    {
        QFETCH(int, lastPower);
        QFETCH(QStringList, messages);
        ParamPageFixture t;
        t.controller.serviceData.insert(
            kMatchRecord, json(R"({"PowerData2": {"power_enable": true, "frequency_enable": false,
            "dutycycle_enable": false, "power_data": [[10, 100, 1000, 10], [20, 200, 2000, 20],
            [30, 300, 3000, 30], [40, 400, 4000, 40]]}})"));
        t.show();
        t.open(1, 1);
        QCOMPARE(t.child<QLabel>("label_title")->text(), QStringLiteral("PowerData2"));
        qobject_cast<QSpinBox *>(editorTable(t)->cellWidget(4, 2))->setValue(lastPower);

        t.save();

        QCOMPARE(testenv::shownMessages(t.shell), messages);
        QCOMPARE(t.stackPage(), int(WeldParameterPage::MatchingEditor));
        if (messages.first().startsWith(QLatin1String("1|"))) {
            QVERIFY(t.controller.sent.isEmpty());
            return;
        }
        QCOMPARE(t.controller.sentCommands(), QStringList {kSaveCommand});
        QCOMPARE(t.controller.sent.first().sender, t.page);
        const QJsonObject expected = json(R"({"PowerData2": {"PowerDataID": "PowerData2",
        "power_enable": true, "frequency_enable": false, "dutycycle_enable": false,
        "power_data": [[10, 100, 1000, 10], [20, 200, 2000, 20], [30, 300, 3000, 30],
        [40, 450, 4000, 40]]}})");
        QCOMPARE(t.lastPayload(), expected);
    }

    void openingAnAbsentSetKeepsTheTable()
    {
        ParamPageFixture t;
        t.controller.serviceData.insert(kMatchRecord, json(R"({"PowerData1": {"power_enable": true,
            "power_data": [[10, 100, 1000, 10], [20, 200, 2000, 20], [30, 300, 3000, 30],
            [40, 400, 4000, 40]]}})"));
        t.show();
        t.open(1, 0);
        t.child<QPushButton>("pushButton_back")->click();
        QTest::ignoreMessage(QtDebugMsg, "has No value  PowerData5");

        t.open(1, 4);

        // The table stays as a template for the new set; saving creates PowerData5 from it.
        QCOMPARE(t.child<QLabel>("label_title")->text(), QStringLiteral("PowerData5"));
        QCOMPARE(tableNodes(editorTable(t)), kRising);
        QCOMPARE(switchStates(editorTable(t)), (QList<bool> {true, false, false}));
    }
};

QTEST_MAIN(TestParamMatching)
#include "tst_parammatching.moc"
