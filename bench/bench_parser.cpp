// Throughput of the call-expression parser on typical motion lines, against a straightforward
// version that compiles its expressions on every call. Each is measured with the console
// output discarded, once without and once with the plug-in's log file being written.
#include "benchmain.h"

#include "core/logline.h"
#include "rl/callexpression.h"
#include "support/straightforwardcallexpression.h"

#include "kelplugin/qflog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

const QStringList &motionLines()
{
    static const QStringList lines {
        QStringLiteral("LsMoveL(p10, v100, fine, tool0, wobj0);"),
        QStringLiteral("LsMoveL(Offs(p20,0,0,5), v500, z10, tool1, wobj0);"),
        QStringLiteral("LsMoveC(p30, RelTool(p40,1.5,-2,3), v100, z1, tool0, wobj1);"),
        QStringLiteral("  LsMoveCF(p50, p60, v200, fine, tool0, wobj0)  "),
    };
    return lines;
}

using Extract = bool (*)(const QString &, QString &, QStringList &);

// Runs in a fresh folder; with a file named "log" there the log file cannot be opened and
// only the (discarded) console output remains.
void run(benchmark::State &state, Extract extract, bool withLogFile)
{
    QTemporaryDir dir;
    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    kelplugin::QFLog::closeAll();
    if (!withLogFile) {
        QFile blocker(QStringLiteral("log"));
        blocker.open(QIODevice::WriteOnly);
    }

    const QStringList &lines = motionLines();
    QString name;
    QStringList parameters;
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(extract(lines.at(i), name, parameters));
        benchmark::DoNotOptimize(parameters.size());
        i = (i + 1) % lines.size();
    }
    state.SetItemsProcessed(state.iterations());

    kelplugin::QFLog::closeAll();
    QDir::setCurrent(previous);
}

} // namespace

void registerBenchmarks()
{
    for (const bool withLogFile : {false, true}) {
        const char *mode = withLogFile ? "log_file" : "console_discarded";
        kelbench::add(kelbench::name("parser", "ours", mode), [withLogFile](benchmark::State &s) {
            run(s, &kellaser::util::extractFunctionAndParameters, withLogFile);
        });
        kelbench::add(kelbench::name("parser", "ref_compile_per_call", mode),
            [withLogFile](
                benchmark::State &s) { run(s, &straightforward::extractCall, withLogFile); });
    }
}

KEL_BENCHMARK_MAIN()
