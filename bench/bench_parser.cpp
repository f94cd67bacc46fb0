// Throughput of the call-expression parser on typical motion lines, against a straightforward
// version that compiles its expressions on every call. Each is measured with the console
// output discarded, once without and once with the plug-in's log file being written.
#include "benchmain.h"

#include "core/logline.h"
#include "rl/callexpression.h"

#include "kelplugin/qflog.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
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

// The obvious implementation: same result and log lines, expressions compiled per call and the
// recursive expression run although its matches are not used.
bool referenceExtract(const QString &input, QString &functionName, QStringList &parameterList)
{
    functionName.clear();
    parameterList.clear();
    const QRegularExpression callForm(QStringLiteral("^\\s*(\\w+)\\s*\\((.*?)\\);?\\s*$"));
    const QRegularExpressionMatch match = callForm.match(input);
    if (!match.hasMatch()) {
        kellaser::logError()
            << "kellaser::util::extractFunctionAndParameters"
            << "Parsing failed: Input string does not match function call format. input:" << input;
        return false;
    }
    functionName = match.captured(1).trimmed();
    const QString parameterText = match.captured(2).trimmed();
    if (parameterText.isEmpty()) {
        kellaser::logError() << "LASER::"
                             << "kellaser::util::extractFunctionAndParameters"
                             << "Extracted Parameter List: (Empty)";
    } else {
        const QRegularExpression recursive(
            QStringLiteral("\\s*((?:[^,()]++|\\((?:[^()]++|(?R))*\\))*)\\s*"),
            QRegularExpression::ExtendedPatternSyntaxOption);
        QRegularExpressionMatchIterator it = recursive.globalMatch(parameterText);
        while (it.hasNext())
            it.next();
        int depth = 0;
        int start = 0;
        for (int i = 0; i < parameterText.size(); ++i) {
            const QChar c = parameterText.at(i);
            if (c == QLatin1Char('('))
                ++depth;
            else if (c == QLatin1Char(')'))
                depth = qMax(0, depth - 1);
            else if (c == QLatin1Char(',') && depth == 0) {
                const QString piece = parameterText.mid(start, i - start).trimmed();
                if (!piece.isEmpty())
                    parameterList.append(piece);
                start = i + 1;
            }
        }
        const QString rest = parameterText.mid(start).trimmed();
        if (!rest.isEmpty())
            parameterList.append(rest);
    }
    kellaser::logDebug() << "LASER::"
                         << "kellaser::util::extractFunctionAndParameters"
                         << "functionName:" << functionName << ",parameterList:"
                         << QLatin1Char('(') + parameterList.join(QStringLiteral(", "))
            + QLatin1Char(')');
    return true;
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
            [withLogFile](benchmark::State &s) { run(s, &referenceExtract, withLogFile); });
    }
}

KEL_BENCHMARK_MAIN()
