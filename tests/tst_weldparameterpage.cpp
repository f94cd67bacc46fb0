#include "page/buttonmonitorpage.h"
#include "page/weldparameterpage.h"
#include "parampagefixture.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"
#include "widget/fieldhint.h"
#include "widget/previewchart.h"
#include "widget/switchbutton.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

namespace {

const QString kRecord = QStringLiteral("weld_param_config");
const QString kSaveCommand = QStringLiteral("set_weld_param_list_config");
const QString kNoSelection = QStringLiteral("1|Please select a row of data in the table first");

QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

// A set as the controller stores it, with values that differ from the editor's defaults.
QJsonObject storedSet(const QString &name)
{
    QJsonObject set {{"LsDataID", name}, {"Tips", "Steel 2 mm"}, {"toggle_start", false},
        {"laser_power_start", 1000}, {"frequency_start", 3000}, {"duty_cycle_start", 90},
        {"ramp_mode_start", 0}, {"ramp_value_start", 120}, {"delay_time_start", 30},
        {"welding_speed", 25}, {"laser_power_weld", 2500}, {"frequency_weld", 3100},
        {"duty_cycle_weld", 95}, {"toggle_end", false}, {"laser_power_end", 800},
        {"frequency_end", 3200}, {"duty_cycle_end", 85}, {"ramp_mode_end", 1},
        {"ramp_value_end", 150}, {"delay_time_end", 40}, {"wire_feed_enable_start", true},
        {"feeding_speed_start", 30}, {"wire_mode_start", 2}, {"wire_feed_time_start", 80},
        {"feeding_speed_run", 45}, {"wire_feed_enable_end", true}, {"wire_speed_end", 35},
        {"wire_mode_end", 1}, {"wire_feed_time_end", 90}, {"wire_stick_enable_end", false},
        {"wire_retraction_end", true}, {"wire_retract_end", 25}, {"wire_retract_time_end", 250},
        {"wire_fill_com_end", true}, {"fill_delay_time_end", 10}, {"fill_wire_speed_end", 15},
        {"fill_wire_time_end", 60}};
    return set;
}

} // namespace

