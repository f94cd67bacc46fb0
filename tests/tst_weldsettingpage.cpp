#include "page/weldsettingpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "widget/switchbutton.h"

#include <QComboBox>
#include <QJsonArray>
#include <QJsonObject>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

namespace {

const QString kStartupFailed = QStringLiteral("Laser weld startup faild!");
const QString kPoweredOn = QStringLiteral("Do not modify while powered on!");
const QString kTooEarly = QStringLiteral("The detected time of the light output is later than the "
                                         "light output inspection time; saving failed!");

QJsonArray enableReply(const QJsonValue &ret)
{
    return ScriptedController::reply(QStringLiteral("set_weld_enable"), ret);
}

} // namespace

class TestWeldSettingPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void validation_data();
    void validation();
    void switchOnAcceptance_data();
    void switchOnAcceptance();
    void switchingOffNeverJudgesTheReply();
    void poweredRobotRefusesTheSwitch_data();
    void poweredRobotRefusesTheSwitch();
    void loadConversions_data();
    void loadConversions();
    void sectionSwitches_data();
    void sectionSwitches();
    void showKeepsRestartFieldsOpen();
    void showLocksWhileWelding_data();
    void showLocksWhileWelding();
    void missingTriggerPortShowsTheEmptyItem();
    void cancelReloadsTheRecord();
    void saveSendsTheWholeRecord();

private:
    SwitchButton *mainSwitch(WeldSettingPage &page)
    {
        return page.findChild<SwitchButton *>("pushButton_main_enable");
    }
    QSpinBox *spin(WeldSettingPage &page, const QString &name)
    {
        return page.findChild<QSpinBox *>(name);
    }

    ScriptedController *m_controller = nullptr;
    RecordingShell *m_shell = nullptr;
};

void TestWeldSettingPage::initTestCase()
{
    WeldSettingPage::setSwitchWait(0);
}

void TestWeldSettingPage::init()
{
    m_controller = new ScriptedController;
    m_shell = new RecordingShell;
    m_controller->ports = {{"DO", {"DO2", "DO1"}}, {"DI", {"DI1"}}};
    m_controller->serviceData["weld_setting_config"] = QJsonObject {};
}

void TestWeldSettingPage::cleanup()
{
    delete m_shell;
    delete m_controller;
}

void TestWeldSettingPage::validation_data()
{
    QTest::addColumn<int>("detect");
    QTest::addColumn<int>("checkOut");
    QTest::addColumn<bool>("passes");

    QTest::newRow("equal times pass") << 200 << 200 << true;
    QTest::newRow("detect one below check-out fails") << 199 << 200 << false;
    QTest::newRow("detect above check-out passes") << 500 << 0 << true;
}

void TestWeldSettingPage::validation()
{
    QFETCH(int, detect);
    QFETCH(int, checkOut);
    QFETCH(bool, passes);

    WeldSettingPage page;
    page.show();
    spin(page, "spinBox_feedback_delay")->setValue(detect);
    spin(page, "spinBox_laser_check_out_time")->setValue(checkOut);

    page.findChild<QPushButton *>("pushButton_save")->click();
    QCOMPARE(m_controller->sentCommands(),
        passes ? QStringList {"set_weld_setting_config"} : QStringList());
    QCOMPARE(m_shell->messageTexts(2), passes ? QStringList() : QStringList {kTooEarly});
    QCOMPARE(spin(page, "spinBox_feedback_delay")->value(), detect);

    // The same check guards switching welding on.
    m_controller->clearSent();
    m_shell->clear();
    m_controller->repliesByCommand["set_weld_enable"] = enableReply(true);
    QTest::mouseClick(mainSwitch(page), Qt::LeftButton);
    QCOMPARE(mainSwitch(page)->isOn(), passes);
    QCOMPARE(m_shell->messageTexts(2), passes ? QStringList() : QStringList {kTooEarly});
    if (!passes)
        QVERIFY(m_controller->sent.isEmpty());
}

