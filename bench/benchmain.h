#pragma once

#include <QApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

// Benchmark names are "<case>/<variant>[/<size>]". The variant "ours" is the project's own
// figure; every other variant of the same case and size is a reference measured in the same
// run, named "ref_<what>". bench/run prints each "ours" against each of its references.
namespace kelbench {

inline std::string name(const char *caseName, const char *variant)
{
    return std::string(caseName) + '/' + variant;
}

inline std::string name(const char *caseName, const char *variant, long long size)
{
    return name(caseName, variant) + '/' + std::to_string(size);
}

inline std::string name(const char *caseName, const char *variant, const char *size)
{
    return name(caseName, variant) + '/' + size;
}

template<typename Fn> benchmark::internal::Benchmark *add(const std::string &name, Fn &&fn)
{
    return benchmark::RegisterBenchmark(name.c_str(), std::forward<Fn>(fn));
}

// The console half of the log lines is dropped: a pendant sends it nowhere a user waits for,
// and a terminal would dominate the figures. Switching the debug category off lets the host
// skip building those lines at all, as it does on a pendant whose logging rules say so.
// Warnings still reach stderr.
inline void quietConsole()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    static QtMessageHandler previous = nullptr;
    previous = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (type != QtDebugMsg && type != QtInfoMsg && previous)
                previous(type, context, text);
        });
}

} // namespace kelbench

// Each benchmark program defines this; it runs with the application object in place.
void registerBenchmarks();

// Widgets need an application object; benchmarks run offscreen unless told otherwise.
#define KEL_BENCHMARK_MAIN()                                                                       \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))                                        \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        QApplication app(argc, argv);                                                              \
        kelbench::quietConsole();                                                                  \
        registerBenchmarks();                                                                      \
        benchmark::Initialize(&argc, argv);                                                        \
        if (benchmark::ReportUnrecognizedArguments(argc, argv))                                    \
            return 1;                                                                              \
        benchmark::RunSpecifiedBenchmarks();                                                       \
        benchmark::Shutdown();                                                                     \
        return 0;                                                                                  \
    }
