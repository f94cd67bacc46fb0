#include "controller/factoryrecords.h"
#include "page/weldiopage.h"
#include "page/weldsettingpage.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"
#include "widget/fieldhint.h"
#include "widget/switchbutton.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace {

// A record every check accepts: the two rows without a switch have ports, all others are off.
QJsonObject validRecord()
{
    return QJsonObject {{"laser_enable_port", "DO1"}, {"gas_protect_port", "DO2"}};
}

QStringList items(const QComboBox *combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts.append(combo->itemText(i));
    return texts;
}

} // namespace

class TestWeldioPage : public QObject
{
    Q_OBJECT

private:
    ScriptedController *m_controller = nullptr;
    RecordingShell *m_shell = nullptr;

private slots:
    void init()
    {
        m_controller = new ScriptedController;
        m_shell = new RecordingShell;
        m_controller->ports = {
            {"DO", {"DO10", "DO2", "DO1", "DO3", "DO4", "IO7"}},
            {"DI", {"DI1", "DI2", "DI3", "IO7"}},
            {"AO", {"AO2", "AO1", "P1"}},
            {"GO", {"GO1", "GO2", "P1"}},
            {"AI", {"AI1", "AI2"}},
            {"GI", {"GI1", "GI2"}},
        };
        m_controller->serviceData["weld_io_config"] = validRecord();
    }

    void cleanup()
    {
        delete m_shell;
        delete m_controller;
    }

    void saveChecks_data()
    {
        QTest::addColumn<QJsonObject>("patch");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("field"); // the drop-down a refusal points at

        const QString saved = QStringLiteral("Saved successfully");
        const QString empty
            = QStringLiteral("There is an empty port. Please check and reconfigure!");
        QTest::newRow("valid record saves") << QJsonObject() << saved << "";
        QTest::newRow("two enabled outputs on one port") << QJsonObject {{"red_light_port", "DO3"},
            {"red_light_enabled", true}, {"wire_feed_port", "DO3"},
            {"wire_feed_enabled", true}} << "Port DO3 is already in use, save failed!"
                                                         << "comboBox_wire_feed_port";
        QTest::newRow("duplicate port on a switched-off row") << QJsonObject {
            {"red_light_port", "DO3"}, {"red_light_enabled", true}, {"wire_feed_port", "DO3"},
            {"wire_feed_enabled", false}} << saved << "";
        QTest::newRow("laser on and assist gas always checked")
            << QJsonObject {{"gas_protect_port", "DO1"}}
            << "Port DO1 is already in use, save failed!"
            << "comboBox_gas_protect_port";
        QTest::newRow("two enabled inputs on one port") << QJsonObject {{"laser_alarm_port", "DI2"},
            {"laser_alarm_enabled", true}, {"external_alarm_port", "DI2"},
            {"external_alarm_enabled", true}} << "Port DI2 is already in use, save failed!"
                                                        << "comboBox_external_alarm_port";
        QTest::newRow("same port as output and input")
            << QJsonObject {{"descent_signal_port", "IO7"}, {"descent_signal_enabled", true},
                   {"laser_alarm_port", "IO7"}, {"laser_alarm_enabled", true}}
            << saved << "";
        QTest::newRow("same port text on analog and group type")
            << QJsonObject {{"power_type", 0}, {"power_port", "P1"}, {"power_enabled", true},
                   {"frequency_type", 1}, {"frequency_port", "P1"}, {"frequency_enabled", true}}
            << saved << "";
        QTest::newRow("same port text on the same type")
            << QJsonObject {{"power_type", 1}, {"power_port", "P1"}, {"power_enabled", true},
                   {"frequency_type", 1}, {"frequency_port", "P1"}, {"frequency_enabled", true}}
            << "Port P1 is already in use, save failed!"
            << "comboBox_frequency_port";
        QTest::newRow("empty assist gas")
            << QJsonObject {{"gas_protect_port", ""}} << empty << "comboBox_gas_protect_port";
        QTest::newRow("enabled row without port")
            << QJsonObject {{"wire_feeder_alarm_enabled", true}} << empty
            << "comboBox_wire_feeder_alarm_port";
        QTest::newRow("disabled row without port")
            << QJsonObject {{"red_light_enabled", false}} << saved << "";
        QTest::newRow("duplicate reported before empty")
            << QJsonObject {{"gas_protect_port", "DO1"}, {"red_light_enabled", true}}
            << "Port DO1 is already in use, save failed!"
            << "comboBox_gas_protect_port";
    }

