// kel_soak: thousands of random operator actions through the pendant (window, keys, the
// plug-in's pages, the program editor, the cell controls) against the simulated controller,
// with random faults: failure codes, empty and malformed replies, dropped connections.
//
//     kel_soak [--minutes M | --actions N] [--seed S] [--plugins DIR]
//
// Every command the controller handles is checked as it happens: an accepted save must hold
// what was sent, a refusal must change no record. At the end the data file must be valid and
// a controller started afresh from it must hold exactly the records of the running one.
// Prints the seed first, so a failing run can be repeated; exits 1 on any finding.

#include "keypanel.h"
#include "pendantwindow.h"
#include "pluginhost.h"
#include "programeditor.h"

#include "controller/controllersimulator.h"
#include "kelplugin/controllerbackend.h"
#include "kelplugin/qflog.h"

#include <QtTest>
#include <QtWidgets>

#include <algorithm>
#include <cstdio>

using kelcontroller::ControllerSimulator;

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");

struct Figures
{
    qint64 actions = 0, commands = 0, accepted = 0, refused = 0, savesChecked = 0, faults = 0,
           disconnects = 0, dialogsClosed = 0;
    QMap<QString, int> byCommand;
    QStringList findings;
};

// Everything the controller keeps: the records and the persisted work mode.
struct Snapshot
{
    QHash<QString, QJsonObject> records;
    bool virtualWelding = false;

    explicit Snapshot(const ControllerSimulator &controller)
        : virtualWelding(controller.isVirtualWelding())
    {
        for (const QString &key : ControllerSimulator::recordKeys())
            records.insert(key, controller.record(key));
    }
    bool operator==(const Snapshot &o) const
    {
        return records == o.records && virtualWelding == o.virtualWelding;
    }
};

// The record a command stores into (the curve commands all store into one).
QString recordOf(const QString &command)
{
    static const QHash<QString, QString> records {{"set_weld_io_config", "weld_io_config"},
        {"set_weld_setting_config", "weld_setting_config"},
        {"set_weld_param_list_config", "weld_param_config"},
        {"set_weld_param_match_config", "weld_param_match"}};
    return command.startsWith(QLatin1String("set_weld_curve_"))
        ? QStringLiteral("weld_curve_config")
        : records.value(command);
}

// Random operator actions on what the pendant shows, and the check of every command they cause.
class Soak
{
public:
    Soak(PendantWindow *window, ControllerSimulator *controller, quint32 seed, Figures *figures)
        : m_window(window)
        , m_controller(controller)
        , m_random(seed)
        , m_figures(figures)
        , m_before(*controller)
    {
        QObject::connect(controller, &ControllerSimulator::commandHandled, controller,
            [this](const QString &command, const QJsonValue &payload, const QJsonArray &reply) {
                onCommand(command, payload, reply);
            });
    }

    void act()
    {
        ++m_figures->actions;
        const int dice = int(m_random.bounded(100));
        // A dropped link comes back after a few actions, as a real one would.
        if (!m_controller->isConnected() && m_random.bounded(4) == 0)
            click(QStringLiteral("controllerConnected"), true);
        if (dice < 18)
            pressKey();
        else if (dice < 48)
            useWidget();
        else if (dice < 66)
            pageAction();
        else if (dice < 73)
            switchTab();
        else if (dice < 81) // mostly an operator who may act, sometimes one who may not
            m_window->findChild<QSpinBox *>(QStringLiteral("userLevel"))
                ->setValue(m_random.bounded(3) ? 3 : below(3));
        else if (dice < 85)
            // Powered most of the time would refuse most work-mode and welding changes.
            click(QStringLiteral("robotPowered"), m_random.bounded(4) == 0);
        else if (dice < 88) {
            m_figures->disconnects += m_controller->isConnected();
            click(QStringLiteral("controllerConnected"), !m_controller->isConnected());
        } else
            injectFault();
        QCoreApplication::processEvents();
    }

