#include "core/kellaserweld.h"
#include "support/recordingshell.h"
#include "support/testenvironment.h"

#include "controller/controllersimulator.h"

#include <QAbstractButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <QPair>

using kelcontroller::ControllerSimulator;

namespace {

const QString kRefusal = QStringLiteral("Insufficient user permissions!");

// The monitor stream changes nothing on the equipment; everything else the plug-in sends does.
bool changesEquipment(const QString &command)
{
    return command != QLatin1String("start_laserweld_monitor");
}

// Save, Cancel, Compute and the welding main switch of every page, by their form names.
bool isPageAction(const QWidget *widget)
{
    static const QRegularExpression names(
        QStringLiteral("^pushButton_(save|cancel|compute|main_enable)"),
        QRegularExpression::CaseInsensitiveOption);
    return names.match(widget->objectName()).hasMatch();
}

// The plug-in after init against a simulated controller at the given user level.
struct Cell
{
    QTemporaryDir dataDir;
    ControllerSimulator controller {dataDir.path()};
    RecordingShell shell;
    kelplugin::kelLaserWeld plugin;
    QStringList handled;

    explicit Cell(int level)
    {
        controller.setUserLevel(level);
        kelplugin::setControllerBackend(&controller);
        QObject::connect(&controller, &ControllerSimulator::commandHandled, &controller,
            [this](const QString &command) { handled.append(command); });
        static_cast<kelplugin::PluginBase &>(plugin).init();
        shell.clear();
        handled.clear();
    }
    ~Cell() { kelplugin::setControllerBackend(nullptr); }

    QStringList equipmentCommands() const
    {
        QStringList commands;
        for (const QString &command : handled) {
            if (changesEquipment(command))
                commands.append(command);
        }
        return commands;
    }

    // The navigation buttons of the main page; each one shows one configuration page.
    QList<QToolButton *> pageButtons() const
    {
        QWidget *nav = shell.centerWidget
            ? shell.centerWidget->findChild<QWidget *>(QStringLiteral("wgtNav"))
            : nullptr;
        return nav ? nav->findChildren<QToolButton *>() : QList<QToolButton *>();
    }

    QList<QWidget *> visibleActions() const
    {
        auto *stack = shell.centerWidget
            ? shell.centerWidget->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"))
            : nullptr;
        QList<QWidget *> actions;
        if (!stack || !stack->currentWidget())
            return actions;
        const QList<QWidget *> widgets = stack->currentWidget()->findChildren<QWidget *>();
        for (QWidget *w : widgets) {
            if (isPageAction(w) && w->isVisible())
                actions.append(w);
        }
        return actions;
    }
};

} // namespace

class TestPermissionSweep : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void keysActOnlyFromLevelThree_data();
    void keysActOnlyFromLevelThree();
    void pageActionsActOnlyFromLevelThree_data();
    void pageActionsActOnlyFromLevelThree();
};

void TestPermissionSweep::initTestCase()
{
    testenv::initPluginResources();
}

void TestPermissionSweep::keysActOnlyFromLevelThree_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("commands"); // sent for one press and release at level 3
    QTest::addColumn<int>("refusals");         // messages for one press and release below it

    const struct
    {
        const char *key;
        QStringList commands;
        int refusals;
    } keys[] = {
        {"Work mode", {QStringLiteral("set_virtual_welding")}, 1},
        {"Wiring", {QStringLiteral("set_weld_feed_wire"), QStringLiteral("set_weld_feed_wire")}, 2},
        {"Red Light", {QStringLiteral("set_weld_red_light")}, 1},
        {"ProtectGas", {QStringLiteral("set_weld_manual_gas")}, 1},
        {"Retract Wire",
            {QStringLiteral("set_weld_retract_wire"), QStringLiteral("set_weld_retract_wire")}, 2},
    };
    for (int level = 0; level <= 3; ++level) {
        for (const auto &k : keys) {
            QTest::addRow("level %d %s", level, k.key)
                << level << QString::fromLatin1(k.key) << k.commands << k.refusals;
        }
    }
}

