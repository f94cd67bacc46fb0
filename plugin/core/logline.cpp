#include "logline.h"

#include <QDateTime>

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
    : m_log(colourEscape(level), levelTag(level, QDateTime::currentDateTime()), QString(),
        logPath(), QStringLiteral("log"))
{ }

} // namespace kellaser
