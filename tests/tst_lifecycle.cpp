#include "core/kellaserweld.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"
#include "widget/showstatusbar.h"

#include "kelplugin/interfacemanager.h"
#include "kelplugin/rlcatalog.h"

#include <QDialog>
#include <QLabel>
#include <QtTest>

namespace {

const QString kVirtualStatus = QStringLiteral("laser_weld_data.virtual_welding_status");

QImage referenceIcon(bool simulated)
{
    ShowStatusBar reference;
    if (simulated)
        reference.showSimulatedWelding();
    else
        reference.showRealWelding();
    return testenv::indicatorImage(&reference);
}

// A plug-in taken through the host's start-up against a scripted controller and shell.
struct StartedPlugin
{
    explicit StartedPlugin(int steps = 3)
    {
        kelplugin::PluginBase &base = plugin;
        if (steps >= 1)
            base.init();
        if (steps >= 2)
            base.afterInit();
        if (steps >= 3)
            base.render();
    }
    ScriptedController controller;
    RecordingShell shell;
    kelplugin::kelLaserWeld plugin;
};

} // namespace

class TestLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        testenv::initPluginResources();
        // The two icons must differ, or the indicator tests below prove nothing.
        QVERIFY(!referenceIcon(false).isNull());
        QVERIFY(referenceIcon(false) != referenceIcon(true));
    }

    void init() { testenv::resetLogFile(); }

    void initHandsPageKeysAndIndicatorToTheShellInOrder()
    {
        StartedPlugin started(1);
        const RecordingShell &shell = started.shell;

        QStringList functions;
        for (const RecordingShell::Call &call : shell.calls) {
            if (call.function != QLatin1String("ThrowLog"))
                functions.append(call.function + QLatin1Char('(')
                    + call.arguments.join(QLatin1Char(',')) + QLatin1Char(')'));
        }
        QCOMPARE(functions,
            QStringList({QStringLiteral("CreateCenterWidget(kellaserweld,LaserWeldPage)"),
                QStringLiteral("CreatePhyButtonList(kellaserweld,kellaserweld,3,2,)"),
                QStringLiteral("ChangePhyButtonStatus(kellaserweld,kellaserweld,true)"),
                QStringLiteral("CreateStatusBar(kellaserweld,ShowStatusBar,1)")}));
        // The monitor dialog lives under the main page and dies with it.
        QVERIFY(shell.centerWidget);
        QVERIFY(shell.centerWidget->findChild<QDialog *>(QStringLiteral("ButtonMonitorPage")));
    }

    void indicatorStartsRealEvenWhenControllerIsVirtual()
    {
        StartedPlugin started(0);
        started.controller.serviceData.insert(kVirtualStatus, true);
        kelplugin::PluginBase &base = started.plugin;
        base.init();
        base.afterInit();
        base.render();

        QCOMPARE(testenv::indicatorImage(started.shell.statusBarWidget), referenceIcon(false));
        QVERIFY(!started.controller.readKeys.contains(kVirtualStatus));
    }

    void reconnectShowsTheControllersMode_data()
    {
        QTest::addColumn<QJsonValue>("status");
        QTest::addColumn<bool>("simulated");
        QTest::newRow("virtual") << QJsonValue(true) << true;
        QTest::newRow("real") << QJsonValue(false) << false;
        QTest::newRow("missing value counts as real") << QJsonValue(QJsonValue::Undefined) << false;
        QTest::newRow("string is not true") << QJsonValue(QStringLiteral("true")) << false;
    }

    void reconnectShowsTheControllersMode()
    {
        QFETCH(QJsonValue, status);
        QFETCH(bool, simulated);

        StartedPlugin started;
        ScriptedController &controller = started.controller;

        controller.serviceData.insert(kVirtualStatus, true);
        controller.emitConnectionRestored();
        QCOMPARE(testenv::indicatorImage(started.shell.statusBarWidget), referenceIcon(true));

        controller.serviceData.insert(kVirtualStatus, status);
        controller.emitConnectionRestored();
        QCOMPARE(testenv::indicatorImage(started.shell.statusBarWidget), referenceIcon(simulated));
    }

    void onlyTheInstalledControllerReportsReconnects()
    {
        ScriptedController replaced;
        ScriptedController installed;
        QSignalSpy reconnects(
            &kelplugin::kelPluginInterface(), &kelplugin::InterfaceManager::sigNetworkConnect);

        replaced.emitConnectionRestored();
        installed.emitConnectionRestored();

        QCOMPARE(reconnects.count(), 1);
    }

    void afterInitRegistersTheInstructionCatalogue()
    {
        kelplugin::rlCatalog().clear();
        StartedPlugin started(2);

        // The registrar is gone after afterInit; what it registered stays with the host.
        const QList<kelplugin::RLInstruction> instructions = kelplugin::rlCatalog().instructions();
        QCOMPARE(instructions.size(), 10);
        QCOMPARE(instructions.first().typeKey, QStringLiteral("LaserOn"));
        QCOMPARE(instructions.last().typeKey, QStringLiteral("LsMoveCF"));
        QCOMPARE(kelplugin::rlCatalog().groups().size(), 1);
    }
};

QTEST_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
