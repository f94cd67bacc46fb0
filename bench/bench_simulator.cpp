#include "controller/controllersimulator.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// Fills all thirty weld data sets and ten matching sets, the largest file an operator can make.
void fillAllSets(kelcontroller::ControllerSimulator &sim)
{
    const QJsonObject model = sim.record(QStringLiteral("weld_param_config"))
                                  .value(QStringLiteral("LsData2"))
                                  .toObject();
    QJsonObject sets;
    for (int i = 1; i <= 30; ++i)
        sets.insert(QStringLiteral("LsData%1").arg(i), model);
    sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QJsonObject {{QStringLiteral("set_weld_param_list_config"), sets}});
    const QJsonObject match = sim.record(QStringLiteral("weld_param_match"))
                                  .value(QStringLiteral("PowerData1"))
                                  .toObject();
    QJsonObject matches;
    for (int i = 1; i <= 10; ++i)
        matches.insert(QStringLiteral("PowerData%1").arg(i), match);
    sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QJsonObject {{QStringLiteral("set_weld_param_match_config"), matches}});
}

void saveAllRecords(benchmark::State &state)
{
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    if (state.range(0) != 0)
        fillAllSets(sim);
    for (auto _ : state) {
        if (!sim.save()) {
            state.SkipWithError("the data file cannot be written");
            break;
        }
    }
}
BENCHMARK(saveAllRecords)->Arg(0)->Arg(1)->ArgNames({"all_sets"})->Unit(benchmark::kMicrosecond);

// An accepted settings save: validation, the change and the file write together.
void acceptedSettingsSave(benchmark::State &state)
{
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    QJsonObject settings = sim.record(QStringLiteral("weld_setting_config"));
    int power = 0;
    for (auto _ : state) {
        settings.insert(QStringLiteral("laser_power"), 1000 + (power++ % 2));
        benchmark::DoNotOptimize(sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
            QJsonObject {{QStringLiteral("set_weld_setting_config"), settings}}));
    }
}
BENCHMARK(acceptedSettingsSave)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