    void saveChecks()
    {
        QFETCH(QJsonObject, patch);
        QFETCH(QString, message);
        QFETCH(QString, field);

        m_controller->serviceData["weld_io_config"] = testenv::patched(validRecord(), patch);
        WeldSettingPage settings;
        WeldioPage page(&settings);
        page.show();
        page.findChild<QPushButton *>("pushButton_Save")->click();

        QCOMPARE(m_shell->messageTexts(), QStringList {message});
        const bool saved = message == QStringLiteral("Saved successfully");
        QCOMPARE(m_controller->sentCommands(),
            saved ? QStringList {"set_weld_io_config"} : QStringList());
        if (saved) {
            const QJsonObject sent = m_controller->sent.first().value.toObject();
            QCOMPARE(sent, page.record());
            // A row that is off keeps its empty port in the record.
            QCOMPARE(
                sent.value("red_light_port").toString(), patch.value("red_light_port").toString());
        } else {
            QCOMPARE(m_shell->messages.first().level, 2);
        }
        // The refusal points at the row at fault: its drop-down takes the focus and the hint.
        const FieldHint *hint = FieldHint::visibleIn(&page);
        QCOMPARE(hint ? hint->field()->objectName() : QString(), field);
        QCOMPARE(page.focusWidget() ? page.focusWidget()->objectName() : QString(), field);
    }

    void showFillsEveryPortListWithAnEmptyFirstItem()
    {
        m_controller->serviceData["weld_io_config"]
            = testenv::patched(validRecord(), {{"power_type", 1}, {"power_feedback_type", 0}});
        WeldSettingPage settings;
        WeldioPage page(&settings);
        page.show();

        const QStringList digitalOutputs {"", "DO1", "DO2", "DO3", "DO4", "DO10", "IO7"};
        QCOMPARE(items(page.findChild<QComboBox *>("comboBox_laser_enable_port")), digitalOutputs);
        QCOMPARE(
            items(page.findChild<QComboBox *>("comboBox_descent_signal_port")), digitalOutputs);
        QCOMPARE(items(page.findChild<QComboBox *>("comboBox_external_alarm_port")),
            (QStringList {"", "DI1", "DI2", "DI3", "IO7"}));
        QCOMPARE(items(page.findChild<QComboBox *>("comboBox_frequency_port")),
            (QStringList {"", "AO1", "AO2", "P1"}));
        QCOMPARE(items(page.findChild<QComboBox *>("comboBox_power_feedback_port")),
            (QStringList {"", "AI1", "AI2"}));
    }

    void loading_data()
    {
        QTest::addColumn<QJsonValue>("record");
        QTest::addColumn<QString>("laserPort");
        QTest::addColumn<int>("powerType");
        QTest::addColumn<QString>("powerPort");
        QTest::addColumn<int>("powerPorts"); // -1: not checked

        const auto with = [](const QJsonObject &patch) {
            return QJsonValue(testenv::patched(validRecord(), patch));
        };
        // The type is set before the port, and its refill drops the empty first item.
        QTest::newRow("stored type equals the selector")
            << with({{"power_port", ""}}) << "DO1" << 0 << "" << 4;
        QTest::newRow("stored type changes the list")
            << with({{"power_type", 1}, {"power_port", "GO2"}}) << "DO1" << 1 << "GO2" << 3;
        QTest::newRow("changed type and empty port selects the first port")
            << with({{"power_type", 1}, {"power_port", ""}}) << "DO1" << 1 << "GO1" << 3;
        QTest::newRow("port of the other kind stays on the first")
            << with({{"power_type", 1}, {"power_port", "AO2"}}) << "DO1" << 1 << "GO1" << 3;
        QTest::newRow("unknown port keeps the empty item")
            << QJsonValue(QJsonObject {{"laser_enable_port", "DO99"}}) << "" << 0 << "" << 4;
        QTest::newRow("wrong types") << QJsonValue(
            QJsonObject {{"laser_enable_port", 3}, {"power_type", "1"}, {"power_enabled", "yes"}})
                                     << "" << 0 << "" << 4;
        QTest::newRow("type beyond the selector")
            << QJsonValue(QJsonObject {{"laser_enable_port", "DO4"}, {"power_type", 1e12}}) << "DO4"
            << 0 << "" << 4;
        QTest::newRow("selector index out of range")
            << QJsonValue(QJsonObject {{"power_type", 7}}) << "" << -1 << "" << -1;
    }

