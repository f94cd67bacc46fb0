#include "core/kellaserweld.h"
#include "page/laserweldpage.h"
#include "page/restoredialog.h"
#include "support/pagewalk.h"
#include "support/recordingshell.h"
#include "support/testenvironment.h"

#include "controller/controllersimulator.h"

#include <QAbstractButton>
#include <QTreeWidget>
#include <QtTest>

using kelcontroller::ControllerSimulator;

namespace {

const QString kRefusal = QStringLiteral("Insufficient user permissions!");

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

    // Every curve's output configured, so that only the level can lock a curve's tab.
    void configureCurves()
    {
        QJsonObject io = controller.record(QStringLiteral("weld_io_config"));
        for (const char *key :
            {"power_enabled", "wire_speed_enabled", "frequency_enabled", "duty_cycle_enabled"})
            io.insert(QLatin1String(key), true);
        controller.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
            QJsonObject {{QStringLiteral("set_weld_io_config"), io}});
        handled.clear();
    }

    // The main page shown, large enough for every page.
    QWidget *showMain()
    {
        centerWidget()->resize(1200, 900);
        centerWidget()->show();
        return centerWidget();
    }
    QWidget *centerWidget() const { return shell.centerWidget; }

    // The monitor stream and a curve fit change nothing on the equipment or in its records.
    QStringList equipmentCommands() const
    {
        QStringList commands = handled;
        commands.removeAll(QStringLiteral("start_laserweld_monitor"));
        commands.removeAll(QStringLiteral("compute_curve_config"));
        return commands;
    }

    // The visible Save, Cancel, Compute, welding main switch, Detailed and back buttons of the
    // page shown, by their form names.
    QStringList actions() const
    {
        static const QRegularExpression names(
            QStringLiteral("^pushButton_(save|cancel|compute|main_enable|detailed|back)"),
            QRegularExpression::CaseInsensitiveOption);
        QStringList result;
        const QList<QWidget *> widgets
            = pagewalk::currentPage(shell.centerWidget)->findChildren<QWidget *>();
        for (QWidget *w : widgets) {
            if (w->isVisible() && names.match(w->objectName()).hasMatch())
                result.append(w->objectName());
        }
        return result;
    }
};

} // namespace

