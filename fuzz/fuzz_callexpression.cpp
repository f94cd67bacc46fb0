// Any text as an instruction line: the call-expression parser must return the split that the
// call form's expression gives, or nothing, without running away on deep or unbalanced
// parentheses.

#include "fuzzsupport.h"

#include "rl/callexpression.h"
#include "support/straightforwardcallexpression.h"

#include <QRegularExpression>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString line = QString::fromUtf8(fuzzsupport::input(data, size));
    QString name = QStringLiteral("stale");
    QStringList parameters {QStringLiteral("stale")};
    const bool isCall = kellaser::util::extractFunctionAndParameters(line, name, parameters);

    // Plain lines are scanned rather than matched; the result must be the expression's.
    QString expectedName;
    QStringList expectedParameters;
    if (straightforward::extractCall(line, expectedName, expectedParameters) != isCall
        || expectedName != name || expectedParameters != parameters)
        std::abort();

    if (!isCall) {
        // Both outputs are cleared even when the line is no call.
        if (!name.isEmpty() || !parameters.isEmpty())
            std::abort();
        return 0;
    }
    static const QRegularExpression word(QStringLiteral("^\\w+$"));
    if (!word.match(name).hasMatch() || !line.contains(name))
        std::abort();
    int characters = 0;
    for (const QString &p : qAsConst(parameters)) {
        // Pieces are trimmed, never empty, and each one comes from the line.
        if (p.isEmpty() || p != p.trimmed() || !line.contains(p))
            std::abort();
        characters += p.size();
    }
    if (characters > line.size())
        std::abort();
    // Parsing is a function of the text: a second run gives the same split.
    QString again;
    QStringList againParameters;
    if (!kellaser::util::extractFunctionAndParameters(line, again, againParameters) || again != name
        || againParameters != parameters)
        std::abort();
    return 0;
}