void TestPermissionSweep::keysActOnlyFromLevelThree()
{
    QFETCH(int, level);
    QFETCH(QString, key);
    QFETCH(QStringList, commands);
    QFETCH(int, refusals);

    Cell cell(level);
    QVERIFY(cell.shell.press(key, true));
    QVERIFY(cell.shell.press(key, false));

    if (level >= 3) {
        QCOMPARE(cell.equipmentCommands(), commands);
        QVERIFY(!cell.shell.messageTexts().contains(kRefusal));
        return;
    }
    QCOMPARE(cell.equipmentCommands(), QStringList());
    QStringList expected;
    for (int i = 0; i < refusals; ++i)
        expected.append(kRefusal);
    QCOMPARE(cell.shell.messageTexts(), expected);
    QCOMPARE(cell.shell.messageTexts(1).size(), refusals);
    // A refused key leaves the equipment as it was.
    QCOMPARE(cell.controller.isGasOpen(), false);
    QCOMPARE(cell.controller.feeder(), ControllerSimulator::Feeder::Idle);
    QCOMPARE(cell.controller.isRedLightOn(), false);
    QCOMPARE(cell.controller.isVirtualWelding(), false);
}

void TestPermissionSweep::pageActionsActOnlyFromLevelThree_data()
{
    QTest::addColumn<int>("level");
    for (int level = 0; level <= 3; ++level)
        QTest::addRow("level %d", level) << level;
}

void TestPermissionSweep::pageActionsActOnlyFromLevelThree()
{
    QFETCH(int, level);

    Cell cell(level);
    QVERIFY(cell.shell.centerWidget);
    cell.shell.centerWidget->resize(1200, 900);
    cell.shell.centerWidget->show();
    const QList<QToolButton *> pages = cell.pageButtons();
    QVERIFY(!pages.isEmpty());

    // The main switch goes last: switching welding on would lock the other pages.
    QList<QPair<QToolButton *, QString>> actions;
    QList<QPair<QToolButton *, QString>> mainSwitches;
    for (QToolButton *page : pages) {
        page->click();
        const QList<QWidget *> visible = cell.visibleActions();
        for (QWidget *action : visible) {
            auto &list = action->objectName().contains(QLatin1String("main_enable")) ? mainSwitches
                                                                                     : actions;
            list.append({page, action->objectName()});
        }
    }
    actions += mainSwitches;
    QStringList names;
    for (const auto &entry : qAsConst(actions))
        names.append(entry.second);
    // At least the device settings and I/O pages' actions are swept; later pages add theirs.
    for (const char *expected : {"pushButton_save", "pushButton_cancel", "pushButton_main_enable",
             "pushButton_Save", "pushButton_Cancel"})
        QVERIFY2(names.contains(QLatin1String(expected)), expected);

    for (const auto &entry : qAsConst(actions)) {
        entry.first->click();
        auto *stack
            = cell.shell.centerWidget->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
        QWidget *action = stack->currentWidget()->findChild<QWidget *>(entry.second);
        QVERIFY(action);
        const QString where = entry.first->text() + QStringLiteral(": ") + entry.second;
        cell.handled.clear();
        cell.shell.clear();
        if (level < 3) {
            QVERIFY2(!action->isEnabled(), qPrintable(where));
            // A click that gets through anyway must not reach the controller either.
            QTest::mouseClick(action, Qt::LeftButton);
            if (auto *button = qobject_cast<QAbstractButton *>(action))
                button->click();
            QVERIFY2(cell.equipmentCommands().isEmpty(),
                qPrintable(where + " sent " + cell.equipmentCommands().join(' ')));
            QVERIFY2(cell.shell.messages.isEmpty(), qPrintable(where));
            continue;
        }
        QVERIFY2(action->isEnabled(), qPrintable(where));
        QTest::mouseClick(action, Qt::LeftButton);
        const QString name = entry.second.toLower();
        const QStringList sent = cell.equipmentCommands();
        if (name.contains(QLatin1String("cancel"))) {
            QVERIFY2(sent.isEmpty(), qPrintable(where + " sent " + sent.join(' ')));
            QVERIFY2(cell.shell.messageTexts().contains(QStringLiteral("Cancel successful")),
                qPrintable(where));
        } else if (name.contains(QLatin1String("compute"))) {
            QVERIFY2(sent.contains(QStringLiteral("compute_curve_config")), qPrintable(where));
        } else if (name.contains(QLatin1String("main_enable"))) {
            QVERIFY2(sent.contains(QStringLiteral("set_weld_enable")), qPrintable(where));
        } else {
            QVERIFY2(sent.size() == 1 && sent.constFirst().startsWith(QLatin1String("set_weld_"))
                    && sent.constFirst().endsWith(QLatin1String("_config")),
                qPrintable(where + " sent " + sent.join(' ')));
        }
    }
}

QTEST_MAIN(TestPermissionSweep)
#include "tst_permissionsweep.moc"