void TestWeldSettingPage::switchOnAcceptance_data()
{
    QTest::addColumn<QJsonArray>("reply");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("boolean true") << enableReply(true) << true;
    QTest::newRow("number 1 is not accepted") << enableReply(1) << false;
    QTest::newRow("number 0 is not accepted") << enableReply(0) << false;
    QTest::newRow("string true is not accepted") << enableReply("true") << false;
    QTest::newRow("boolean false") << enableReply(false) << false;
    QTest::newRow("empty reply") << QJsonArray() << false;
    QTest::newRow("first element not an object")
        << QJsonArray {1, enableReply(true).first()} << false;
    QTest::newRow("true only in the second element")
        << QJsonArray {QJsonObject {}, enableReply(true).first()} << false;
}

void TestWeldSettingPage::switchOnAcceptance()
{
    QFETCH(QJsonArray, reply);
    QFETCH(bool, accepted);

    m_controller->repliesByCommand["set_weld_enable"] = reply;
    WeldSettingPage page;
    page.show();
    QTest::mouseClick(mainSwitch(page), Qt::LeftButton);

    QCOMPARE(mainSwitch(page)->isOn(), accepted);
    QCOMPARE(page.isMainEnabled(), accepted);
    QCOMPARE(page.findChild<QPushButton *>("pushButton_save")->isEnabled(), !accepted);
    QCOMPARE(page.findChild<QPushButton *>("pushButton_cancel")->isEnabled(), !accepted);
    QCOMPARE(spin(page, "spinBox_laser_power")->isEnabled(), !accepted);
    QVERIFY(mainSwitch(page)->isEnabled());
    QVERIFY(m_controller->readKeys.contains("weld_io_config"));

    const QStringList expected = accepted
        ? QStringList {"set_weld_enable", "set_weld_setting_config"}
        : QStringList {"set_weld_enable"};
    QCOMPARE(m_controller->sentCommands(), expected);
    QVERIFY(m_controller->sent.first().stringOverload);
    QCOMPARE(m_controller->sent.first().value.toString(), QStringLiteral("TRUE"));
    QCOMPARE(m_shell->messageTexts(), accepted ? QStringList() : QStringList {kStartupFailed});
}

void TestWeldSettingPage::switchingOffNeverJudgesTheReply()
{
    m_controller->repliesByCommand["set_weld_enable"] = enableReply(true);
    WeldSettingPage page;
    page.show();
    QTest::mouseClick(mainSwitch(page), Qt::LeftButton);
    QVERIFY(page.isMainEnabled());

    m_controller->clearSent();
    m_controller->repliesByCommand["set_weld_enable"] = enableReply(9);
    QTest::mouseClick(mainSwitch(page), Qt::LeftButton);
    QVERIFY(!page.isMainEnabled());
    QCOMPARE(m_controller->sentCommands(), QStringList {"set_weld_enable"});
    QCOMPARE(m_controller->sent.first().value.toString(), QStringLiteral("FALSE"));
    QVERIFY(page.findChild<QPushButton *>("pushButton_save")->isEnabled());
    QVERIFY(spin(page, "spinBox_laser_power")->isEnabled());
    QVERIFY(m_shell->messages.isEmpty());
}

void TestWeldSettingPage::poweredRobotRefusesTheSwitch_data()
{
    QTest::addColumn<bool>("weldingOn");
    QTest::newRow("switching on") << false;
    QTest::newRow("switching off") << true;
}

void TestWeldSettingPage::poweredRobotRefusesTheSwitch()
{
    QFETCH(bool, weldingOn);

    m_controller->serviceData["weld_setting_config"]
        = QJsonObject {{"laser_main_enable", weldingOn}};
    m_controller->powered = true;
    WeldSettingPage page;
    page.show();
    QTest::mouseClick(mainSwitch(page), Qt::LeftButton);
    QCOMPARE(mainSwitch(page)->isOn(), weldingOn);
    QVERIFY(m_controller->sent.isEmpty());
    QCOMPARE(m_shell->messageTexts(2), QStringList {kPoweredOn});
}

