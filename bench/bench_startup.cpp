// The plug-in's start-up in a fresh process, as the pendant does it: load the library, create
// the plug-in, init, afterInit, render. The reference builds the same pages' Designer forms in
// an equally fresh process. Both start after the pendant's own window exists, so neither pays
// for Qt's first widget; each also reports the resident memory it added.
#include "benchmain.h"

#include "pendantwindow.h"
#include "pluginhost.h"

#include "controller/controllersimulator.h"
#include "support/testenvironment.h"
#include "ui_buttonmonitorpage.h"
#include "ui_characteristicscurvepage.h"
#include "ui_lasertrackingpage.h"
#include "ui_laserweldpage.h"
#include "ui_showstatusbar.h"
#include "ui_weldiopage.h"
#include "ui_weldparameterpage.h"
#include "ui_weldsettingpage.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

const char kChildFlag[] = "--child";

qint64 residentKiB()
{
    // Files under /proc report no size, so they are read whole rather than up to atEnd().
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').value(0).toLongLong();
    }
    return -1;
}

qint64 cpuNs()
{
    timespec now {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

template<typename Form, typename Base = QWidget> void buildForm(QWidget *parent)
{
    Form form;
    form.setupUi(new Base(parent));
}

// Builds the forms, or starts the plug-in, and prints "wall-ns cpu-ns rss-kib" on stdout.
int runChild(const QString &mode)
{
    QTemporaryDir data;
    kelcontroller::ControllerSimulator controller(data.path());
    kelplugin::setControllerBackend(&controller);
    PendantWindow window(&controller);
    PluginHost host;
    QWidget forms;

    const qint64 rssBefore = residentKiB();
    const qint64 cpuBefore = cpuNs();
    QElapsedTimer wall;
    wall.start();
    if (mode == QLatin1String("plugin")) {
        QString folder = qEnvironmentVariable("KEL_PLUGIN_DIR");
        if (folder.isEmpty())
            folder = QStringLiteral(KEL_DEFAULT_PLUGIN_DIR);
        host.loadFolder(folder);
        host.startAll();
        if (host.plugins().size() != 1)
            return 2;
    } else {
        testenv::initPluginResources();
        buildForm<Ui::LaserWeldPage>(&forms);
        buildForm<Ui::WeldSettingPage>(&forms);
        buildForm<Ui::WeldioPage>(&forms);
        buildForm<Ui::CharacteristicsCurvePage>(&forms);
        buildForm<Ui::WeldParameterPage>(&forms);
        buildForm<Ui::LaserTrackingPage>(&forms);
        buildForm<Ui::ButtonMonitorPage, QDialog>(&forms);
        buildForm<Ui::ShowStatusBar>(&forms);
    }
    const qint64 wallNs = wall.nsecsElapsed();
    const qint64 cpu = cpuNs() - cpuBefore;
    const qint64 rss = residentKiB() - rssBefore;
    std::printf("%lld %lld %lld\n", wallNs, cpu, rss);
    std::fflush(stdout);
    return 0;
}

void startup(benchmark::State &state, const char *mode)
{
    double wallMs = 0;
    double memoryBytes = 0;
    for (auto _ : state) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
            {QLatin1String(kChildFlag), QLatin1String(mode)});
        const bool finished = child.waitForFinished(120000);
        const QList<QByteArray> figures = child.readAllStandardOutput().simplified().split(' ');
        if (!finished || child.exitCode() != 0 || figures.size() != 3) {
            state.SkipWithError("the measuring process failed");
            break;
        }
        // CPU time, as everywhere in the table: the machine may be shared with builds.
        state.SetIterationTime(figures.at(1).toDouble() / 1e9);
        wallMs += figures.at(0).toDouble() / 1e6;
        memoryBytes += figures.at(2).toDouble() * 1024;
    }
    // Averages over the iterations; bench/run reads memory_bytes as a figure of its own.
    const double runs = double(qMax<benchmark::IterationCount>(state.iterations(), 1));
    state.counters["wall_ms"] = wallMs / runs;
    state.counters["memory_bytes"] = memoryBytes / runs;
}

} // namespace

void registerBenchmarks()
{
    kelbench::add(
        kelbench::name("startup", "ours"), [](benchmark::State &s) { startup(s, "plugin"); })
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(8);
    kelbench::add(
        kelbench::name("startup", "ref_forms"), [](benchmark::State &s) { startup(s, "forms"); })
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(8);
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    kelbench::quietConsole();
    if (argc == 3 && qstrcmp(argv[1], kChildFlag) == 0)
        return runChild(QString::fromLocal8Bit(argv[2]));
    registerBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
