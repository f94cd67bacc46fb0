#pragma once

#include "recordingshell.h"
#include "testenvironment.h"

#include <QRegularExpression>
#include <QStringList>

namespace testenv {

// The plug-in's log lines as "E|text": the level letter and what follows the tag, without
// the colour escapes, so tests can compare exact texts.
inline QStringList logTexts()
{
    static const QRegularExpression form(
        QStringLiteral("^\\x1b\\[\\d+m\\[([IWESD])\\|[^\\]]*\\] (.*)\\x1b\\[0m$"));
    QStringList texts;
    const QStringList lines = logLines();
    for (const QString &line : lines) {
        const QRegularExpressionMatch m = form.match(line);
        texts.append(m.hasMatch() ? m.captured(1) + QLatin1Char('|') + m.captured(2) : line);
    }
    return texts;
}

// The operator messages shown so far as "level|text".
inline QStringList shownMessages(const RecordingShell &shell)
{
    QStringList texts;
    for (const RecordingShell::Message &m : shell.messages)
        texts.append(QString::number(m.level) + QLatin1Char('|') + m.text);
    return texts;
}

} // namespace testenv
