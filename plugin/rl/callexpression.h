#pragma once

#include <QString>
#include <QStringList>

namespace kellaser {
namespace util {

// Splits one instruction line such as LsMoveL(Offs(pA,1,2,3), v100, fine); into the called
// name and its top-level parameters. Both outputs are cleared first; returns whether the line
// has the form of a call.
bool extractFunctionAndParameters(
    const QString &input, QString &functionName, QStringList &parameterList);

// The text between prefix and suffix when it has both; otherwise the text unchanged.
QString stripEnclosing(const QString &text, const QString &prefix, const QString &suffix);

} // namespace util
} // namespace kellaser
