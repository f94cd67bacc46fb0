#include "controller/factoryrecords.h"
#include "page/configbackup.h"
#include "page/laserweldpage.h"
#include "page/restoredialog.h"
#include "page/weldsettingpage.h"
#include "support/pagewalk.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"
#include "widget/pagebanner.h"
#include "widget/switchbutton.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTimer>
#include <QtTest/qtestspontaneevent.h>
#include <QtTest>

namespace {

const QString kLevelText
    = QStringLiteral("Level 3 is needed to change the welding equipment; you are logged in at "
                     "level 2");
const QString kWeldingText = QStringLiteral("Locked while welding is enabled");
const QString kUnreadText = QStringLiteral(
    "The controller's values could not be read; nothing can be saved until they are");
const QString kSaveFailed
    = QStringLiteral("Save failed. Please check the parameter configuration.");

// A value on a page: "name" of a spin box or drop-down, or "table/row/column" of a table.
QWidget *probeWidget(QWidget *page, const QString &probe)
{
    const QStringList parts = probe.split(QLatin1Char('/'));
    QWidget *widget = page->findChild<QWidget *>(parts.first());
    if (auto *table = qobject_cast<QTableWidget *>(widget); table && parts.size() == 3) {
        if (QWidget *cell = table->cellWidget(parts[1].toInt(), parts[2].toInt()))
            return cell;
    }
    return widget;
}

QString probeValue(QWidget *page, const QString &probe)
{
    QWidget *widget = probeWidget(page, probe);
    if (auto *spin = qobject_cast<QSpinBox *>(widget))
        return QString::number(spin->value());
    if (auto *spin = qobject_cast<QDoubleSpinBox *>(widget))
        return QString::number(spin->value());
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        return combo->currentText();
    if (auto *table = qobject_cast<QTableWidget *>(widget)) {
        const QStringList parts = probe.split(QLatin1Char('/'));
        const QTableWidgetItem *item = table->item(parts[1].toInt(), parts[2].toInt());
        return item ? item->text() : QString();
    }
    return QStringLiteral("<no %1>").arg(probe);
}

void setProbe(QWidget *page, const QString &probe, const QString &value)
{
    QWidget *widget = probeWidget(page, probe);
    if (auto *spin = qobject_cast<QSpinBox *>(widget))
        spin->setValue(value.toInt());
    else if (auto *spin = qobject_cast<QDoubleSpinBox *>(widget))
        spin->setValue(value.toDouble());
    else if (auto *combo = qobject_cast<QComboBox *>(widget))
        combo->setCurrentText(value);
}

} // namespace

class TestPageState : public QObject
{
    Q_OBJECT

private:
    ScriptedController *m_controller = nullptr;
    RecordingShell *m_shell = nullptr;
    LaserWeldPage *m_main = nullptr;
    QTimer *m_answer = nullptr;

    // The records as the controller holds them, each with one value the tests look for.
    void serveRecords()
    {
        using kelcontroller::FactoryRecords;
        QJsonObject settings = FactoryRecords::settingConfig();
        settings.insert("laser_power", 1234);
        settings.insert("feedback_delay", 1000);
        QJsonObject io = FactoryRecords::ioConfig();
        io.insert("laser_enable_port", "DO10");
        io.insert("power_enabled", true); // the power curve's tab is usable
        QJsonObject curves = FactoryRecords::curveConfig();
        curves.insert(
            "power_nodes_data", QJsonArray {QJsonArray {0.0, 0}, QJsonArray {10.0, 5000}});
        QJsonObject set = FactoryRecords::paramConfig().value("LsData1").toObject();
        set.insert("laser_power_weld", 777);
        const QJsonObject sets {{"LsData1", set}};
        QJsonArray nodes;
        for (int node = 1; node <= 4; ++node)
            nodes.append(QJsonArray {10 * node, 100 * node, 1000, 50});
        const QJsonObject matching {{"PowerData1",
            QJsonObject {{"PowerDataID", "PowerData1"}, {"power_enable", true},
                {"frequency_enable", false}, {"dutycycle_enable", false}, {"power_data", nodes}}}};
        m_controller->serviceData = {{"weld_setting_config", settings}, {"weld_io_config", io},
            {"weld_curve_config", curves}, {"weld_param_config", sets},
            {"weld_param_match", matching}};
    }

