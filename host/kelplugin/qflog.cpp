#include "qflog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>
#include <QMessageLogger>

namespace kelplugin {

namespace {

const QLatin1String kReset("\x1b[0m");

// Log files stay open for the life of the process: opening a file per line costs more than
// the line itself. A path that failed to open is remembered and not retried on every line.
struct LogFiles
{
    QHash<QString, QFile *> files;

    ~LogFiles() { closeAll(); }

    QFile *open(const QString &path)
    {
        // Callers pass the same path string line after line: equal data compares at once.
        if (!lastPath.isNull() && path == lastPath)
            return lastFile;
        lastPath = path;
        lastFile = find(path);
        return lastFile;
    }

    QFile *find(const QString &path)
    {
        auto it = files.constFind(path);
        if (it != files.constEnd())
            return it.value();
        QFile *file = nullptr;
        const QFileInfo info(path);
        if (!path.isEmpty() && QDir().mkpath(info.absolutePath())) {
            file = new QFile(path);
            if (!file->open(QIODevice::WriteOnly | QIODevice::Append)) {
                delete file;
                file = nullptr;
            }
        }
        files.insert(path, file);
        return file;
    }

    void closeAll()
    {
        qDeleteAll(files);
        files.clear();
        lastPath = QString();
        lastFile = nullptr;
    }

    QString lastPath;
    QFile *lastFile = nullptr;
};

LogFiles &logFiles()
{
    static LogFiles files;
    return files;
}

bool consoleEnabled()
{
    return QLoggingCategory::defaultCategory()->isDebugEnabled();
}

// Where the pieces for a stream that is off go; emptied after every line.
QDebug &discard()
{
    static QString text;
    static QDebug stream(&text);
    text.clear();
    return stream;
}

QString finish(QString text)
{
    // The debug stream leaves a separator blank after the last piece.
    if (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace

QFLog::QFLog(const QString &colour, const QString &levelTag, const QString &third,
    const QString &logPath, const QString &folder)
    : m_file(logFiles().open(logPath))
{
    Q_UNUSED(folder) // the real host files logs by folder; here the path says it all
    if (!consoleEnabled() && !m_file)
        return;
    QString head = colour + levelTag;
    if (!third.isEmpty())
        head += QLatin1Char(' ') + third;
    if (consoleEnabled()) {
        m_console.emplace(&m_consoleText);
        m_console->noquote() << head;
    }
    if (m_file) {
        m_fileStream.emplace(&m_fileText);
        m_fileStream->noquote() << head;
    }
}

QFLog::~QFLog()
{
    if (m_console) {
        m_console.reset();
        QMessageLogger().debug().noquote() << finish(m_consoleText) + kReset;
    }
    if (m_file) {
        m_fileStream.reset();
        m_file->write((finish(m_fileText) + kReset + QLatin1Char('\n')).toUtf8());
        m_file->flush();
    }
}

QDebug &QFLog::console()
{
    return m_console ? *m_console : discard();
}

QDebug &QFLog::file()
{
    return m_fileStream ? *m_fileStream : discard();
}

QFLog &QFLog::operator<<(const QString &text)
{
    if (m_console)
        *m_console << text;
    if (m_file)
        *m_fileStream << text;
    return *this;
}

bool QFLog::writes(const QString &logPath)
{
    return consoleEnabled() || logFiles().open(logPath);
}

void QFLog::closeAll()
{
    logFiles().closeAll();
}

QLog::QLog(const QString &colour, const QString &levelTag, const QString &third)
    : m_console(&m_text)
{
    m_console.noquote();
    QString head = colour + levelTag;
    if (!third.isEmpty())
        head += QLatin1Char(' ') + third;
    m_console << head;
}

QLog::~QLog()
{
    QMessageLogger().debug().noquote() << finish(m_text) + kReset;
}

QLog &QLog::operator<<(const QString &text)
{
    m_console << text;
    return *this;
}

} // namespace kelplugin