    void restoreCell()
    {
        releaseHeldKey();
        click(QStringLiteral("controllerConnected"), true);
    }

private:
    void onCommand(const QString &command, const QJsonValue &payload, const QJsonArray &reply)
    {
        ++m_figures->commands;
        ++m_figures->byCommand[command];
        const Snapshot now(*m_controller);
        const QJsonValue code = reply.size() != 1
            ? QJsonValue(QJsonValue::Undefined)
            : reply.at(0)[kPluginKey][command][QStringLiteral("return")];
        const bool accepted = code == QJsonValue(0) || code == QJsonValue(true);
        const bool refused = !accepted && (code.isDouble() || code.isBool());
        m_figures->accepted += accepted;
        m_figures->refused += refused;

        if (refused && !(now == m_before))
            finding(QStringLiteral("refused %1 changed the controller's records").arg(command));
        const QString record = recordOf(command);
        if (record.isEmpty() && command != QLatin1String("set_weld_enable")
            && command != QLatin1String("set_virtual_welding")
            && !(now.records == m_before.records))
            finding(QStringLiteral("%1 changed a record").arg(command));
        if (accepted && !record.isEmpty()) {
            ++m_figures->savesChecked;
            // Whole-record saves keep exactly their own keys; the others merge members.
            const QJsonObject stored = now.records.value(record);
            const bool whole = record == QLatin1String("weld_io_config")
                || record == QLatin1String("weld_setting_config");
            const QStringList keys = whole ? stored.keys() : payload.toObject().keys();
            for (const QString &key : keys) {
                // laser_main_enable is the controller's own welding state, whatever was sent.
                if (key != QLatin1String("laser_main_enable")
                    && stored.value(key) != payload.toObject().value(key))
                    finding(QStringLiteral("accepted %1 did not store %2").arg(command, key));
            }
        }
        if (accepted && command == QLatin1String("set_virtual_welding")
            && now.virtualWelding != payload.toBool())
            finding(QStringLiteral("accepted work mode not kept"));
        m_before = now;
    }

    void finding(const QString &text)
    {
        std::fprintf(stderr, "kel_soak: FINDING after %lld actions: %s\n", m_figures->actions,
            qPrintable(text));
        m_figures->findings.append(text);
    }

    template<typename T> T *pick(const QList<T *> &list)
    {
        return list.isEmpty() ? nullptr : list.at(int(m_random.bounded(quint32(list.size()))));
    }

    template<typename T> QList<T *> usable(QWidget *root) const
    {
        QList<T *> result = root->findChildren<T *>();
        result.erase(std::remove_if(result.begin(), result.end(),
                         [](T *w) { return !w->isVisible() || !w->isEnabled(); }),
            result.end());
        return result;
    }

    int below(int count) { return int(m_random.bounded(quint32(qMax(1, count)))); }

    void releaseHeldKey()
    {
        if (m_heldKey)
            QTest::mouseRelease(m_heldKey, Qt::LeftButton);
        m_heldKey = nullptr;
    }

    void pressKey()
    {
        // A held key is released first: the pendant has one finger on its keys.
        if (m_heldKey)
            return releaseHeldKey();
        QToolButton *key = pick(m_window->firstKeys()->findChildren<QToolButton *>()
            + m_window->secondKeys()->findChildren<QToolButton *>());
        if (!key)
            return;
        QTest::mousePress(key, Qt::LeftButton);
        if (m_random.bounded(2))
            QTest::mouseRelease(key, Qt::LeftButton);
        else
            m_heldKey = key;
    }

    void useWidget()
    {
        QWidget *page = m_window->centreTabs()->currentWidget();
        if (!page)
            return;
        static const QStringList texts {QString(), QStringLiteral("0"), QStringLiteral("-1"),
            QStringLiteral("99999999999"), QStringLiteral("LsData3"), QStringLiteral("DO1"),
            QStringLiteral("LaserOn(\"LsData1\");"), QStringLiteral("((("), QStringLiteral("nan"),
            QString(300, QLatin1Char('x'))};
        switch (m_random.bounded(6)) {
        case 0:
        case 1:
            if (QAbstractButton *b = pick(usable<QAbstractButton>(page)))
                b->click();
            break;
        case 2:
            if (QComboBox *c = pick(usable<QComboBox>(page)))
                c->setCurrentIndex(c->count() > 0 ? below(c->count()) : -1);
            break;
        case 3:
            if (QSpinBox *s = pick(usable<QSpinBox>(page))) {
                const int values[] = {s->minimum(), s->maximum(), s->value() + 1, s->value() - 1,
                    int(m_random.bounded(10000))};
                s->setValue(values[m_random.bounded(5)]);
            } else if (QDoubleSpinBox *d = pick(usable<QDoubleSpinBox>(page))) {
                d->setValue(m_random.bounded(d->maximum() - d->minimum()) + d->minimum());
            }
            break;
        case 4:
            if (QLineEdit *e = pick(usable<QLineEdit>(page)); e && !e->isReadOnly()) {
                e->setText(texts.at(below(texts.size())));
                emit e->editingFinished();
            }
            break;
        case 5:
            if (QTableWidget *t = pick(usable<QTableWidget>(page)))
                t->setCurrentCell(below(t->rowCount()), below(t->columnCount()));
            else if (QListWidget *l = pick(usable<QListWidget>(page)))
                l->setCurrentRow(below(l->count()));
            break;
        }
    }

