#include "logline.h"

#include <QDateTime>

#include <limits>

namespace kellaser {

namespace {

const QString &pluginKey()
{
    static const QString key = QStringLiteral("kellaserweld");
    return key;
}

const QString &tagTemplate(LogLevel level)
{
    static const QString tags[] = {
        QStringLiteral("[I|%1]"),
        QStringLiteral("[W|%1]"),
        QStringLiteral("[E|%1]"),
        QStringLiteral("[S|%1]"),
        QStringLiteral("[D|%1]"),
    };
    return tags[int(level)];
}

const QString &colourEscape(LogLevel level)
{
    static const QString escapes[] = {
        QStringLiteral("\x1b[36m"),
        QStringLiteral("\x1b[33m"),
        QStringLiteral("\x1b[31m"),
        QStringLiteral("\x1b[35m"),
        QStringLiteral("\x1b[32m"),
    };
    return escapes[int(level)];
}

// The local time of the current second is formatted once: converting to local time asks the
// C library for the time zone on every call, which costs more than the rest of a line.
QString currentStamp()
{
    static qint64 cachedSecond = std::numeric_limits<qint64>::min();
    static QString cachedPrefix;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const qint64 second = now >= 0 ? now / 1000 : (now - 999) / 1000;
    if (second != cachedSecond) {
        cachedPrefix = QDateTime::fromMSecsSinceEpoch(second * 1000)
                           .toString(QStringLiteral("MM/dd hh:mm:ss."));
        cachedSecond = second;
    }
    const int millis = int(now - second * 1000);
    return cachedPrefix + QString::number(millis).rightJustified(3, QLatin1Char('0'));
}

} // namespace

const QString &LogLine::logPath()
{
    static const QString path = QStringLiteral("./log/kelplugin/%1/%1").arg(pluginKey());
    return path;
}

QString LogLine::colour(LogLevel level)
{
    return colourEscape(level);
}

QString LogLine::levelTag(LogLevel level, const QDateTime &time)
{
    return tagTemplate(level).arg(time.toString(QStringLiteral("MM/dd hh:mm:ss.zzz")));
}

LogLine::LogLine(LogLevel level)
    : m_log(colourEscape(level),
        // A line nobody will read needs no time stamp.
        kelplugin::QFLog::writes(logPath()) ? tagTemplate(level).arg(currentStamp()) : QString(),
        QString(), logPath(), QStringLiteral("log"))
{ }

} // namespace kellaser
