// kel_savechild <data dir>: a controller simulator that saves its weld data sets in a loop until
// it is killed. Every generation rewrites all thirty sets with the generation number and a
// filler whose length changes, so a torn or mixed file shows up as sets of different
// generations. Prints "start <g>" with the generation it found, then each accepted generation.

#include "controller/controllersimulator.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

#include <cstdio>

namespace {

QJsonObject generationSets(int generation)
{
    QJsonObject sets;
    const QString filler(100 + (generation * 37) % 900, QLatin1Char('a' + generation % 26));
    for (int n = 1; n <= 30; ++n) {
        sets.insert(QStringLiteral("LsData%1").arg(n),
            QJsonObject {
                {QStringLiteral("generation"), generation}, {QStringLiteral("filler"), filler}});
    }
    return sets;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: kel_savechild <data dir>\n");
        return 2;
    }
    kelcontroller::ControllerSimulator simulator(QString::fromLocal8Bit(argv[1]));
    // A kill while the change history appended its line leaves that entry unfinished; the
    // next start drops it and says so. That is no damage of the data file, which this guards.
    for (const QString &problem : simulator.storageProblems()) {
        if (!problem.startsWith(QLatin1String("The change history: "))
            || !problem.contains(QLatin1String("whose writing was interrupted"))
            || problem.contains(QLatin1String("is damaged"))) {
            std::fprintf(stderr, "problem: %s\n", qPrintable(problem));
            return 3;
        }
    }
    int generation = simulator.record("weld_param_config").value("LsData1")["generation"].toInt(0);
    std::printf("start %d\n", generation);
    std::fflush(stdout);
    const QString command = QStringLiteral("set_weld_param_list_config");
    for (;;) {
        ++generation;
        const QJsonArray reply = simulator.commandCustomData(nullptr,
            QStringLiteral("kellaserweld"), QJsonObject {{command, generationSets(generation)}});
        const int code = reply.at(0)[QStringLiteral("kellaserweld")][command]["return"].toInt(-1);
        if (code != 0) {
            std::fprintf(stderr, "refused %d: %s\n", code, qPrintable(simulator.lastError()));
            return 4;
        }
        std::printf("%d\n", generation);
        std::fflush(stdout);
    }
}
