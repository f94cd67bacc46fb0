#include "callexpression.h"

#include "core/logline.h"

#include <QRegularExpression>

namespace kellaser {
namespace util {

namespace {

// The piece text[start, end) without blanks at either end, appended unless nothing is left.
// QChar::isSpace is what QString::trimmed() removes.
void appendTrimmed(QStringList &pieces, const QChar *text, int start, int end)
{
    while (start < end && text[start].isSpace())
        ++start;
    while (end > start && text[end - 1].isSpace())
        --end;
    if (end > start)
        pieces.append(QString(text + start, end - start));
}

// Top-level pieces of a parameter text: commas inside parentheses stay in their piece, an
// unbalanced ")" never drives the depth below zero, and empty pieces are dropped. Quotes get
// no special treatment.
QStringList splitTopLevel(const QStringRef &text)
{
    QStringList pieces;
    pieces.reserve(8); // a motion instruction has up to six
    const QChar *d = text.unicode();
    const int length = text.size();
    int depth = 0;
    int start = 0;
    for (int i = 0; i < length; ++i) {
        const ushort c = d[i].unicode();
        if (c == '(') {
            ++depth;
        } else if (c == ')') {
            if (depth > 0)
                --depth;
        } else if (c == ',' && depth == 0) {
            appendTrimmed(pieces, d, start, i);
            start = i + 1;
        }
    }
    appendTrimmed(pieces, d, start, length);
    return pieces;
}

bool isBlank(ushort c)
{
    return c == ' ' || c == '\t';
}

bool isWordCharacter(ushort c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

enum class CallForm { Match, NoMatch, Undecided };

// The call form's two captures found by a scan, for lines of printable ASCII and tabs, which
// is what the pendant's editor writes. With nothing else in the line, \s is a blank, \w a
// letter, digit or underscore, "." any character and "$" the end, so the expression matches
// exactly when the scan does; the shortest capture ends at the ")" that only an optional ";"
// and blanks follow. Any other character (line breaks, Unicode) is left to the expression.
CallForm scanCallForm(const QString &input, QStringRef &name, QStringRef &parameters)
{
    const ushort *d = input.utf16();
    const int n = input.size();
    for (int i = 0; i < n; ++i) {
        if ((d[i] < 0x20 && d[i] != '\t') || d[i] > 0x7e)
            return CallForm::Undecided;
    }
    int i = 0;
    while (i < n && isBlank(d[i]))
        ++i;
    const int nameStart = i;
    while (i < n && isWordCharacter(d[i]))
        ++i;
    const int nameEnd = i;
    while (i < n && isBlank(d[i]))
        ++i;
    if (nameEnd == nameStart || i == n || d[i] != '(')
        return CallForm::NoMatch;
    const int open = i;
    int last = n - 1;
    while (last > open && isBlank(d[last]))
        --last;
    int close = last;
    if (d[last] == ';')
        --close;
    if (close <= open || d[close] != ')')
        return CallForm::NoMatch;
    name = input.midRef(nameStart, nameEnd - nameStart);
    parameters = input.midRef(open + 1, close - open - 1);
    return CallForm::Match;
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

    QStringRef name;
    QStringRef parameters;
    CallForm form = scanCallForm(input, name, parameters);
    if (form == CallForm::Undecided) {
        static const QRegularExpression callForm(
            QStringLiteral("^\\s*(\\w+)\\s*\\((.*?)\\);?\\s*$"));
        const QRegularExpressionMatch match = callForm.match(input);
        form = CallForm::NoMatch;
        if (match.hasMatch()) {
            form = CallForm::Match;
            // capturedRef() would point into the match, which ends here.
            name = input.midRef(match.capturedStart(1), match.capturedLength(1));
            parameters = input.midRef(match.capturedStart(2), match.capturedLength(2));
        }
    }
    if (form == CallForm::NoMatch) {
        logError() << "kellaser::util::extractFunctionAndParameters"
                   << "Parsing failed: Input string does not match function call format. input:"
                   << input;
        return false;
    }

    functionName = name.trimmed().toString();
    const QStringRef parameterText = parameters.trimmed();
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
