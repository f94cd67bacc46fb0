#include "controller/factoryrecords.h"
#include "page/weldsettingpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "widget/fieldhint.h"
#include "widget/switchbutton.h"

#include <QComboBox>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

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

private slots:
    void initTestCase() { WeldSettingPage::setSwitchWait(0); }

    void init()
    {
        m_controller = new ScriptedController;
        m_shell = new RecordingShell;
        m_controller->ports = {{"DO", {"DO2", "DO1"}}, {"DI", {"DI1"}}};
        m_controller->serviceData["weld_setting_config"] = QJsonObject {};
    }

    void cleanup()
    {
        delete m_shell;
        delete m_controller;
    }

    void validation_data()
    {
        QTest::addColumn<int>("detect");
        QTest::addColumn<int>("checkOut");
        QTest::addColumn<bool>("passes");

        QTest::newRow("equal times pass") << 200 << 200 << true;
        QTest::newRow("detect one below check-out fails") << 199 << 200 << false;
    }

    void validation()
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
        // The refusal points at the detect time, naming both fields.
        const FieldHint *hint = FieldHint::visibleIn(&page);
        QCOMPARE(hint ? hint->text() : QString(),
            passes ? QString()
                   : "Laser detect time (ms) must not be less than Laser check out time (ms)");
        if (!passes)
            QVERIFY(spin(page, "spinBox_feedback_delay")->isAncestorOf(page.focusWidget()));

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

    void switchingWelding_data()
    {
        QTest::addColumn<bool>("startOn");
        QTest::addColumn<bool>("powered");
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<bool>("endOn");

        const QStringList enable {"set_weld_enable"};
        const QStringList failed {kStartupFailed};
        QTest::newRow("on: boolean true")
            << false << false << enableReply(true)
            << QStringList {"set_weld_enable", "set_weld_setting_config"} << QStringList() << true;
        QTest::newRow("on: number 1 is not accepted")
            << false << false << enableReply(1) << enable << failed << false;
        QTest::newRow("on: empty reply")
            << false << false << QJsonArray() << enable << failed << false;
        QTest::newRow("on: true only in the second element")
            << false << false << QJsonArray {QJsonObject {}, enableReply(true).first()} << enable
            << failed << false;
        QTest::newRow("off never judges the reply")
            << true << false << enableReply(9) << enable << QStringList() << false;
        QTest::newRow("on while powered") << false << true << enableReply(true) << QStringList()
                                          << QStringList {kPoweredOn} << false;
        QTest::newRow("off while powered") << true << true << enableReply(true) << QStringList()
                                           << QStringList {kPoweredOn} << true;
    }

    void switchingWelding()
    {
        QFETCH(bool, startOn);
        QFETCH(bool, powered);
        QFETCH(QJsonArray, reply);
        QFETCH(QStringList, commands);
        QFETCH(QStringList, messages);
        QFETCH(bool, endOn);

        m_controller->serviceData["weld_setting_config"]
            = QJsonObject {{"laser_main_enable", startOn}};
        m_controller->powered = powered;
        m_controller->repliesByCommand["set_weld_enable"] = reply;
        WeldSettingPage page;
        page.show();
        QTest::mouseClick(mainSwitch(page), Qt::LeftButton);

        QCOMPARE(m_controller->sentCommands(), commands);
        if (!commands.isEmpty()) {
            QVERIFY(m_controller->sent.first().stringOverload);
            QCOMPARE(m_controller->sent.first().value.toString(), startOn ? "FALSE" : "TRUE");
        }
        if (!startOn && !powered)
            QVERIFY(m_controller->readKeys.contains("weld_io_config"));
        QCOMPARE(m_shell->messageTexts(), messages);
        QCOMPARE(mainSwitch(page)->isOn(), endOn);
        QCOMPARE(page.isMainEnabled(), endOn);
        // Welding locks the settings; the switch itself stays usable.
        for (const char *name : {"pushButton_save", "pushButton_cancel", "spinBox_laser_power"})
            QVERIFY2(page.findChild<QWidget *>(name)->isEnabled() == !endOn, name);
        QVERIFY(mainSwitch(page)->isEnabled());
    }

    void loadConversions_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("widget");
        QTest::addColumn<int>("shown");

        QTest::newRow("power truncated")
            << "laser_power" << QJsonValue(3000.9) << "spinBox_laser_power" << 3000;
        QTest::newRow("text where a number belongs")
            << "retraction_speed" << QJsonValue("20") << "doubleSpinBox_retraction_speed" << 0;
    }

    void loadConversions()
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

    void sectionSwitches_data()
    {
        QTest::addColumn<QString>("sectionSwitch");
        QTest::addColumn<QStringList>("fields");

        QTest::newRow("wire feeder")
            << "pushButton_Feeder"
            << QStringList {"comboBox_wire_feeder_comm_type", "comboBox_wire_feed_type",
                   "spinBox_wire_feedback_detection", "doubleSpinBox_max_feed_speed",
                   "doubleSpinBox_manual_feed_speed", "doubleSpinBox_manual_retract_speed"};
        QTest::newRow("wire stick detection")
            << "pushButton_WireSticking"
            << QStringList {
                   "spinBox_detection_time", "comboBox_detection_do", "comboBox_feedback_di"};
    }

    void sectionSwitches()
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

    void showKeepsRestartFieldsOpen()
    {
        m_controller->serviceData["weld_setting_config"]
            = QJsonObject {{"retraction_enable", false}, {"feeder_enable", false}};
        WeldSettingPage page;
        page.show();
        QVERIFY(page.findChild<QWidget *>("doubleSpinBox_retraction_distance")->isEnabled());
        QVERIFY(page.findChild<QWidget *>("doubleSpinBox_retraction_speed")->isEnabled());
        QVERIFY(!page.findChild<QWidget *>("doubleSpinBox_max_feed_speed")->isEnabled());
    }

    void showLocksWhileWelding_data()
    {
        QTest::addColumn<bool>("welding");
        QTest::newRow("welding off") << false;
        QTest::newRow("welding on") << true;
    }

    void showLocksWhileWelding()
    {
        QFETCH(bool, welding);

        m_controller->serviceData["weld_setting_config"]
            = QJsonObject {{"laser_main_enable", welding}};
        WeldSettingPage page;
        page.show();
        for (const char *name :
            {"frame_laser_unit", "frame_assist_gas", "frame_restart", "frame_wire_feeder",
                "frame_wire_sticking", "pushButton_save", "pushButton_cancel"})
            QVERIFY2(page.findChild<QWidget *>(name)->isEnabledTo(&page) == !welding, name);
        QVERIFY(mainSwitch(page)->isEnabled());
    }

    void missingTriggerPortShowsTheEmptyItem()
    {
        m_controller->serviceData["weld_setting_config"] = QJsonObject {{"feedback_di", "DI1"}};
        WeldSettingPage page;
        page.show();
        auto *trigger = page.findChild<QComboBox *>("comboBox_detection_do");
        QCOMPARE(trigger->count(), 3);
        QCOMPARE(trigger->currentIndex(), 0);
        QCOMPARE(trigger->itemText(1), QStringLiteral("DO1"));
        QCOMPARE(page.findChild<QComboBox *>("comboBox_feedback_di")->currentText(),
            QStringLiteral("DI1"));
    }

    void cancelReloadsTheRecord()
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

    void saveSendsTheWholeRecord()
    {
        WeldSettingPage page;
        page.show();
        page.findChild<QPushButton *>("pushButton_save")->click();
        QCOMPARE(m_shell->messageTexts(0), QStringList {"Saved successfully"});
        // The controller's record and the page's must hold the same keys.
        QCOMPARE(m_controller->sent.first().value.toObject().keys(),
            kelcontroller::FactoryRecords::settingConfig().keys());
    }
};

QTEST_MAIN(TestWeldSettingPage)
#include "tst_weldsettingpage.moc"