void TestWeldSettingPage::loadConversions_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("shown");

    QTest::newRow("power truncated")
        << "laser_power" << QJsonValue(3000.9) << "spinBox_laser_power" << 3000;
    QTest::newRow("detect time truncated")
        << "feedback_delay" << QJsonValue(1500.7) << "spinBox_feedback_delay" << 1500;
    QTest::newRow("fractional integer field reads 0")
        << "pre_gas_time" << QJsonValue(300.5) << "spinBox_pre_gas_time" << 0;
    QTest::newRow("missing purge time clamps to 1000")
        << "manual_gas_time" << QJsonValue() << "spinBox_manual_gas_time" << 1000;
    QTest::newRow("purge time above range")
        << "manual_gas_time" << QJsonValue(99999) << "spinBox_manual_gas_time" << 10000;
    QTest::newRow("missing detect duration clamps to 100")
        << "detection_time" << QJsonValue() << "spinBox_detection_time" << 100;
    QTest::newRow("huge power clamps")
        << "laser_power" << QJsonValue(1e300) << "spinBox_laser_power" << 9999;
    QTest::newRow("negative speed clamps")
        << "max_feed_speed" << QJsonValue(-1e300) << "doubleSpinBox_max_feed_speed" << 0;
    QTest::newRow("text where a number belongs")
        << "retraction_speed" << QJsonValue("20") << "doubleSpinBox_retraction_speed" << 0;
    QTest::newRow("check-out time read as integer")
        << "laser_check_out_time" << QJsonValue(150) << "spinBox_laser_check_out_time" << 150;
}

void TestWeldSettingPage::loadConversions()
{
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QFETCH(QString, widget);
    QFETCH(int, shown);

    QJsonObject record;
    if (!value.isNull())
        record.insert(key, value);
    m_controller->serviceData["weld_setting_config"] = record;
    WeldSettingPage page;
    page.show();
    QCOMPARE(spin(page, widget)->value(), shown);
    QVERIFY(m_controller->sent.isEmpty());
}

void TestWeldSettingPage::sectionSwitches_data()
{
    QTest::addColumn<QString>("sectionSwitch");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("restart") << "pushButton_Retraction"
                             << QStringList {"doubleSpinBox_retraction_distance",
                                    "doubleSpinBox_retraction_speed"};
    QTest::newRow("wire feeder") << "pushButton_Feeder"
                                 << QStringList {"comboBox_wire_feeder_comm_type",
                                        "comboBox_wire_feed_type",
                                        "spinBox_wire_feedback_detection",
                                        "doubleSpinBox_max_feed_speed",
                                        "doubleSpinBox_manual_feed_speed",
                                        "doubleSpinBox_manual_retract_speed"};
    QTest::newRow("wire stick detection")
        << "pushButton_WireSticking"
        << QStringList {"spinBox_detection_time", "comboBox_detection_do", "comboBox_feedback_di"};
}

void TestWeldSettingPage::sectionSwitches()
{
    QFETCH(QString, sectionSwitch);
    QFETCH(QStringList, fields);

    WeldSettingPage page;
    page.show();
    auto *button = page.findChild<SwitchButton *>(sectionSwitch);
    for (bool on : {true, false}) {
        if (button->isOn() != on)
            QTest::mouseClick(button, Qt::LeftButton);
        for (const QString &field : fields)
            QVERIFY2(page.findChild<QWidget *>(field)->isEnabled() == on, qPrintable(field));
    }
    QVERIFY(m_controller->sent.isEmpty());
}