    // What an operator mostly comes for: Save, Cancel, Compute, the main switch and the
    // section switches, clicked with the mouse (switches are no QAbstractButton).
    void pageAction()
    {
        QWidget *page = m_window->centreTabs()->currentWidget();
        if (!page)
            return;
        static const QRegularExpression commands(
            QStringLiteral("^pushButton_(save|cancel|compute|main_enable)"),
            QRegularExpression::CaseInsensitiveOption);
        QList<QWidget *> buttons;
        QList<QWidget *> switches;
        const QList<QWidget *> widgets = usable<QWidget>(page);
        for (QWidget *w : widgets) {
            if (commands.match(w->objectName()).hasMatch())
                buttons.append(w);
            else if (w->objectName().startsWith(QLatin1String("pushButton_")))
                switches.append(w);
        }
        // A list of sets: open one first, as an operator must before Save shows.
        auto *detailed = page->findChild<QAbstractButton *>(QStringLiteral("pushButton_detailed"));
        if (detailed && detailed->isVisible() && detailed->isEnabled() && m_random.bounded(2)) {
            if (auto *tabs = page->findChild<QTabWidget *>())
                tabs->setCurrentIndex(below(tabs->count()));
            if (QTableWidget *table = pick(usable<QTableWidget>(page)))
                table->selectRow(below(table->rowCount()));
            detailed->click();
            return;
        }
        if (QWidget *action = pick(m_random.bounded(2) ? buttons : switches))
            QTest::mouseClick(action, Qt::LeftButton);
    }

    void switchTab()
    {
        // The plug-in's tab most of the time, the program editor now and then.
        QTabWidget *tabs = m_window->centreTabs();
        if (tabs->count() > 0)
            tabs->setCurrentIndex(m_random.bounded(4) ? 0 : tabs->count() - 1);
        // Then, as often, one of the plug-in's pages through its navigation.
        if (tabs->currentIndex() == 0) {
            QWidget *nav = tabs->currentWidget()->findChild<QWidget *>(QStringLiteral("wgtNav"));
            if (QToolButton *button = nav ? pick(nav->findChildren<QToolButton *>()) : nullptr)
                button->click();
        }
    }

    void injectFault()
    {
        ++m_figures->faults;
        // Code 0 would make a refusal look accepted, so only failures are injected.
        if (const int kind = below(3); kind == 0)
            m_controller->injectReturnCode(1 + below(5));
        else
            m_window
                ->findChild<QAbstractButton *>(
                    kind == 1 ? QStringLiteral("emptyNext") : QStringLiteral("malformedNext"))
                ->click();
    }

    void click(const QString &checkBox, bool checked)
    {
        auto *box = m_window->findChild<QAbstractButton *>(checkBox);
        if (box->isChecked() != checked)
            box->click();
    }

    PendantWindow *m_window;
    ControllerSimulator *m_controller;
    QRandomGenerator m_random;
    Figures *m_figures;
    Snapshot m_before;
    QToolButton *m_heldKey = nullptr;
};

