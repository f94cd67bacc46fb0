// A controller reached over the loopback address against the one embedded in the pendant: the
// round trip alone, reading the largest record, and the I/O page's show at 1,024 ports per type.
#include "benchmain.h"
#include "pageloops.h"

#include "controller/controllersimulator.h"
#include "controller/iolayout.h"
#include "kelplugin/networkcontroller.h"
#include "page/weldiopage.h"
#include "page/weldsettingpage.h"
#include "support/recordingshell.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>

namespace {

constexpr int portsPerType = 1024;

// One kelcontroller for the whole run, with every weld data set there is.
struct Remote
{
    Remote()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        port = probe.serverPort();
        probe.close();
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QStringLiteral(KEL_CONTROLLER_PATH),
            {QStringLiteral("--data-dir"), dir.path(), QStringLiteral("--listen"),
                QStringLiteral("127.0.0.1:%1").arg(port), QStringLiteral("--ports"),
                QString::number(portsPerType)});
        for (int i = 0; i < 200 && !QFile::exists(dir.filePath("kelcontroller.key")); ++i)
            QThread::msleep(10);
        QThread::msleep(100);
        QFile keyFile(dir.filePath(QStringLiteral("kelcontroller.key")));
        keyFile.open(QIODevice::ReadOnly);
        net = std::make_unique<kelplugin::NetworkController>(
            QStringLiteral("127.0.0.1"), port, keyFile.readLine().trimmed());
        net->setUserLevel(3);
        net->connectToController();
        for (int i = 0; i < 200 && !net->isReachable(); ++i) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
    }
    ~Remote()
    {
        net.reset();
        process.kill();
        process.waitForFinished();
    }
    QTemporaryDir dir;
    quint16 port = 0;
    QProcess process;
    std::unique_ptr<kelplugin::NetworkController> net;
};

Remote &remote()
{
    static Remote r;
    return r;
}

void read(benchmark::State &state, kelplugin::ControllerBackend &backend, const QString &key)
{
    if (backend.getKelServiceData(key).isUndefined()) {
        state.SkipWithError("the controller does not answer");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(backend.getKelServiceData(key));
}

// The curve page's Compute: a command that changes nothing, so every round is the same work.
void command(benchmark::State &state, kelplugin::ControllerBackend &backend)
{
    QJsonArray nodes;
    for (int i = 0; i < 10; ++i)
        nodes.append(QJsonArray {100 * i, 400 * i + 7});
    const QJsonObject compute {{QStringLiteral("compute_curve_config"),
        QJsonObject {{QStringLiteral("laser_power_node"), 10},
            {QStringLiteral("power_nodes_data"), nodes}}}};
    const QString plugin = QStringLiteral("kellaserweld");
    const QJsonArray reply = backend.commandCustomData(nullptr, plugin, compute);
    const QJsonValue entry = reply.at(0)[plugin][QStringLiteral("compute_curve_config")];
    if (entry[QStringLiteral("return")].toInt(-1) != 0) {
        state.SkipWithError("the controller does not compute the curve");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(backend.commandCustomData(nullptr, plugin, compute));
}

// The page shown as the plug-in holds it, inside a visible parent, reading through the backend.
void pageShow(benchmark::State &state, kelplugin::ControllerBackend &backend)
{
    if (backend.getKelServiceData(QStringLiteral("weld_io_config")).isUndefined()) {
        state.SkipWithError("the controller does not answer");
        return;
    }
    RecordingShell shell;
    kelplugin::setControllerBackend(&backend);
    {
        QWidget host;
        WeldSettingPage settings(&host);
        WeldioPage page(&settings, &host);
        settings.hide();
        host.show();
        PageLoops::settle();
        PageLoops::show(state, &page);
    }
    kelplugin::setControllerBackend(nullptr);
}

} // namespace

void registerBenchmarks()
{
    static QTemporaryDir localDir;
    static kelcontroller::ControllerSimulator local(localDir.path());
    local.setIoLayout(kelcontroller::IoLayout::uniform(portsPerType));
    const QString record = QStringLiteral("weld_param_config");
    const QString status = QStringLiteral("laser_weld_data.virtual_welding_status");
    // Wall-clock time: most of a round trip is the other process's.
    kelbench::add(kelbench::name("network_read", "ours", "record"),
        [record](benchmark::State &s) { read(s, *remote().net, record); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_read", "ref_embedded", "record"),
        [record](benchmark::State &s) { read(s, local, record); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_read", "ours", "status"),
        [status](benchmark::State &s) { read(s, *remote().net, status); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_read", "ref_embedded", "status"),
        [status](benchmark::State &s) { read(s, local, status); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_command", "ours", "compute"),
        [](benchmark::State &s) { command(s, *remote().net); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_command", "ref_embedded", "compute"),
        [](benchmark::State &s) { command(s, local); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_iopage_show", "ours", portsPerType),
        [](benchmark::State &s) { pageShow(s, *remote().net); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("network_iopage_show", "ref_embedded", portsPerType),
        [](benchmark::State &s) { pageShow(s, local); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

KEL_BENCHMARK_MAIN()
