#include "linevalidator.h"

#include "kelplugin/rlcatalog.h"

#include <QCoreApplication>

LineValidator::Result LineValidator::check(const QString &line)
{
    Result result;
    result.instruction = instructionName(line);
    if (result.instruction.isEmpty())
        return result;
    const kelplugin::RLInstruction *instruction
        = kelplugin::rlCatalog().instruction(result.instruction);
    if (!instruction || instruction->pattern.isEmpty())
        return result;

    Compiled &compiled = m_patterns[result.instruction];
    if (compiled.source != instruction->pattern) {
        compiled.source = instruction->pattern;
        compiled.expression.setPattern(instruction->pattern);
    }
    if (!compiled.expression.isValid()) {
        result.message
            = QCoreApplication::translate("LineValidator", "The pattern of %1 cannot be used: %2")
                  .arg(result.instruction, compiled.expression.errorString());
        return result;
    }
    if (compiled.expression.match(line).hasMatch()) {
        result.verdict = Verdict::Valid;
    } else {
        result.verdict = Verdict::Invalid;
        result.message = QCoreApplication::translate(
            "LineValidator", "This line does not have the form %1 expects.")
                             .arg(result.instruction);
    }
    return result;
}

QString LineValidator::instructionName(const QString &line)
{
    static const QRegularExpression leadingWord(QStringLiteral("^\\s*([A-Za-z_]\\w*)"));
    return leadingWord.match(line).captured(1);
}
