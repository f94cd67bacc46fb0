#pragma once

#include <QApplication>

#include <benchmark/benchmark.h>

// Widgets need an application object; benchmarks run offscreen unless told otherwise.
#define KEL_BENCHMARK_MAIN()                                                                       \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))                                        \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        QApplication app(argc, argv);                                                              \
        benchmark::Initialize(&argc, argv);                                                        \
        benchmark::RunSpecifiedBenchmarks();                                                       \
        return 0;                                                                                  \
    }
