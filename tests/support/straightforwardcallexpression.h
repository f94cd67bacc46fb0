#pragma once

#include "core/logline.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

// The call-expression parse written straight down: the same result and log lines, with the
// call form always matched by the expression, both expressions compiled on every call and the
// recursive one run although its matches are not used. The parser's tests compare against it
// and the parser benchmark measures it.
namespace straightforward {

inline bool extractCall(const QString &input, QString &functionName, QStringList &parameterList)
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

} // namespace straightforward