class TestPermissionSweep : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }

    void keysActOnlyFromLevelThree_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("commands"); // sent for one press and release at level 3
        QTest::addColumn<int>("refusals");         // messages for one press and release below it

        // The wire keys act on press and on release, the others on press only.
        const QPair<const char *, QString> keys[] = {{"Work mode", "set_virtual_welding"},
            {"Wiring", "set_weld_feed_wire"}, {"Red Light", "set_weld_red_light"},
            {"ProtectGas", "set_weld_manual_gas"}, {"Retract Wire", "set_weld_retract_wire"}};
        for (int level = 0; level <= 3; ++level) {
            for (const auto &[key, command] : keys) {
                const int halves = command.contains(QLatin1String("_wire")) ? 2 : 1;
                QTest::addRow("level %d %s", level, key)
                    << level << QString(key)
                    << (halves == 2 ? QStringList {command, command} : QStringList {command})
                    << halves;
            }
        }
    }

    void keysActOnlyFromLevelThree()
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
        QCOMPARE(cell.shell.messageTexts(),
            (refusals == 2 ? QStringList {kRefusal, kRefusal} : QStringList {kRefusal}));
        QCOMPARE(cell.shell.messageTexts(1).size(), refusals);
        // A refused key leaves the equipment as it was.
        QCOMPARE(cell.controller.isGasOpen(), false);
        QCOMPARE(cell.controller.feeder(), ControllerSimulator::Feeder::Idle);
        QCOMPARE(cell.controller.isRedLightOn(), false);
        QCOMPARE(cell.controller.isVirtualWelding(), false);
    }

    void pageActionsActOnlyFromLevelThree_data()
    {
        QTest::addColumn<int>("level");
        for (int level = 0; level <= 3; ++level)
            QTest::addRow("level %d", level) << level;
    }

    void pageActionsActOnlyFromLevelThree()
    {
        QFETCH(int, level);

        Cell cell(level);
        cell.configureCurves();
        QVERIFY(cell.shell.centerWidget);
        cell.showMain();

        // Every action of every view, each acted on in a freshly shown view. The main switch goes
        // last: switching welding on would lock the other pages.
        struct Action
        {
            pagewalk::View view;
            QString name;
        };
        QList<Action> actions;
        QList<Action> mainSwitches;
        QWidget *main = cell.shell.centerWidget;
        const QList<pagewalk::View> views = pagewalk::views(main);
        QStringList names;
        for (const pagewalk::View &view : views) {
            pagewalk::show(main, view);
            for (const QString &name : cell.actions()) {
                (name.contains(QLatin1String("main_enable")) ? mainSwitches : actions)
                    .append({view, name});
                names.append(name);
            }
        }
        actions += mainSwitches;
        // The forms' own names: a renamed button would silently drop out of the sweep.
        QStringList expected {"save", "cancel", "main_enable", "Save", "Cancel", "compute",
            "compute_2", "compute_3", "compute_5", "Save_laserpower", "Save_speed",
            "Save_frequency", "Save_dutycycle", "detailed", "back"};
        for (const QString &name : qAsConst(expected))
            QVERIFY2(names.contains("pushButton_" + name), qPrintable(name));

        QStringList savesSent;
        for (const Action &entry : qAsConst(actions)) {
            const QString where
                = pagewalk::show(main, entry.view) + QStringLiteral(": ") + entry.name;
            QWidget *action = pagewalk::currentPage(main)->findChild<QWidget *>(entry.name);
            QVERIFY2(action && action->isVisible(), qPrintable(where));
            cell.handled.clear();
            cell.shell.clear();
            // Opening a set and going back to the lists only look: they stay at every level.
            const bool looks = entry.name.contains(QLatin1String("detailed"))
                || entry.name.contains(QLatin1String("back"));
            if (level < 3 && looks) {
                QVERIFY2(action->isEnabled(), qPrintable(where));
                QTest::mouseClick(action, Qt::LeftButton);
                QVERIFY2(
                    cell.handled.isEmpty(), qPrintable(where + " sent " + cell.handled.join(' ')));
                continue;
            }
            if (level < 3) {
                QVERIFY2(!action->isEnabled(), qPrintable(where));
                // A click that gets through anyway must not reach the controller either.
                QTest::mouseClick(action, Qt::LeftButton);
                if (auto *button = qobject_cast<QAbstractButton *>(action))
                    button->click();
                QVERIFY2(
                    cell.handled.isEmpty(), qPrintable(where + " sent " + cell.handled.join(' ')));
                QVERIFY2(cell.shell.messages.isEmpty(), qPrintable(where));
                continue;
            }
            QVERIFY2(action->isEnabled(), qPrintable(where));
            QTest::mouseClick(action, Qt::LeftButton);
            const QString name = entry.name.toLower();
            const QStringList sent = cell.equipmentCommands();
            const bool isSave = name.contains(QLatin1String("save"));
            const bool isMain = name.contains(QLatin1String("main_enable"));
            // Cancel, Compute, Detailed and back change nothing on the equipment.
            QVERIFY2(
                isSave || isMain || sent.isEmpty(), qPrintable(where + " sent " + sent.join(' ')));
            if (name.contains(QLatin1String("cancel"))) {
                QVERIFY2(cell.shell.messageTexts().contains(QStringLiteral("Cancel successful")),
                    qPrintable(where));
            } else if (name.contains(QLatin1String("compute"))) {
                QVERIFY2(cell.handled.contains(QStringLiteral("compute_curve_config")),
                    qPrintable(where));
            } else if (isMain) {
                QVERIFY2(sent.contains(QStringLiteral("set_weld_enable")), qPrintable(where));
            } else if (isSave) {
                QVERIFY2(sent.size() == 1
                        && sent.constFirst().startsWith(QLatin1String("set_weld_"))
                        && sent.constFirst().endsWith(QLatin1String("_config")),
                    qPrintable(where + " sent " + sent.join(' ')));
                savesSent += sent;
            }
        }
        if (level >= 3) {
            // Every record the pages own was saved by its own page.
            savesSent.removeDuplicates();
            savesSent.sort();
            QCOMPARE(savesSent,
                QStringList({"set_weld_curve_dutycycle_config", "set_weld_curve_feed_config",
                    "set_weld_curve_frequency_config", "set_weld_curve_power_config",
                    "set_weld_io_config", "set_weld_param_list_config",
                    "set_weld_param_match_config", "set_weld_setting_config"}));
        }
    }

    void levelCountsAtTheMomentOfTheAction_data()
    {
        QTest::addColumn<QString>("page"); // navigation caption; empty: not a page's action
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("editor");
        QTest::addColumn<QString>("action");  // a button's name, "key:<name>" or "restore"
        QTest::addColumn<QString>("command"); // sent once the level is 3 again

        QTest::newRow("settings Save") << "Weld Setup" << -1 << false << "pushButton_save"
                                       << "set_weld_setting_config";
        QTest::newRow("main switch") << "Weld Setup" << -1 << false << "pushButton_main_enable"
                                     << "set_weld_enable";
        QTest::newRow("I/O Save") << "Weld I/O" << -1 << false << "pushButton_Save"
                                  << "set_weld_io_config";
        const char *curves[][2] = {{"pushButton_Save_laserpower", "set_weld_curve_power_config"},
            {"pushButton_Save_speed", "set_weld_curve_feed_config"},
            {"pushButton_Save_frequency", "set_weld_curve_frequency_config"},
            {"pushButton_Save_dutycycle", "set_weld_curve_dutycycle_config"}};
        for (int tab = 0; tab < 4; ++tab)
            QTest::addRow("curve Save %d", tab)
                << "Char. Curve" << tab << false << curves[tab][0] << curves[tab][1];
        QTest::newRow("weld data Save") << "Weld Data" << 0 << true << "pushButton_save"
                                        << "set_weld_param_list_config";
        QTest::newRow("matching Save") << "Weld Data" << 1 << true << "pushButton_save"
                                       << "set_weld_param_match_config";
        QTest::newRow("Restore") << "" << -1 << false << "restore"
                                 << "set_weld_io_config";
        for (const char *key : {"Work mode", "Wiring", "Red Light", "ProtectGas", "Retract Wire"})
            QTest::addRow("key %s", key)
                << "" << -1 << false << QStringLiteral("key:%1").arg(key) << QString();
    }

    // A page opened at level 3 stays on screen when the operator's level drops to 2: its
    // actions must ask for the level when used, not when the page was shown.
    void levelCountsAtTheMomentOfTheAction()
    {
        QFETCH(QString, page);
        QFETCH(int, tab);
        QFETCH(bool, editor);
        QFETCH(QString, action);
        QFETCH(QString, command);

        Cell cell(3);
        cell.configureCurves();
        QWidget *main = cell.showMain();
        QTemporaryDir files;
        const QString backup = files.filePath(QStringLiteral("cell.json"));
        pagewalk::View view {nullptr, tab, editor};
        for (const pagewalk::View &candidate : pagewalk::views(main)) {
            if (candidate.page->text() == page && candidate.tab == tab
                && candidate.editor == editor)
                view = candidate;
        }
        // What the action is, found anew after each show.
        std::function<QAbstractButton *()> button;
        if (!page.isEmpty()) {
            QVERIFY(view.page);
            pagewalk::show(main, view);
            button = [main, action] {
                return pagewalk::currentPage(main)->findChild<QAbstractButton *>(action);
            };
        } else if (action == QLatin1String("restore")) {
            auto *laserPage = qobject_cast<LaserWeldPage *>(main);
            QVERIFY(laserPage->backupTo(backup));
            // The controller changes after the backup, so the backup has something to restore.
            QJsonObject io = cell.controller.record(QStringLiteral("weld_io_config"));
            io.insert(QStringLiteral("laser_enable_port"), QStringLiteral("DO7"));
            cell.controller.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
                QJsonObject {{QStringLiteral("set_weld_io_config"), io}});
            laserPage->openRestore(backup);
            auto *dialog = main->findChild<RestoreDialog *>();
            QVERIFY(dialog);
            QCOMPARE(dialog->selectedRecords(), QStringList {"weld_io_config"});
            button = [dialog] {
                return dialog->findChild<QAbstractButton *>(QStringLiteral("pushButton_restore"));
            };
        }
        const auto act = [&] {
            cell.handled.clear();
            cell.shell.clear();
            if (button) {
                QAbstractButton *target = button();
                QVERIFY(target && target->isEnabled());
                QTest::mouseClick(target, Qt::LeftButton);
                return;
            }
            const QString key = action.mid(4);
            QVERIFY(cell.shell.press(key, true));
            QVERIFY(cell.shell.press(key, false));
        };

        cell.controller.setUserLevel(2);
        act();
        QCOMPARE(cell.equipmentCommands(), QStringList());
        QVERIFY(!cell.shell.messageTexts(1).isEmpty());
        for (const QString &text : cell.shell.messageTexts())
            QCOMPARE(text, kRefusal);

        // Shown again (as the pendant does when the level changes), the page follows the level.
        const auto showAgain = [&] {
            main->hide();
            main->show();
            pagewalk::show(main, view);
        };
        if (!page.isEmpty()) {
            showAgain();
            QVERIFY(!button()->isEnabled());
        }

        cell.controller.setUserLevel(3);
        if (!page.isEmpty())
            showAgain();
        act();
        QVERIFY(!cell.shell.messageTexts().contains(kRefusal));
        if (!command.isEmpty())
            QVERIFY2(cell.equipmentCommands().contains(command),
                qPrintable(cell.equipmentCommands().join(' ')));
        else
            QVERIFY(!cell.equipmentCommands().isEmpty());
    }
};

QTEST_MAIN(TestPermissionSweep)
#include "tst_permissionsweep.moc"
