// One diagnostic line through kellaser::LogLine into the plug-in's log file, with the console
// half discarded, against a plain QTextStream writing the same text to the same file; and the
// same line when the log file cannot be opened, which is what a line costs the parser's
// throughput with the console discarded.
#include "benchmain.h"

#include "core/logline.h"

#include "kelplugin/qflog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

const QString &command()
{
    static const QString text = QStringLiteral("set_weld_io_config");
    return text;
}

void writeLine()
{
    kellaser::logError() << "WeldioPage::checkSaveResult failed. " << command() << " Result:" << 3;
}

// Runs in a fresh folder so that the log file starts empty and is the bench's alone.
class Folder
{
public:
    // Without a log file, a file named "log" stands where the log folder would be created.
    explicit Folder(bool withLogFile = true) : m_previous(QDir::currentPath())
    {
        QDir::setCurrent(m_dir.path());
        kelplugin::QFLog::closeAll();
        if (!withLogFile) {
            QFile blocker(QStringLiteral("log"));
            blocker.open(QIODevice::WriteOnly);
        }
    }
    ~Folder()
    {
        kelplugin::QFLog::closeAll();
        QDir::setCurrent(m_previous);
    }
    static QString logFile()
    {
        return QDir::current().absoluteFilePath(kellaser::LogLine::logPath());
    }

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

void logLine(benchmark::State &state)
{
    Folder folder;
    writeLine();
    if (!QFile::exists(Folder::logFile()))
        state.SkipWithError("the log file was not written");
    for (auto _ : state)
        writeLine();
}

void consoleOnly(benchmark::State &state)
{
    Folder folder(false);
    for (auto _ : state)
        writeLine();
}

void textStream(benchmark::State &state)
{
    Folder folder;
    writeLine();
    kelplugin::QFLog::closeAll();
    // The line exactly as the log file holds it, time stamp included.
    QFile file(Folder::logFile());
    if (!file.open(QIODevice::ReadOnly)) {
        state.SkipWithError("the log file cannot be read");
        return;
    }
    QString line = QString::fromUtf8(file.readLine());
    if (line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    file.close();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        state.SkipWithError("the log file cannot be opened");
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    for (auto _ : state) {
        stream << line << '\n';
        stream.flush();
    }
}

} // namespace

void registerBenchmarks()
{
    kelbench::add(kelbench::name("logline", "ours", "log_file"), logLine)
        ->Unit(benchmark::kMicrosecond);
    kelbench::add(kelbench::name("logline", "ref_textstream", "log_file"), textStream)
        ->Unit(benchmark::kMicrosecond);
    kelbench::add(kelbench::name("logline", "ours", "console_discarded"), consoleOnly)
        ->Unit(benchmark::kMicrosecond);
}

KEL_BENCHMARK_MAIN()
