#pragma once

#include <QHash>
#include <QRegularExpression>
#include <QString>

// Checks program lines against the patterns registered for their instructions in the host's
// catalogue. Compiled patterns are kept per instruction and recompiled when one changes.
class LineValidator
{
public:
    enum class Verdict {
        Unchecked, // blank, comment, or an instruction without a usable pattern
        Valid,
        Invalid,
    };
    struct Result
    {
        Verdict verdict = Verdict::Unchecked;
        QString instruction;
        QString message;
    };

    Result check(const QString &line);

    // The leading word of a line, or an empty string.
    static QString instructionName(const QString &line);

private:
    struct Compiled
    {
        QString source;
        QRegularExpression expression;
    };
    QHash<QString, Compiled> m_patterns;
};
