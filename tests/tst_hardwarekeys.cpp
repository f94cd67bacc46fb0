#include "core/kellaserweld.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"

#include <QLabel>
#include <QPixmap>
#include <QtTest>

namespace {

const QString kRedLightStatus = QStringLiteral("laser_weld_data.weld_redlight_status");
const QString kVirtualStatus = QStringLiteral("laser_weld_data.virtual_welding_status");

QJsonArray json(const char *text)
{
    return QJsonDocument::fromJson(text).array();
}

const QString kRealIcon = QStringLiteral(":/png/LaserSwitchReal.png");
const QString kSimulatedIcon = QStringLiteral(":/png/LaserSwitchSimu.png");

QImage iconImage(const QString &path)
{
    return QPixmap(path).scaledToHeight(25, Qt::SmoothTransformation).toImage();
}

} // namespace

// A plug-in after init, with the pendant and the controller stood in for.
struct PluginUnderTest
{
    ScriptedController controller;
    RecordingShell shell;
    kelplugin::kelLaserWeld plugin;

    explicit PluginUnderTest(int level = 3)
    {
        controller.userLevel = level;
        static_cast<kelplugin::PluginBase &>(plugin).init();
        shell.clear();
        controller.clearSent();
        controller.readKeys.clear();
        testenv::resetLogFile();
    }

    // "real", "simulated" or "other": the indicator's picture against the two icons.
    QString indicatorIcon() const
    {
        const QImage shown = testenv::indicatorImage(shell.statusBarWidget);
        if (shown == iconImage(kRealIcon))
            return QStringLiteral("real");
        if (shown == iconImage(kSimulatedIcon))
            return QStringLiteral("simulated");
        return QStringLiteral("other");
    }

    // Brings the indicator to the simulated icon the way the pendant does: a reconnection
    // while the controller is in virtual welding.
    void showSimulatedFromReconnect()
    {
        static_cast<kelplugin::PluginBase &>(plugin).render();
        controller.serviceData.insert(kVirtualStatus, true);
        controller.emitConnectionRestored();
        controller.serviceData.remove(kVirtualStatus);
        controller.readKeys.clear();
    }
};

class TestHardwareKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }
    void init() { testenv::resetLogFile(); }

    void releaseOfPressOnlyKeys_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("reads");

        // A refused user: a release that got as far as the level check would show a refusal.
        // Work mode reads the controller's mode before it looks at the flag.
        QTest::newRow("work mode") << "Work mode" << QStringList {kVirtualStatus};
        QTest::newRow("red light") << "Red Light" << QStringList();
        QTest::newRow("protect gas") << "ProtectGas" << QStringList();
    }

    void releaseOfPressOnlyKeys()
    {
        QFETCH(QString, key);
        QFETCH(QStringList, reads);

        PluginUnderTest t(1);
        t.controller.serviceData.insert(kVirtualStatus, true);
        t.controller.serviceData.insert(kRedLightStatus, true);

        QVERIFY(t.shell.press(key, false));

        QCOMPARE(t.controller.sentCommands(), QStringList());
        QCOMPARE(testenv::shownMessages(t.shell), QStringList());
        QCOMPARE(t.controller.readKeys, reads);
        QCOMPARE(t.indicatorIcon(), QStringLiteral("real"));
    }

    void redLightToggles_data()
    {
        QTest::addColumn<QJsonValue>("status");
        QTest::addColumn<bool>("sent");

        QTest::newRow("no status value") << QJsonValue(QJsonValue::Undefined) << true;
        QTest::newRow("light on") << QJsonValue(true) << false;
    }

    void redLightToggles()
    {
        QFETCH(QJsonValue, status);
        QFETCH(bool, sent);

        PluginUnderTest t;
        if (!status.isUndefined())
            t.controller.serviceData.insert(kRedLightStatus, status);
        // The reply is not judged: even a refusal shows nothing.
        t.controller.queueReply(ScriptedController::reply(QStringLiteral("set_weld_red_light"), 5));

        QVERIFY(t.shell.press(QStringLiteral("Red Light"), true));

        QCOMPARE(t.controller.sentCommands(), QStringList {QStringLiteral("set_weld_red_light")});
        QCOMPARE(t.controller.sent.first().value, QJsonValue(sent));
        QCOMPARE(t.controller.readKeys, QStringList {kRedLightStatus});
        QCOMPARE(testenv::shownMessages(t.shell), QStringList());
        QCOMPARE(testenv::logTexts(), QStringList());
    }

    void keyReplyIsJudged_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("pressed");
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("log");

        const QString gas = QStringLiteral("set_weld_manual_gas");
        const QString feed = QStringLiteral("set_weld_feed_wire");
        const QString retract = QStringLiteral("set_weld_retract_wire");

        QTest::newRow("gas success") << "ProtectGas" << true << ScriptedController::reply(gas, 0)
                                     << "0|Open gas successfully" << QString();
        QTest::newRow("gas failure")
            << "ProtectGas" << true << ScriptedController::reply(gas, 3)
            << "2|Open gas failed. Please check logs."
            << "E|Phybtn:: open gas failed.  set_weld_manual_gas  Result: 3";
        QTest::newRow("gas not found")
            << "ProtectGas" << true << QJsonArray() << QString()
            << "E|Phybtn:: open gas failed. not found  set_weld_manual_gas  Result";
        QTest::newRow("feed press success")
            << "Wiring" << true << ScriptedController::reply(feed, 0) << "0|Feed wire successfully"
            << QString();
        QTest::newRow("retract release success")
            << "Retract Wire" << false << ScriptedController::reply(retract, 0)
            << "0|Retract wire successfully" << QString();
        QTest::newRow("feed press failure")
            << "Wiring" << true << ScriptedController::reply(feed, 7)
            << "2|Feed wire failed. Please check logs."
            << "E|Phybtn:: feed_wire failed.  set_weld_feed_wire  Result: 7";
        QTest::newRow("retract not found")
            << "Retract Wire" << true << json(R"([{"kellaserweld":"set_weld_retract_wire"}])")
            << QString()
            << "E|Phybtn:: retract_wire failed. not found  set_weld_retract_wire  Result";
    }

    void keyReplyIsJudged()
    {
        QFETCH(QString, key);
        QFETCH(bool, pressed);
        QFETCH(QJsonArray, reply);
        QFETCH(QString, message);
        QFETCH(QString, log);

        PluginUnderTest t;
        t.controller.queueReply(reply);
        QVERIFY(t.shell.press(key, pressed));

        QCOMPARE(t.controller.sent.size(), 1);
        QCOMPARE(t.controller.sent.first().sender, &t.plugin);
        // Gas is only ever opened; the wire keys send the key's state.
        QCOMPARE(t.controller.sent.first().value,
            QJsonValue(key == QLatin1String("ProtectGas") || pressed));
        QCOMPARE(testenv::shownMessages(t.shell).join('\n'), message);
        QCOMPARE(testenv::logTexts().join('\n'), log);
    }

    void workModeSwitch_data()
    {
        QTest::addColumn<bool>("simulatedBefore");
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("simulatedAfter");

        const auto reply = [](const QJsonValue &code) {
            return ScriptedController::reply(QStringLiteral("set_virtual_welding"), code);
        };
        const QString toVirtual = QStringLiteral("0|Switch to VirtualWelding");
        const QString failed = QStringLiteral("2|Switch work mode failed");

        QTest::newRow("real to virtual") << false << reply(0) << toVirtual << true;
        QTest::newRow("virtual to real") << true << reply(0) << "0|Switch to RealWdlding" << false;
        QTest::newRow("empty reply counts as success")
            << false << QJsonArray() << toVirtual << true;
        QTest::newRow("first element not an object")
            << false << json(R"([0, {"kellaserweld":1}])") << toVirtual << true;
        QTest::newRow("failure keeps real") << false << reply(1) << failed << false;
        QTest::newRow("return true fails") << false << reply(true) << failed << false;
    }

    void workModeSwitch()
    {
        QFETCH(bool, simulatedBefore);
        QFETCH(QJsonArray, reply);
        QFETCH(QString, message);
        QFETCH(bool, simulatedAfter);

        PluginUnderTest t;
        if (simulatedBefore)
            t.showSimulatedFromReconnect();
        const QString before = t.indicatorIcon();
        t.controller.serviceData.insert(kVirtualStatus, simulatedBefore);
        t.controller.queueReply(reply);

        QVERIFY(t.shell.press(QStringLiteral("Work mode"), true));

        QCOMPARE(t.controller.sentCommands(), QStringList {QStringLiteral("set_virtual_welding")});
        QCOMPARE(t.controller.sent.first().value, QJsonValue(!simulatedBefore));
        QCOMPARE(t.controller.readKeys, QStringList {kVirtualStatus});
        QCOMPARE(testenv::shownMessages(t.shell), QStringList {message});
        if (iconImage(kRealIcon) == iconImage(kSimulatedIcon))
            QSKIP("the two work-mode icons are not in the resources");
        QCOMPARE(before, simulatedBefore ? "simulated" : "real");
        QCOMPARE(t.indicatorIcon(), simulatedAfter ? "simulated" : "real");
    }
};

QTEST_MAIN(TestHardwareKeys)
#include "tst_hardwarekeys.moc"