// The data file must be valid, and what a restarted controller reads what the running one holds.
void checkDataFile(const ControllerSimulator &controller, const QString &dataDir, Figures *figures)
{
    QFile file(controller.dataFilePath());
    if (file.exists()
        && (!file.open(QIODevice::ReadOnly) || !QJsonDocument::fromJson(file.readAll()).isObject()))
        figures->findings.append(QStringLiteral("the data file is not a JSON object"));
    // The running controller owns its folder; a copy of the folder is what a restart would read.
    QTemporaryDir copy;
    for (const QFileInfo &info : QDir(dataDir).entryInfoList(QDir::Files)) {
        if (info.fileName() != QLatin1String("kelcontroller.lock"))
            QFile::copy(info.filePath(), copy.filePath(info.fileName()));
    }
    ControllerSimulator restarted(copy.path());
    if (!restarted.lastError().isEmpty())
        figures->findings.append(QStringLiteral("restart: ") + restarted.lastError());
    int lost = 0;
    for (const QString &key : ControllerSimulator::recordKeys()) {
        QJsonObject before = controller.record(key);
        QJsonObject after = restarted.record(key);
        // Welding is never enabled after a restart, so the settings' switch reads false then.
        const QString welding = QStringLiteral("laser_main_enable");
        if (after.value(welding).toBool())
            figures->findings.append(QStringLiteral("welding enabled after a restart"));
        before.remove(welding);
        after.remove(welding);
        if (after != before) {
            ++lost;
            figures->findings.append(QStringLiteral("record %1 differs after a restart").arg(key));
        }
    }
    if (restarted.isVirtualWelding() != controller.isVirtualWelding())
        figures->findings.append(QStringLiteral("work mode differs after a restart"));
    std::printf("kel_soak: records lost: %d\n", lost);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    // Thousands of actions make the plug-in's console lines and Qt's offscreen notes a flood;
    // only real errors are worth printing.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"minutes", "Run for this many minutes.", "minutes"},
        {"actions", "Run this many actions (default 5000).", "count"},
        {"seed", "Random seed.", "seed"},
        {"plugins", "Plug-in folder.", "dir", qEnvironmentVariable("KEL_PLUGIN_DIR")}});
    parser.process(app);

    const quint32 seed = parser.isSet("seed") ? parser.value("seed").toUInt()
                                              : QRandomGenerator::system()->generate();
    const qint64 minutes = parser.value("minutes").toLongLong();
    const qint64 maxActions = parser.isSet("actions")
        ? parser.value("actions").toLongLong()
        : (minutes > 0 ? std::numeric_limits<qint64>::max() : 5000);
    std::printf("kel_soak: seed %u (repeat with --seed %u)\n", seed, seed);
    std::fflush(stdout);

    // The plug-in's log file goes to a scratch folder, like the data file.
    QTemporaryDir scratch;
    QDir::setCurrent(scratch.path());
    const QString dataDir = scratch.filePath(QStringLiteral("data"));

    Figures figures;
    {
        ControllerSimulator controller(dataDir);
        kelplugin::setControllerBackend(&controller);
        PendantWindow window(&controller);
        window.resize(1366, 900);
        window.show();
        PluginHost host;
        QObject::connect(&host, &PluginHost::problem, &host,
            [&figures](const QString &text) { figures.findings.append(text); });
        host.loadFolder(parser.value("plugins"));
        if (host.loadedKeys() != QStringList {kPluginKey}) {
            std::fprintf(stderr, "kel_soak: the plug-in was not loaded from %s\n",
                qPrintable(parser.value("plugins")));
            return 2;
        }
        // The integrator has wired every curve's output, so the curve tabs can be used too.
        QJsonObject io = controller.record(QStringLiteral("weld_io_config"));
        for (const char *key :
            {"power_enabled", "wire_speed_enabled", "frequency_enabled", "duty_cycle_enabled"})
            io.insert(QLatin1String(key), true);
        controller.commandCustomData(
            nullptr, kPluginKey, QJsonObject {{QStringLiteral("set_weld_io_config"), io}});
        host.startAll();
        auto *editor = new ProgramEditor;
        editor->reloadCatalogue();
        window.addPendantPage(editor, QStringLiteral("Program"));

        // Whatever opens a modal dialog gets it dismissed on the next event-loop turn.
        QTimer dismisser;
        dismisser.setInterval(1);
        QObject::connect(&dismisser, &QTimer::timeout, &dismisser, [&figures] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                ++figures.dialogsClosed;
                dialog->reject();
            }
        });
        dismisser.start();

        Soak soak(&window, &controller, seed, &figures);
        QElapsedTimer clock;
        clock.start();
        while (figures.actions < maxActions
            && (minutes <= 0 || clock.elapsed() < minutes * 60 * 1000)) {
            soak.act();
            if (figures.actions % 1000 == 0) {
                std::printf(
                    "kel_soak: %lld actions, %lld commands\n", figures.actions, figures.commands);
                std::fflush(stdout);
            }
        }
        soak.restoreCell();
        QCoreApplication::processEvents();
        host.shutdown();
        checkDataFile(controller, dataDir, &figures);
        kelplugin::setControllerBackend(nullptr);
    }
    kelplugin::QFLog::closeAll();

    std::printf("kel_soak: %lld actions, %lld commands (%lld accepted, %lld refused), "
                "%lld saves checked, %lld faults injected, %lld disconnects, %lld dialogs "
                "dismissed, %d findings\n",
        figures.actions, figures.commands, figures.accepted, figures.refused, figures.savesChecked,
        figures.faults, figures.disconnects, figures.dialogsClosed, int(figures.findings.size()));
    for (auto it = figures.byCommand.constBegin(); it != figures.byCommand.constEnd(); ++it)
        std::printf("kel_soak:   %6d %s\n", it.value(), qPrintable(it.key()));
    for (const QString &finding : qAsConst(figures.findings))
        std::printf("kel_soak: finding: %s\n", qPrintable(finding));
    return figures.findings.isEmpty() ? 0 : 1;
}