    void loading()
    {
        QFETCH(QJsonValue, record);
        QFETCH(QString, laserPort);
        QFETCH(int, powerType);
        QFETCH(QString, powerPort);
        QFETCH(int, powerPorts);

        m_controller->serviceData["weld_io_config"] = record;
        WeldSettingPage settings;
        WeldioPage page(&settings);
        page.show();
        QCOMPARE(
            page.findChild<QComboBox *>("comboBox_laser_enable_port")->currentText(), laserPort);
        QCOMPARE(page.findChild<QComboBox *>("comboBox_power_type")->currentIndex(), powerType);
        auto *port = page.findChild<QComboBox *>("comboBox_power_port");
        if (powerPorts >= 0) {
            QCOMPARE(port->currentText(), powerPort);
            QCOMPARE(port->count(), powerPorts);
        }
        QVERIFY(m_controller->sent.isEmpty());
    }

    void retractCaption_data()
    {
        QTest::addColumn<QJsonValue>("settings");
        QTest::addColumn<QString>("caption");

        QTest::newRow("no wire feed type") << QJsonValue(QJsonObject()) << "Retract";
        QTest::newRow("retraction") << QJsonValue(QJsonObject {{"wire_feed_type", 0}}) << "Retract";
        QTest::newRow("direction")
            << QJsonValue(QJsonObject {{"wire_feed_type", 1}}) << "Direction";
        QTest::newRow("not an object keeps the caption") << QJsonValue(5) << "Wire back feed";
    }

    void retractCaption()
    {
        QFETCH(QJsonValue, settings);
        QFETCH(QString, caption);

        m_controller->serviceData["weld_setting_config"] = settings;
        WeldSettingPage settingPage;
        WeldioPage page(&settingPage);
        page.show();
        QCOMPARE(page.findChild<QLabel *>("label_retract_direction")->text(), caption);
    }

    void editLock_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<bool>("welding");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("level 3, welding off") << 3 << false << true;
        QTest::newRow("level 3, welding on") << 3 << true << false;
        QTest::newRow("level 2, welding off") << 2 << false << false;
    }

    void editLock()
    {
        QFETCH(int, level);
        QFETCH(bool, welding);
        QFETCH(bool, enabled);

        m_controller->userLevel = level;
        WeldSettingPage settings;
        settings.mainSwitch()->setOn(welding, false);
        WeldioPage page(&settings);
        page.show();
        QCOMPARE(page.isEnabled(), enabled);
    }

    void cancelReloadsTheRecord()
    {
        WeldSettingPage settings;
        WeldioPage page(&settings);
        page.show();
        auto *laser = page.findChild<QComboBox *>("comboBox_laser_enable_port");
        laser->setCurrentText("DO4");
        m_controller->serviceData["weld_io_config"]
            = testenv::patched(validRecord(), {{"power_enabled", true}});
        page.findChild<QPushButton *>("pushButton_Cancel")->click();
        QCOMPARE(laser->currentText(), QStringLiteral("DO1"));
        QVERIFY(page.findChild<SwitchButton *>("pushButton_power_enabled")->isOn());
        QCOMPARE(m_shell->messageTexts(0), QStringList {"Cancel successful"});
        QVERIFY(m_controller->sent.isEmpty());
    }

    void recordHoldsTheWholeKeySet()
    {
        WeldSettingPage settings;
        WeldioPage page(&settings);
        // The controller's record and the page's must hold the same keys.
        QCOMPARE(page.record().keys(), kelcontroller::FactoryRecords::ioConfig().keys());
    }
};

QTEST_MAIN(TestWeldioPage)
#include "tst_weldiopage.moc"
