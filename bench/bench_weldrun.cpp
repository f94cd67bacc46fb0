// The controller simulating a 60-second weld (a 600 mm seam at 10 mm/s, sampled every 50 ms)
// on its own clock, with the weld record written at the end, against the 60 s it stands for.
#include "benchmain.h"

#include "controller/controllersimulator.h"
#include "controller/programrunner.h"

#include <QTemporaryDir>

namespace {

const QStringList seam {
    QStringLiteral("LsMoveL(p10, v1000, fine, tool0, wobj0);"),
    QStringLiteral("LaserOn(\"LsData2\");"),
    QStringLiteral("LsParaMatch(\"PowerData2\");"),
    QStringLiteral("LsMoveL(Offs(p10,600,0,0), v10, fine, tool0, wobj0);"),
    QStringLiteral("LaserOff;"),
};

// records: the weld log holds that many welds before the timing starts.
void simulateWeld(benchmark::State &state, int records)
{
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QStringLiteral("set_weld_enable"), QStringLiteral("TRUE"));
    sim.setRobotPowered(true);
    kelcontroller::ProgramRunner *runner = sim.runner();
    runner->setRealTime(false);
    const auto weld = [&] {
        if (!runner->run(seam))
            return false;
        runner->advance(70000);
        return runner->state() == kelcontroller::ProgramRunner::State::Idle;
    };
    for (int i = 0; i < records; ++i)
        weld();
    for (auto _ : state) {
        if (!weld()) {
            state.SkipWithError("the weld did not run to its end");
            break;
        }
    }
    // The weld from LaserOn to laser off lasts 60.5 s of controller time.
    state.counters["realtime_ratio"]
        = benchmark::Counter(60.5 * double(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

void registerBenchmarks()
{
    // The record's write waits for the disk, so this counts wall-clock time. The log is as full
    // as it gets: every weld rewrites the file with the 50 welds it keeps.
    kelbench::add(kelbench::name("weldrun_60s", "ours", "log_full"),
        [](benchmark::State &s) { simulateWeld(s, 50); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

KEL_BENCHMARK_MAIN()
