// The controller simulator writing its data file, the five records at once, against writing the
// same document without the atomic replacement.
#include "benchmain.h"

#include "controller/changehistory.h"
#include "controller/controllersimulator.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

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

void saveAllRecords(benchmark::State &state, bool allSets)
{
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    if (allSets)
        fillAllSets(sim);
    for (auto _ : state) {
        if (!sim.save()) {
            state.SkipWithError("the data file cannot be written");
            break;
        }
    }
}

// The same document serialised the same way and written over the file in place: no temporary
// file, no flush to the disk, no rename.
void plainWrite(benchmark::State &state, bool allSets)
{
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    if (allSets)
        fillAllSets(sim);
    sim.save();
    QFile file(sim.dataFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
        state.SkipWithError("the data file cannot be read");
        return;
    }
    const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    for (auto _ : state) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            state.SkipWithError("the data file cannot be written");
            break;
        }
        file.write(QJsonDocument(document).toJson(QJsonDocument::Indented));
        file.close();
    }
}

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

// An accepted settings save with `entries` change history entries behind it. The history is
// appended to, not rewritten, so the save costs the same whatever lies behind it.
void saveWithHistory(benchmark::State &state, int entries)
{
    QTemporaryDir dir;
    {
        // Written in one go: thousands of saves would take minutes of syncs.
        QFile file(QDir(dir.path()).filePath(QStringLiteral("kelhistory.json")));
        if (!file.open(QIODevice::WriteOnly)) {
            state.SkipWithError("the history cannot be written");
            return;
        }
        for (int i = 0; i < entries; ++i) {
            const kelcontroller::ChangeHistory::Entry entry {
                QDateTime::fromSecsSinceEpoch(1700000000 + i, Qt::UTC), 3,
                QStringLiteral("set_weld_setting_config"), QStringLiteral("weld_setting_config"),
                {{QStringLiteral("laser_power"), 1000 + i % 2, 1001 - i % 2}}, QString()};
            file.write(QJsonDocument(kelcontroller::ChangeHistory::toJson(entry))
                           .toJson(QJsonDocument::Compact)
                + '\n');
        }
    }
    kelcontroller::ControllerSimulator sim(dir.path());
    if (sim.history().entries().size() != entries) {
        state.SkipWithError("the history was not read back whole");
        return;
    }
    QJsonObject settings = sim.record(QStringLiteral("weld_setting_config"));
    int power = 0;
    for (auto _ : state) {
        settings.insert(QStringLiteral("laser_power"), 1000 + (power++ % 2));
        benchmark::DoNotOptimize(sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
            QJsonObject {{QStringLiteral("set_weld_setting_config"), settings}}));
    }
}

} // namespace

void registerBenchmarks()
{
    // The file write waits for the disk, so these count wall-clock time.
    for (const bool allSets : {false, true}) {
        const char *records = allSets ? "all_sets" : "factory";
        kelbench::add(kelbench::name("simulator_save", "ours", records),
            [allSets](benchmark::State &s) { saveAllRecords(s, allSets); })
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
        kelbench::add(kelbench::name("simulator_save", "ref_plain_write", records),
            [allSets](benchmark::State &s) { plainWrite(s, allSets); })
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    }
    kelbench::add(kelbench::name("simulator_settings_command", "ours"), acceptedSettingsSave)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("simulator_history_save", "ours", 10000),
        [](benchmark::State &s) { saveWithHistory(s, 10000); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    kelbench::add(kelbench::name("simulator_history_save", "ref_10_entries", 10000),
        [](benchmark::State &s) { saveWithHistory(s, 10); })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

KEL_BENCHMARK_MAIN()