    // Changes one value of a record the way another pendant's save would.
    void changeElsewhere(const QString &record, const QString &probe, const QString &value)
    {
        QJsonObject object = m_controller->serviceData.value(record).toObject();
        if (probe == QLatin1String("spinBox_laser_power")) {
            object.insert("laser_power", value.toInt());
        } else if (probe == QLatin1String("comboBox_laser_enable_port")) {
            object.insert("laser_enable_port", value);
        } else if (probe.startsWith(QLatin1String("tableWidget_laserpower"))) {
            object.insert("power_nodes_data",
                QJsonArray {QJsonArray {0.0, 0}, QJsonArray {10.0, value.toInt()}});
        } else if (probe.startsWith(QLatin1String("spinBox_laser_power_weld"))
            || probe.startsWith(QLatin1String("tableWidget_weldData"))) {
            QJsonObject set = object.value("LsData1").toObject();
            set.insert("laser_power_weld", value.toInt());
            object.insert("LsData1", set);
        } else if (probe.startsWith(QLatin1String("tableWidget_matching"))) {
            QJsonObject set = object.value("PowerData1").toObject();
            QJsonArray nodes = set.value("power_data").toArray();
            nodes.replace(3, QJsonArray {40, value.toInt(), 1000, 50});
            set.insert("power_data", nodes);
            object.insert("PowerData1", set);
        }
        m_controller->serviceData.insert(record, object);
    }

    // Shows the view of the main page: page by caption, tab (-1 none) and set editor.
    QWidget *showView(const QString &caption, int tab, bool editor)
    {
        for (const pagewalk::View &view : pagewalk::views(m_main)) {
            if (view.page->text() == caption && view.tab == tab && view.editor == editor) {
                pagewalk::show(m_main, view);
                return pagewalk::currentPage(m_main);
            }
        }
        return nullptr;
    }

    // Clicks the button captioned text on the next message box once it is up; atQuestion runs
    // first, to see what had happened by then.
    void answerNextQuestion(const QString &text, std::function<void()> atQuestion = {})
    {
        m_answer = new QTimer(this);
        m_answer->setInterval(0);
        connect(m_answer, &QTimer::timeout, this, [this, text, atQuestion] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            m_answer->stop();
            if (atQuestion)
                atQuestion();
            for (QAbstractButton *button : box->buttons()) {
                if (button->text() == text) {
                    button->click();
                    return;
                }
            }
            box->reject();
        });
        m_answer->start();
    }

