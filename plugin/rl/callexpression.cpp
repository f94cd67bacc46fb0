#include "callexpression.h"

#include "core/logline.h"

#include <QRegularExpression>

namespace kellaser {
namespace util {

namespace {

// Top-level pieces of a parameter text: commas inside parentheses stay in their piece, an
// unbalanced ")" never drives the depth below zero, and empty pieces are dropped. Quotes get
// no special treatment.
QStringList splitTopLevel(const QStringRef &text)
{
    QStringList pieces;
    int depth = 0;
    int start = 0;
    const int length = text.size();
    for (int i = 0; i < length; ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('(')) {
            ++depth;
        } else if (c == QLatin1Char(')')) {
            if (depth > 0)
                --depth;
        } else if (c == QLatin1Char(',') && depth == 0) {
            const QString piece = text.mid(start, i - start).trimmed().toString();
            if (!piece.isEmpty())
                pieces.append(piece);
            start = i + 1;
        }
    }
    const QString rest = text.mid(start).trimmed().toString();
    if (!rest.isEmpty())
        pieces.append(rest);
    return pieces;
}

QString listText(const QStringList &list)
{
    return QLatin1Char('(') + list.join(QStringLiteral(", ")) + QLatin1Char(')');
}

} // namespace

bool extractFunctionAndParameters(
    const QString &input, QString &functionName, QStringList &parameterList)
{
    functionName.clear();
    parameterList.clear();

    static const QRegularExpression callForm(QStringLiteral("^\\s*(\\w+)\\s*\\((.*?)\\);?\\s*$"));
    const QRegularExpressionMatch match = callForm.match(input);
    if (!match.hasMatch()) {
        logError() << "kellaser::util::extractFunctionAndParameters"
                   << "Parsing failed: Input string does not match function call format. input:"
                   << input;
        return false;
    }

    functionName = match.capturedRef(1).trimmed().toString();
    const QStringRef parameterText = match.capturedRef(2).trimmed();
    if (parameterText.isEmpty()) {
        logError() << "LASER::"
                   << "kellaser::util::extractFunctionAndParameters"
                   << "Extracted Parameter List: (Empty)";
    } else {
        // The recursive expression \s*((?:[^,()]++|\((?:[^()]++|(?R))*\))*)\s* would find the
        // balanced pieces too, but nothing uses its matches: the scan below decides the split,
        // so compiling and running it would only cost time.
        parameterList = splitTopLevel(parameterText);
    }

    // Every successful call is traced; joining the list is left out when the line goes nowhere.
    LogLine trace(LogLevel::Debug);
    if (trace.isWritten())
        trace << "LASER::"
              << "kellaser::util::extractFunctionAndParameters"
              << "functionName:" << functionName << ",parameterList:" << listText(parameterList);
    return true;
}

QString stripEnclosing(const QString &text, const QString &prefix, const QString &suffix)
{
    if (text.size() >= prefix.size() + suffix.size() && text.startsWith(prefix)
        && text.endsWith(suffix))
        return text.mid(prefix.size(), text.size() - prefix.size() - suffix.size());
    return text;
}

} // namespace util
} // namespace kellaser