class TestWeldParameterPage : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void listRefresh_data()
    {
        QTest::addColumn<QJsonObject>("before");
        QTest::addColumn<QJsonObject>("after");
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("shown");

        const QJsonObject seven = json(R"({"LsData7": {"welding_speed": 20,
        "laser_power_weld": 1500, "feeding_speed_run": 40, "Tips": "root pass"}})");
        QTest::newRow("set present fills its row")
            << QJsonObject() << seven << 6 << QStringList {"20", "1500", "40", "root pass"};
        QTest::newRow("record without LsData7 leaves row 7 as it was")
            << seven << json(R"({"LsData8": {"welding_speed": 5}})") << 6
            << QStringList {"20", "1500", "40", "root pass"};
        QTest::newRow("text, fractions and huge numbers show 0")
            << QJsonObject()
            << json(R"({"LsData1": {"welding_speed": "20", "laser_power_weld": 1500.5,
            "feeding_speed_run": 1e300, "Tips": 7}})")
            << 0 << QStringList {"0", "0", "0", ""};
        QTest::newRow("LsData30 is the last row")
            << QJsonObject() << json(R"({"LsData30": {"welding_speed": 9, "Tips": "last"}})") << 29
            << QStringList {"9", "0", "0", "last"};
    }

    void listRefresh()
    {
        QFETCH(QJsonObject, before);
        QFETCH(QJsonObject, after);
        QFETCH(int, row);
        QFETCH(QStringList, shown);
        ParamPageFixture t;
        t.controller.serviceData.insert(kRecord, before);
        t.page->refreshWeldDataList();
        t.controller.serviceData.insert(kRecord, after);

        t.page->refreshWeldDataList();

        QCOMPARE(
            ParamPageFixture::listRow(t.child<QTableWidget>("tableWidget_weldData"), row), shown);
        QCOMPARE(t.child<QTableWidget>("tableWidget_weldData")->item(row, 0)->text(),
            QStringLiteral("LsData%1").arg(row + 1));
    }

    void openingNeedsASelectedRow()
    {
        ParamPageFixture t;
        t.show();

        t.child<QPushButton>("pushButton_detailed")->click();

        QCOMPARE(testenv::shownMessages(t.shell), QStringList {kNoSelection});
        QCOMPARE(t.stackPage(), int(WeldParameterPage::MainPage));
        QVERIFY(t.controller.sent.isEmpty());
    }

    void openingASet_data()
    {
        QTest::addColumn<QJsonObject>("record");
        QTest::addColumn<int>("power");
        QTest::addColumn<QString>("tips");
        QTest::addColumn<bool>("stickDetect");
        QTest::addColumn<int>("wireMode");

        QTest::newRow("stored set") << QJsonObject {{"LsData12", storedSet("LsData12")}} << 2500
                                    << "Steel 2 mm" << false << 2;
        QTest::newRow("absent set gives the defaults")
            << QJsonObject {{"LsData11", storedSet("LsData11")}} << 1500 << "" << true << 0;
        QTest::newRow("absent keys give 0, off and empty")
            << json(R"({"LsData12": {"welding_speed": 30}})") << 0 << "" << false << 0;
        QTest::newRow("wire mode one past the last falls back to the first")
            << json(R"({"LsData12": {"laser_power_weld": 99999, "wire_mode_start": 3}})") << 9999
            << "" << false << 0;
    }

    void openingASet()
    {
        QFETCH(QJsonObject, record);
        QFETCH(int, power);
        QFETCH(QString, tips);
        QFETCH(bool, stickDetect);
        QFETCH(int, wireMode);
        ParamPageFixture t;
        t.controller.serviceData.insert(kRecord, record);
        t.show();
        // Typed values of an earlier set must not leak into this one.
        t.child<QLineEdit>("lineEdit_Tips")->setText(QStringLiteral("left over"));

        t.open(0, 11);

        QCOMPARE(t.stackPage(), int(WeldParameterPage::WeldDataEditor));
        QCOMPARE(t.child<QLabel>("label_title")->text(), QStringLiteral("LsData12"));
        QCOMPARE(t.child<QSpinBox>("spinBox_laser_power_weld")->value(), power);
        QCOMPARE(t.child<QLineEdit>("lineEdit_Tips")->text(), tips);
        QCOMPARE(t.child<SwitchButton>("pushButton_wire_stick_enable_end")->isOn(), stickDetect);
        QCOMPARE(t.child<QComboBox>("comboBox_wire_mode_start")->currentIndex(), wireMode);
        // The controller only ramps linearly, whatever the set says.
        QCOMPARE(t.child<QComboBox>("comboBox_ramp_mode_start")->currentIndex(), 2);
        QCOMPARE(t.child<QComboBox>("comboBox_ramp_mode_end")->currentIndex(), 2);
        QVERIFY(t.shell.messages.isEmpty());
        QVERIFY(t.controller.sent.isEmpty());
    }

    void savedSetKeepsTheFixedValues()
    {
        ParamPageFixture t;
        t.controller.serviceData.insert(
            kRecord, QJsonObject {{"LsData3", storedSet("SomethingElse")}});
        t.show();
        QTest::ignoreMessage(QtDebugMsg, "wire_retract_time_end: 250");
        t.open(0, 2);

        t.save();

        // Everything the editor shows goes back as loaded; the name and the fixed keys are the
        // page's own, not the record's.
        QJsonObject expected = storedSet("LsData3");
        expected.insert("toggle_start", true);
        expected.insert("toggle_end", true);
        expected.insert("ramp_mode_start", 2);
        expected.insert("ramp_mode_end", 2);
        QCOMPARE(t.lastPayload().value("LsData3").toObject(), expected);
    }

    void refusedSaveKeepsTheEditor()
    {
        ParamPageFixture t;
        t.show();
        t.open(0, 4);
        t.child<QSpinBox>("spinBox_laser_power_weld")->setValue(2222);
        t.controller.queueReply(ScriptedController::reply(kSaveCommand, 4));

        t.save();

        QCOMPARE(testenv::shownMessages(t.shell),
            QStringList {"2|Save failed. Please check the parameter configuration."});
        QCOMPARE(t.stackPage(), int(WeldParameterPage::WeldDataEditor));
        QCOMPARE(t.child<QSpinBox>("spinBox_laser_power_weld")->value(), 2222);
        QCOMPARE(t.child<QLabel>("label_title")->text(), QStringLiteral("LsData5"));
    }

    void equipmentLimitsHoldOnSave_data()
    {
        QTest::addColumn<QJsonValue>("settings"); // weld_setting_config, null: none stored
        QTest::addColumn<bool>("wire");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("message"); // empty: the set is sent

        const QJsonObject laser2400 {{"laser_power", 2400}, {"max_feed_speed", 150}};
        const QString power = QStringLiteral(
            "1|%1 · Laser power (W): 2401 W is above the laser unit's maximum power of 2400 W "
            "(device settings). Nothing was saved.");
        QTest::newRow("weld power at the laser's maximum")
            << QJsonValue(laser2400) << true << "spinBox_laser_power_weld" << 2400 << "";
        QTest::newRow("weld power one above the laser's maximum")
            << QJsonValue(laser2400) << true << "spinBox_laser_power_weld" << 2401
            << power.arg("Welding");
        QTest::newRow("start power one above")
            << QJsonValue(laser2400) << true << "spinBox_laser_power_start" << 2401
            << power.arg("Laser on");
        QTest::newRow("maximum stored as a fraction counts whole")
            << QJsonValue(QJsonObject {{"laser_power", 2400.9}}) << true
            << "spinBox_laser_power_end" << 2401 << power.arg("Laser off");
        QTest::newRow("feed speed at the feeder's maximum")
            << QJsonValue(laser2400) << true << "spinBox_feeding_speed_run" << 150 << "";
        QTest::newRow("feed speed one above the feeder's maximum")
            << QJsonValue(laser2400) << true << "spinBox_feeding_speed_run" << 151
            << "1|Wire while welding · Wire feed speed(mm/s): 151 mm/s is above the wire "
               "feeder's maximum speed of 150 mm/s (device settings). Nothing was saved.";
        QTest::newRow("retract speed one above the feeder's maximum")
            << QJsonValue(laser2400) << true << "spinBox_wire_retract_end" << 151
            << "1|Wire end · Retrack speed(mm/s): 151 mm/s is above the wire feeder's maximum "
               "speed of 150 mm/s (device settings). Nothing was saved.";
        QTest::newRow("wire speeds of a set without wire are not used")
            << QJsonValue(laser2400) << false << "spinBox_feeding_speed_run" << 151 << "";
        QTest::newRow("no device settings, only the field's range")
            << QJsonValue() << true << "spinBox_laser_power_weld" << 9999 << "";
    }

    void equipmentLimitsHoldOnSave()
    {
        QFETCH(QJsonValue, settings);
        QFETCH(bool, wire);
        QFETCH(QString, field);
        QFETCH(int, value);
        QFETCH(QString, message);

        ParamPageFixture t;
        QJsonObject set = storedSet("LsData1");
        // Within every limit of the rows but the field they change.
        set.insert("laser_power_weld", 2000);
        set.insert("wire_feed_enable_start", wire);
        set.insert("wire_feed_enable_end", wire);
        t.controller.serviceData.insert(kRecord, QJsonObject {{"LsData1", set}});
        if (!settings.isNull())
            t.controller.serviceData.insert("weld_setting_config", settings);
        t.show();
        QApplication::setActiveWindow(&t.mainPage);
        QVERIFY(QTest::qWaitForWindowActive(&t.mainPage));
        QTest::ignoreMessage(QtDebugMsg, "wire_retract_time_end: 250");
        t.open(0, 0);
        auto *spin = t.child<QSpinBox>(qPrintable(field));
        spin->setValue(value);

        t.save();

        if (message.isEmpty()) {
            QCOMPARE(t.controller.sentCommands(), QStringList {kSaveCommand});
            QCOMPARE(
                t.lastPayload().value("LsData1").toObject().value(field.mid(8)).toInt(), value);
            return;
        }
        QVERIFY(t.controller.sent.isEmpty());
        QCOMPARE(testenv::shownMessages(t.shell), QStringList {message});
        QVERIFY(spin->hasFocus());
        const FieldHint *hint = FieldHint::visibleIn(spin);
        QVERIFY(hint);
        QCOMPARE(hint->field(), spin);
        // The refusal keeps what was typed.
        QCOMPARE(spin->value(), value);
    }

    void saveChecksTheLevelOfTheMoment()
    {
        // The level may drop while the editor is open, with Save still enabled for the old one.
        ParamPageFixture t;
        t.show();
        t.open(0, 4);
        t.controller.userLevel = 2;

        t.save();

        QCOMPARE(testenv::shownMessages(t.shell), QStringList {"1|Insufficient user permissions!"});
        QVERIFY(t.controller.sent.isEmpty());
    }

    void dependentWidgets_data()
    {
        QTest::addColumn<QJsonObject>("set");
        QTest::addColumn<QStringList>("hidden");

        QTest::newRow("laser only hides the wire groups")
            << json(R"({"wire_feed_enable_start": false, "wire_feed_enable_end": false})")
            << QStringList {"groupBox_wireStart", "groupBox_wireWeld", "groupBox_wireEnd",
                   "spinBox_wire_feed_time_start", "spinBox_wire_feed_time_end"};
        QTest::newRow("wire at the end alone means filler wire")
            << json(R"({"wire_feed_enable_end": true, "wire_mode_start": 0, "wire_mode_end": 2})")
            << QStringList {"spinBox_wire_feed_time_start"};
        QTest::newRow("wire with the laser needs no times")
            << json(R"({"wire_feed_enable_start": true, "wire_mode_start": 0, "wire_mode_end": 0})")
            << QStringList {"spinBox_wire_feed_time_start", "spinBox_wire_feed_time_end"};
    }

    void dependentWidgets()
    {
        QFETCH(QJsonObject, set);
        QFETCH(QStringList, hidden);
        ParamPageFixture t;

        t.page->setWeldDataSet(set);

        const QStringList candidates {"groupBox_wireStart", "groupBox_wireWeld", "groupBox_wireEnd",
            "spinBox_wire_feed_time_start", "spinBox_wire_feed_time_end",
            "spinBox_ramp_value_start", "spinBox_ramp_value_end"};
        QStringList hiddenNow;
        for (const QString &name : candidates) {
            if (t.page->findChild<QWidget *>(name)->isHidden())
                hiddenNow.append(name);
        }
        QCOMPARE(hiddenNow, hidden);
    }

    void weldModeSwitchesTheWire_data()
    {
        QTest::addColumn<bool>("wireBefore");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("wireAfter");
        QTest::newRow("laser welding stops the wire") << true << 0 << false;
        QTest::newRow("filler wire starts the wire") << false << 1 << true;
    }

    void weldModeSwitchesTheWire()
    {
        QFETCH(bool, wireBefore);
        QFETCH(int, mode);
        QFETCH(bool, wireAfter);
        ParamPageFixture t;
        t.page->setWeldDataSet(QJsonObject {
            {"wire_feed_enable_start", wireBefore}, {"wire_feed_enable_end", wireBefore}});
        auto *weldMode = t.child<QComboBox>("comboBox_weld_mode");

        weldMode->setCurrentIndex(mode);
        emit weldMode->activated(mode);

        const QJsonObject set = t.page->weldDataSet();
        QCOMPARE(set.value("wire_feed_enable_start"), QJsonValue(wireAfter));
        QCOMPARE(set.value("wire_feed_enable_end"), QJsonValue(wireAfter));
        QCOMPARE(t.child<QWidget>("groupBox_wireStart")->isHidden(), !wireAfter);
    }

    void profilePreviewFollowsEditsAndNeverBlocksSave()
    {
        ParamPageFixture t;
        t.show();
        t.open(0, 0);
        auto *chart = t.child<PreviewChart>("weldProfileChart");
        auto *hint = t.child<QLabel>("label_profileHint");
        // The defaults ramp down for 100 ms but switch the laser off after 50 ms.
        QVERIFY(!hint->text().isEmpty());
        const QPolygonF before = chart->content().lanes.first().course;

        t.child<QSpinBox>("spinBox_delay_time_end")->setValue(100);

        QVERIFY(hint->text().isEmpty());
        QVERIFY(chart->content().lanes.first().course != before);
        t.child<QSpinBox>("spinBox_delay_time_end")->setValue(50);
        t.save();
        QCOMPARE(t.controller.sentCommands(), QStringList {kSaveCommand});
    }

    // A hand-edited set the form cannot hold: the hint names each such value until the operator
    // types into its field; Save stays allowed.
    void storedValuesTheFormCannotHoldAreNamed_data()
    {
        QTest::addColumn<QJsonObject>("stored"); // over the defaults; null removes the key
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("shown");
        QTest::addColumn<QString>("named"); // the hint's start; empty: no hint
        QTest::addColumn<int>("typed");
        QTest::addColumn<QString>("namedAfter");

        const QString outside("%1 is %2 in the set: the form holds whole numbers %3");
        QTest::newRow("missing, then negative")
            << QJsonObject {{"laser_power_weld", QJsonValue::Null}, {"ramp_value_end", -5}}
            << "laser_power_weld" << 0 << "laser_power_weld" << 1000 << "ramp_value_end";
        QTest::newRow("power beyond int")
            << QJsonObject {{"laser_power_start", 1e12}} << "laser_power_start" << 0
            << outside.arg("laser_power_start", "1e+12", "0..9999") << 800 << "";
        QTest::newRow("ramp beyond int")
            << QJsonObject {{"ramp_value_end", 1e300}} << "ramp_value_end" << 0
            << outside.arg("ramp_value_end", "1e+300", "0..9999") << 50 << "";
        QTest::newRow("one digit too many")
            << QJsonObject {{"laser_power_weld", 99999}} << "laser_power_weld" << 9999
            << outside.arg("laser_power_weld", "99999", "0..9999") << 1500 << "";
        QTest::newRow("fraction") << QJsonObject {{"wire_retract_time_end", 250.5}}
                                  << "wire_retract_time_end" << 0
                                  << outside.arg("wire_retract_time_end", "250.5", "0..9999") << 250
                                  << "";
        QTest::newRow("at the field's maximum") << QJsonObject {{"delay_time_start", 2000}}
                                                << "delay_time_start" << 2000 << "" << 50 << "";
    }

    void storedValuesTheFormCannotHoldAreNamed()
    {
        QFETCH(QJsonObject, stored);
        QFETCH(QString, key);
        QFETCH(int, shown);
        QFETCH(QString, named);
        QFETCH(int, typed);
        QFETCH(QString, namedAfter);
        ParamPageFixture t;
        t.show();
        t.open(0, 0);
        // The defaults cut their ramp down; a longer delay leaves them without issues.
        QJsonObject set = testenv::patched(t.page->weldDataSet(), {{"delay_time_end", 100}});
        for (auto it = stored.begin(); it != stored.end(); ++it) {
            if (it.value().isNull())
                set.remove(it.key());
            else
                set.insert(it.key(), it.value());
        }
        auto *hint = t.child<QLabel>("label_profileHint");
        auto *field = t.page->findChild<QSpinBox *>("spinBox_" + key);
        const auto hintStartsWith = [hint](const QString &start) {
            return start.isEmpty() ? hint->text().isEmpty() : hint->text().startsWith(start);
        };

        t.page->setWeldDataSet(set);

        QCOMPARE(field->value(), shown);
        QVERIFY2(hintStartsWith(named), qPrintable(hint->text()));
        field->setValue(typed);
        QVERIFY2(hintStartsWith(namedAfter), qPrintable(hint->text()));
        t.save();
        QCOMPARE(t.controller.sentCommands(), QStringList {kSaveCommand});
    }
};

QTEST_MAIN(TestWeldParameterPage)
#include "tst_weldparameterpage.moc"