private slots:
    void initTestCase()
    {
        testenv::initPluginResources();
        WeldSettingPage::setSwitchWait(0);
    }

    void init()
    {
        m_controller = new ScriptedController;
        m_shell = new RecordingShell;
        QStringList outputs;
        for (int i = 1; i <= 12; ++i)
            outputs.append(QStringLiteral("DO%1").arg(i));
        m_controller->ports
            = {{"DO", outputs}, {"DI", {"DI1", "DI2", "DI3", "DI4", "DI5", "DI6", "DI7"}},
                {"AO", {"AO1", "AO2", "AO3", "AO4"}}, {"AI", {"AI1", "AI2"}}, {"GO", {"GO1"}},
                {"GI", {"GI1"}}};
        serveRecords();
        m_main = new LaserWeldPage;
        m_main->resize(1200, 900);
    }

    void cleanup()
    {
        delete m_answer;
        m_answer = nullptr;
        delete m_main;
        delete m_shell;
        delete m_controller;
    }

    void viewShowsTheControllerValuesAndWhyItIsReadOnly_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("save");
        QTest::addColumn<int>("level");
        QTest::addColumn<bool>("welding");
        QTest::addColumn<QString>("banner");

        const struct
        {
            const char *caption;
            int tab;
            const char *probe;
            const char *value;
            const char *save;
        } pages[] = {{"Weld Setup", -1, "spinBox_laser_power", "1234", "pushButton_save"},
            {"Weld I/O", -1, "comboBox_laser_enable_port", "DO10", "pushButton_Save"},
            {"Char. Curve", 0, "tableWidget_laserpower/1/2", "5000", "pushButton_Save_laserpower"},
            {"Weld Data", 0, "tableWidget_weldData/0/2", "777", "pushButton_detailed"}};
        for (const auto &page : pages) {
            QTest::addRow("%s at level 2", page.caption)
                << page.caption << page.tab << page.probe << page.value << page.save << 2 << false
                << kLevelText;
            QTest::addRow("%s at level 3", page.caption)
                << page.caption << page.tab << page.probe << page.value << page.save << 3 << false
                << QString();
            QTest::addRow("%s while welding", page.caption)
                << page.caption << page.tab << page.probe << page.value << page.save << 3 << true
                << kWeldingText;
        }
    }

    void viewShowsTheControllerValuesAndWhyItIsReadOnly()
    {
        QFETCH(QString, caption);
        QFETCH(int, tab);
        QFETCH(QString, probe);
        QFETCH(QString, value);
        QFETCH(QString, save);
        QFETCH(int, level);
        QFETCH(bool, welding);
        QFETCH(QString, banner);

        m_controller->userLevel = level;
        m_main->show();
        if (welding) {
            // The controller holds the switch as it was last set.
            QJsonObject settings
                = m_controller->serviceData.value("weld_setting_config").toObject();
            settings.insert("laser_main_enable", true);
            m_controller->serviceData.insert("weld_setting_config", settings);
            m_controller->repliesByCommand["set_weld_enable"]
                = ScriptedController::reply("set_weld_enable", true);
            QTest::mouseClick(
                m_main->findChild<SwitchButton *>("pushButton_main_enable"), Qt::LeftButton);
            QVERIFY(m_main->findChild<WeldSettingPage *>()->isMainEnabled());
        }
        QWidget *page = showView(caption, tab, false);
        QVERIFY(page);

        QCOMPARE(probeValue(page, probe), value);
        QCOMPARE(m_main->banner()->reason(), banner);
        QCOMPARE(m_main->banner()->isVisibleTo(m_main), !banner.isEmpty());
        auto *action = page->findChild<QWidget *>(save);
        QVERIFY(action);
        // The lists of sets are a view at every level; welding locks the whole page.
        const bool onlyLooks = save == QLatin1String("pushButton_detailed");
        QCOMPARE(action->isEnabled(), banner.isEmpty() || (onlyLooks && !welding));
    }

    void setEditorIsAViewBelowLevelThree_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("value");
        QTest::newRow("weld data set") << 0 << "spinBox_laser_power_weld"
                                       << "777";
        QTest::newRow("matching set") << 1 << "tableWidget_matching/4/2"
                                      << "400";
    }

    void setEditorIsAViewBelowLevelThree()
    {
        QFETCH(int, tab);
        QFETCH(QString, probe);
        QFETCH(QString, value);
        m_controller->userLevel = 2;
        m_main->show();
        QWidget *page = showView("Weld Data", tab, true);
        QVERIFY(page);
        QCOMPARE(probeValue(page, probe), value);
        QVERIFY(!probeWidget(page, probe)->isEnabled());
        QVERIFY(!page->findChild<QWidget *>("pushButton_save")->isEnabled());
        QVERIFY(page->findChild<QWidget *>("pushButton_back")->isEnabled());
        QCOMPARE(m_main->banner()->reason(), kLevelText);
    }

    void wheelOverADisabledPageScrollsIt()
    {
        m_controller->userLevel = 2;
        m_main->resize(900, 300);
        m_main->show();
        QWidget *page = showView("Weld I/O", -1, false);
        QVERIFY(!page->isEnabled());
        auto *scroll = m_main->findChild<QScrollArea *>("scrollArea");
        QScrollBar *bar = scroll->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), 0);
        QWidget *combo = page->findChild<QWidget *>("comboBox_laser_enable_port");
        const QPointF at(5, 5);
        QWheelEvent wheel(at, combo->mapToGlobal(at.toPoint()), QPoint(), QPoint(0, -120),
            Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // As the window system delivers it: only such a wheel goes on to the parents.
        QSpontaneKeyEvent::setSpontaneous(&wheel);
        // (sendEvent would mark it as the program's own again.)
        qApp->notify(combo, &wheel);
        QVERIFY(bar->value() > 0);
    }

    void tabsOfALockedPageCanStillBeLookedAt()
    {
        m_controller->userLevel = 2;
        m_main->show();
        QWidget *page = showView("Char. Curve", 0, false);
        auto *tabs = page->findChild<QTabWidget *>("tabWidget");
        QVERIFY(!tabs->isEnabled());
        QTabBar *view = m_main->banner()->viewTabs();
        QVERIFY(view->isVisibleTo(m_main));
        QCOMPARE(view->count(), tabs->count());
        view->setCurrentIndex(2);
        QCOMPARE(tabs->currentIndex(), 2);

        // Where the page's own tabs work, the banner has no tabs of its own.
        m_controller->userLevel = 3;
        m_main->hide();
        m_main->show();
        showView("Char. Curve", 0, false);
        QVERIFY(!m_main->banner()->viewTabs()->isVisibleTo(m_main));
    }

    void unreadRecordIsSaidAndNothingIsSaved_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("editor");
        QTest::addColumn<QString>("action");

        QTest::newRow("settings Save") << "weld_setting_config"
                                       << "Weld Setup" << -1 << false << "pushButton_save";
        QTest::newRow("main switch") << "weld_setting_config"
                                     << "Weld Setup" << -1 << false << "pushButton_main_enable";
        QTest::newRow("I/O Save") << "weld_io_config"
                                  << "Weld I/O" << -1 << false << "pushButton_Save";
        QTest::newRow("curve Save") << "weld_curve_config"
                                    << "Char. Curve" << 0 << false << "pushButton_Save_laserpower";
        QTest::newRow("weld data Save") << "weld_param_config"
                                        << "Weld Data" << 0 << true << "pushButton_save";
        QTest::newRow("matching Save") << "weld_param_match"
                                       << "Weld Data" << 1 << true << "pushButton_save";
    }

    void unreadRecordIsSaidAndNothingIsSaved()
    {
        QFETCH(QString, record);
        QFETCH(QString, caption);
        QFETCH(int, tab);
        QFETCH(bool, editor);
        QFETCH(QString, action);

        m_controller->serviceData.remove(record);
        m_main->show();
        QWidget *page = showView(caption, tab, editor);
        QVERIFY(page);
        QCOMPARE(m_main->banner()->reason(), kUnreadText);
        m_controller->clearSent();
        m_shell->clear();

        auto *button = page->findChild<QWidget *>(action);
        QVERIFY(button && button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        QStringList sent = m_controller->sentCommands();
        sent.removeAll("compute_curve_config");
        QCOMPARE(sent, QStringList());
        QCOMPARE(m_shell->messageTexts(), QStringList {kUnreadText});
        QCOMPARE(m_shell->messageTexts(1).size(), 1);

        // Once the controller answers, the page holds its values and saves again.
        serveRecords();
        m_main->readShownPage(false);
        QCOMPARE(m_main->banner()->reason(), QString());
    }

    void reconnectShowsTheControllerValues_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("editor");
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("changed");

        QTest::newRow("settings") << "weld_setting_config"
                                  << "Weld Setup" << -1 << false << "spinBox_laser_power"
                                  << "1600";
        QTest::newRow("I/O") << "weld_io_config"
                             << "Weld I/O" << -1 << false << "comboBox_laser_enable_port"
                             << "DO12";
        QTest::newRow("curve") << "weld_curve_config"
                               << "Char. Curve" << 0 << false << "tableWidget_laserpower/1/2"
                               << "5800";
        QTest::newRow("weld data list") << "weld_param_config"
                                        << "Weld Data" << 0 << false << "tableWidget_weldData/0/2"
                                        << "900";
        QTest::newRow("weld data set") << "weld_param_config"
                                       << "Weld Data" << 0 << true << "spinBox_laser_power_weld"
                                       << "900";
        QTest::newRow("matching set") << "weld_param_match"
                                      << "Weld Data" << 1 << true << "tableWidget_matching/4/2"
                                      << "500";
    }

    void reconnectShowsTheControllerValues()
    {
        QFETCH(QString, record);
        QFETCH(QString, caption);
        QFETCH(int, tab);
        QFETCH(bool, editor);
        QFETCH(QString, probe);
        QFETCH(QString, changed);

        m_main->show();
        QWidget *page = showView(caption, tab, editor);
        QVERIFY(page);
        changeElsewhere(record, probe, changed);
        m_controller->emitConnectionRestored();
        QCOMPARE(probeValue(page, probe), changed);
        QCOMPARE(m_main->banner()->reason(), QString());
    }

    void reconnectKeepsUnsavedEdits_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("editor");
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("edited");
        QTest::addColumn<QString>("elsewhere");
        QTest::newRow("I/O") << "weld_io_config"
                             << "Weld I/O" << -1 << false << "comboBox_laser_enable_port"
                             << "DO11"
                             << "DO12";
        QTest::newRow("weld data set") << "weld_param_config"
                                       << "Weld Data" << 0 << true << "spinBox_laser_power_weld"
                                       << "800"
                                       << "900";
    }

    void reconnectKeepsUnsavedEdits()
    {
        QFETCH(QString, record);
        QFETCH(QString, caption);
        QFETCH(int, tab);
        QFETCH(bool, editor);
        QFETCH(QString, probe);
        QFETCH(QString, edited);
        QFETCH(QString, elsewhere);

        m_main->show();
        QWidget *page = showView(caption, tab, editor);
        setProbe(page, probe, edited);
        changeElsewhere(record, probe, elsewhere);
        m_shell->clear();
        m_controller->emitConnectionRestored();
        QCOMPARE(probeValue(page, probe), edited);
        QCOMPARE(m_shell->messageTexts(1).size(), 1);
        // A second reconnect still finds the edits.
        m_controller->emitConnectionRestored();
        QCOMPARE(probeValue(page, probe), edited);
        QCOMPARE(m_shell->messageTexts(1).size(), 2);
        // Reading without keeping the edits (as after a restore) shows the controller's values.
        m_main->readShownPage(false);
        QCOMPARE(probeValue(page, probe), elsewhere);
    }

    void restoreShowsTheRestoredValues()
    {
        // The controller keeps what it is sent.
        m_controller->onCommand = [this](const ScriptedController::Sent &sent) {
            if (sent.command == QLatin1String("set_weld_io_config"))
                m_controller->serviceData.insert("weld_io_config", sent.value);
        };
        QJsonObject records;
        for (const QString &key : ConfigBackup::recordKeys())
            records.insert(key, m_controller->serviceData.value(key));
        QJsonObject io = records.value("weld_io_config").toObject();
        io.insert("laser_enable_port", "DO12");
        records.insert("weld_io_config", io);
        QTemporaryDir files;
        QFile file(files.filePath("backup.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(ConfigBackup::write(records, QJsonObject(), QDateTime::currentDateTimeUtc()));
        file.close();

        m_main->show();
        QWidget *page = showView("Weld I/O", -1, false);
        QCOMPARE(probeValue(page, "comboBox_laser_enable_port"), QStringLiteral("DO10"));
        m_main->openRestore(file.fileName());
        auto *dialog = m_main->findChild<RestoreDialog *>();
        QCOMPARE(dialog->selectedRecords(), QStringList {"weld_io_config"});
        dialog->findChild<QPushButton *>("pushButton_restore")->click();
        QCOMPARE(m_controller->sentCommands(), QStringList {"set_weld_io_config"});

        // The page open shows the restore, so that its next Save does not undo it.
        QCOMPARE(probeValue(page, "comboBox_laser_enable_port"), QStringLiteral("DO12"));
        m_controller->clearSent();
        QTest::mouseClick(page->findChild<QWidget *>("pushButton_Save"), Qt::LeftButton);
        QCOMPARE(m_controller->sent.constFirst().value.toObject().value("laser_enable_port"),
            QJsonValue("DO12"));
    }

    void conflictAsksReloadOrOverwrite_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("editor");
        QTest::addColumn<QString>("save");
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("edited");
        QTest::addColumn<QString>("elsewhere");
        QTest::addColumn<QString>("answer");

        const struct
        {
            const char *name;
            const char *record;
            const char *command;
            const char *caption;
            int tab;
            bool editor;
            const char *save;
            const char *probe;
            const char *edited;
            const char *elsewhere;
        } saves[] = {
            {"settings", "weld_setting_config", "set_weld_setting_config", "Weld Setup", -1, false,
                "pushButton_save", "spinBox_laser_power", "1500", "1600"},
            {"I/O", "weld_io_config", "set_weld_io_config", "Weld I/O", -1, false,
                "pushButton_Save", "comboBox_laser_enable_port", "DO11", "DO12"},
            {"curve", "weld_curve_config", "set_weld_curve_power_config", "Char. Curve", 0, false,
                "pushButton_Save_laserpower", "tableWidget_laserpower/1/2", "5500", "5800"},
            {"weld data", "weld_param_config", "set_weld_param_list_config", "Weld Data", 0, true,
                "pushButton_save", "spinBox_laser_power_weld", "800", "900"},
            {"matching", "weld_param_match", "set_weld_param_match_config", "Weld Data", 1, true,
                "pushButton_save", "tableWidget_matching/4/2", "450", "500"},
        };
        for (const auto &s : saves) {
            for (const char *answer : {"Reload", "Overwrite", "Cancel"}) {
                QTest::addRow("%s %s", s.name, answer)
                    << s.record << s.command << s.caption << s.tab << s.editor << s.save << s.probe
                    << s.edited << s.elsewhere << answer;
            }
        }
    }

    void conflictAsksReloadOrOverwrite()
    {
        QFETCH(QString, record);
        QFETCH(QString, command);
        QFETCH(QString, caption);
        QFETCH(int, tab);
        QFETCH(bool, editor);
        QFETCH(QString, save);
        QFETCH(QString, probe);
        QFETCH(QString, edited);
        QFETCH(QString, elsewhere);
        QFETCH(QString, answer);

        m_main->show();
        QWidget *page = showView(caption, tab, editor);
        QVERIFY(page);
        setProbe(page, probe, edited);
        QCOMPARE(probeValue(page, probe), edited);
        changeElsewhere(record, probe, elsewhere);
        // The first save is refused as changed since read; any later one is taken.
        m_controller->repliesByCommand[command] = ScriptedController::reply(command, 8);
        QList<int> readsAtSave;
        m_controller->onCommand = [&](const ScriptedController::Sent &sent) {
            if (sent.command != command)
                return;
            readsAtSave.append(m_controller->readKeys.count(record));
            if (readsAtSave.size() > 1)
                m_controller->repliesByCommand.remove(command);
        };
        m_controller->clearSent();
        m_shell->clear();
        QStringList saidBeforeQuestion;
        answerNextQuestion(answer, [&] { saidBeforeQuestion = m_shell->messageTexts(); });

        QTest::mouseClick(page->findChild<QWidget *>(save), Qt::LeftButton);
        // The save's own failure message comes first, then the question.
        QCOMPARE(saidBeforeQuestion, QStringList {kSaveFailed});
        QVERIFY(!m_answer->isActive());
        QStringList sent = m_controller->sentCommands();
        sent.removeAll("compute_curve_config");
        if (answer == QLatin1String("Overwrite")) {
            QCOMPARE(sent, (QStringList {command, command}));
            QCOMPARE(readsAtSave.size(), 2);
            // Read again in between, so the controller knows the other change was seen.
            QCOMPARE(readsAtSave[1], readsAtSave[0] + 1);
            const auto payloads = [this, &command] {
                QJsonArray list;
                for (const auto &s : qAsConst(m_controller->sent))
                    if (s.command == command)
                        list.append(s.value);
                return list;
            }();
            QCOMPARE(payloads.at(0), payloads.at(1));
            QCOMPARE(m_shell->messageTexts().last(), QStringLiteral("Saved successfully"));
            QCOMPARE(probeValue(page, probe), edited);
            return;
        }
        QCOMPARE(sent, QStringList {command});
        QCOMPARE(probeValue(page, probe), answer == QLatin1String("Reload") ? elsewhere : edited);
    }
};

QTEST_MAIN(TestPageState)
#include "tst_pagestate.moc"
