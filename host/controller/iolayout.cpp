#include "iolayout.h"

#include <QtGlobal>

namespace kelcontroller {

IoLayout IoLayout::uniform(int portsPerType)
{
    IoLayout l;
    l.digitalOutputs = l.digitalInputs = l.analogOutputs = l.analogInputs = l.groupOutputs
        = l.groupInputs = portsPerType;
    return l;
}

int IoLayout::count(const QString &type) const
{
    int n = 0;
    if (type == QLatin1String("DO"))
        n = digitalOutputs;
    else if (type == QLatin1String("DI"))
        n = digitalInputs;
    else if (type == QLatin1String("AO"))
        n = analogOutputs;
    else if (type == QLatin1String("AI"))
        n = analogInputs;
    else if (type == QLatin1String("GO"))
        n = groupOutputs;
    else if (type == QLatin1String("GI"))
        n = groupInputs;
    // A real cabinet has at most a few thousand signals per type; a wild count must not
    // make the simulator build a list the size of the address space.
    return qBound(0, n, 4096);
}

QStringList IoLayout::ports(const QString &type) const
{
    const int n = count(type);
    QStringList result;
    result.reserve(n);
    for (int i = 1; i <= n; ++i)
        result.append(type + QString::number(i));
    return result;
}

bool IoLayout::hasPort(const QString &type, const QString &name) const
{
    if (!name.startsWith(type) || name.size() == type.size())
        return false;
    const QStringRef digits = name.midRef(type.size());
    if (digits.startsWith(QLatin1Char('0')) || digits.size() > 6)
        return false;
    for (const QChar c : digits) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    bool ok = false;
    const int number = digits.toInt(&ok);
    return ok && number >= 1 && number <= count(type);
}

} // namespace kelcontroller
