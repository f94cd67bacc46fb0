#pragma once

#include "kelplugin_global.h"

#include <QDebug>
#include <QString>

#include <optional>

class QFile;

namespace kelplugin {

// One log line, written when the object is destroyed: to the console through Qt's message
// handler and, when logPath can be opened, appended to that file. Files stay open between
// lines; a file that cannot be opened is skipped silently.
//
// Line form: colour, levelTag, " ", [third, " "], the pieces separated by blanks, ESC "[0m".
//
// The console part follows Qt's logging rules: with debug output of the default category
// switched off (QT_LOGGING_RULES="default.debug=false") it costs nothing.
class KELPLUGIN_EXPORT QFLog
{
public:
    QFLog(const QString &colour, const QString &levelTag, const QString &third,
        const QString &logPath, const QString &folder);
    ~QFLog();
    QFLog(const QFLog &) = delete;
    QFLog &operator=(const QFLog &) = delete;

    QFLog &operator<<(const QString &text);

    // Streams that are off (see isConsoleEnabled, isFileOpen) drop what they are given.
    QDebug &console();
    bool isConsoleEnabled() const { return m_console.has_value(); }
    bool isFileOpen() const { return m_file != nullptr; }
    QDebug &file();

    // Whether a line for logPath would be written anywhere; callers may skip building it.
    static bool writes(const QString &logPath);
    // Closes every cached log file (tests, and the pendant on exit).
    static void closeAll();

private:
    QString m_consoleText;
    QString m_fileText;
    std::optional<QDebug> m_console;
    std::optional<QDebug> m_fileStream;
    QFile *m_file;
};

// Console-only log line of the instruction widgets.
class KELPLUGIN_EXPORT QLog
{
public:
    QLog(const QString &colour, const QString &levelTag, const QString &third);
    ~QLog();
    QLog(const QLog &) = delete;
    QLog &operator=(const QLog &) = delete;

    QLog &operator<<(const QString &text);
    QDebug &console() { return m_console; }

private:
    QString m_text;
    QDebug m_console;
};

} // namespace kelplugin
