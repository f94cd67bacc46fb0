#pragma once

#include <QRegExp>
#include <QString>
#include <QVariant>

// The port names' natural ordering written straight down, tokenising both names inside every
// comparison. The catalogue's tests compare against it and the sort benchmark measures it.
namespace straightforward {

inline QVariantList portTokens(const QString &name)
{
    QVariantList list;
    QRegExp rx(QStringLiteral("([A-Za-z]+|\\d+)"));
    int pos = 0;
    while ((pos = rx.indexIn(name, pos)) != -1) {
        const QString text = rx.cap(1);
        bool ok = false;
        const int number = text.toInt(&ok, 10);
        list.append(ok ? QVariant(number) : QVariant(text));
        pos += rx.matchedLength();
    }
    return list;
}

inline bool portLess(const QString &a, const QString &b)
{
    const QVariantList ta = portTokens(a);
    const QVariantList tb = portTokens(b);
    for (int i = 0; i < qMin(ta.size(), tb.size()); ++i) {
        if (ta[i].type() == QVariant::Int && tb[i].type() == QVariant::Int) {
            if (ta[i].toInt() != tb[i].toInt())
                return ta[i].toInt() < tb[i].toInt();
            continue;
        }
        const QString sa = ta[i].toString();
        const QString sb = tb[i].toString();
        if (sa != sb)
            return sa < sb;
    }
    return ta.size() < tb.size();
}

} // namespace straightforward
