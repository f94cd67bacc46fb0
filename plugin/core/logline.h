#pragma once

#include "kelplugin/qflog.h"

#include <QString>

class QDateTime;

namespace kellaser {

enum class LogLevel { Info, Warning, Error, Status, Debug };

// One diagnostic line of the plug-in, in the host's log stream and the plug-in's log file.
// Pieces are written in order, separated by blanks; the line ends with the statement:
//     kellaser::logError() << "Phybtn:: open gas failed. " << command << " Result:" << code;
class LogLine
{
public:
    explicit LogLine(LogLevel level);
    LogLine(const LogLine &) = delete;
    LogLine &operator=(const LogLine &) = delete;

    // Plain strings and numbers go to the console stream and, when open, the file stream.
    template<typename T> LogLine &operator<<(const T &piece)
    {
        if (m_log.isConsoleEnabled())
            m_log.console() << piece;
        if (m_log.isFileOpen())
            m_log.file() << piece;
        return *this;
    }
    // QString pieces go through the host's own insertion.
    LogLine &operator<<(const QString &piece)
    {
        m_log << piece;
        return *this;
    }

    // "./log/kelplugin/kellaserweld/kellaserweld"
    static const QString &logPath();
    static QString colour(LogLevel level);
    // "[E|11/14 16:52:44.123]"
    static QString levelTag(LogLevel level, const QDateTime &time);

private:
    kelplugin::QFLog m_log;
};

inline LogLine logInfo()
{
    return LogLine(LogLevel::Info);
}
inline LogLine logWarning()
{
    return LogLine(LogLevel::Warning);
}
inline LogLine logError()
{
    return LogLine(LogLevel::Error);
}
inline LogLine logStatus()
{
    return LogLine(LogLevel::Status);
}
inline LogLine logDebug()
{
    return LogLine(LogLevel::Debug);
}

} // namespace kellaser