void TestWeldSettingPage::showKeepsRestartFieldsOpen()
{
    m_controller->serviceData["weld_setting_config"]
        = QJsonObject {{"retraction_enable", false}, {"feeder_enable", false}};
    WeldSettingPage page;
    page.show();
    QVERIFY(page.findChild<QWidget *>("doubleSpinBox_retraction_distance")->isEnabled());
    QVERIFY(page.findChild<QWidget *>("doubleSpinBox_retraction_speed")->isEnabled());
    QVERIFY(!page.findChild<QWidget *>("doubleSpinBox_max_feed_speed")->isEnabled());
}

void TestWeldSettingPage::showLocksWhileWelding_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("welding");
    QTest::addColumn<bool>("pageEnabled");
    QTest::addColumn<bool>("editable");

    QTest::newRow("level 3, welding off") << 3 << false << true << true;
    QTest::newRow("level 3, welding on") << 3 << true << true << false;
    QTest::newRow("level 2") << 2 << false << false << true;
}

void TestWeldSettingPage::showLocksWhileWelding()
{
    QFETCH(int, level);
    QFETCH(bool, welding);
    QFETCH(bool, pageEnabled);
    QFETCH(bool, editable);

    m_controller->userLevel = level;
    m_controller->serviceData["weld_setting_config"] = QJsonObject {{"laser_main_enable", welding}};
    WeldSettingPage page;
    page.show();
    QCOMPARE(page.isEnabled(), pageEnabled);
    for (const char *name : {"frame_laser_unit", "frame_assist_gas", "frame_restart",
             "frame_wire_feeder", "frame_wire_sticking", "pushButton_save", "pushButton_cancel"})
        QVERIFY2(page.findChild<QWidget *>(name)->isEnabledTo(&page) == editable, name);
    QVERIFY(mainSwitch(page)->isEnabledTo(&page));
}

void TestWeldSettingPage::missingTriggerPortShowsTheEmptyItem()
{
    m_controller->serviceData["weld_setting_config"] = QJsonObject {{"feedback_di", "DI1"}};
    WeldSettingPage page;
    page.show();
    auto *trigger = page.findChild<QComboBox *>("comboBox_detection_do");
    QCOMPARE(trigger->count(), 3);
    QCOMPARE(trigger->currentIndex(), 0);
    QCOMPARE(trigger->itemText(1), QStringLiteral("DO1"));
    QCOMPARE(
        page.findChild<QComboBox *>("comboBox_feedback_di")->currentText(), QStringLiteral("DI1"));
}

void TestWeldSettingPage::cancelReloadsTheRecord()
{
    m_controller->serviceData["weld_setting_config"] = QJsonObject {{"laser_power", 1200}};
    WeldSettingPage page;
    page.show();
    spin(page, "spinBox_laser_power")->setValue(42);
    page.findChild<QPushButton *>("pushButton_cancel")->click();
    QCOMPARE(spin(page, "spinBox_laser_power")->value(), 1200);
    QCOMPARE(m_shell->messageTexts(0), QStringList {"Cancel successful"});
    QVERIFY(m_controller->sent.isEmpty());
}

void TestWeldSettingPage::saveSendsTheWholeRecord()
{
    WeldSettingPage page;
    page.show();
    page.findChild<QPushButton *>("pushButton_save")->click();
    QCOMPARE(m_shell->messageTexts(0), QStringList {"Saved successfully"});
    QStringList keys = m_controller->sent.first().value.toObject().keys();
    QStringList expected {"laser_main_enable", "laser_comm_type", "laser_power", "feedback_delay",
        "laser_check_out_time", "pre_gas_time", "delay_off_time", "detection_delay",
        "manual_gas_time", "retraction_enable", "retraction_distance", "retraction_speed",
        "wiresticking_enable", "detection_time", "detection_do", "feedback_di", "feeder_enable",
        "wire_feeder_comm_type", "wire_feed_type", "max_feed_speed", "manual_feed_speed",
        "manual_retract_speed", "wire_feedback_detection"};
    QCOMPARE(expected.size(), 23);
    keys.sort();
    expected.sort();
    QCOMPARE(keys, expected);
}

QTEST_MAIN(TestWeldSettingPage)
#include "tst_weldsettingpage.moc"
