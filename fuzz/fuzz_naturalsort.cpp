// Any list of port names (one per line): the natural ordering must stay a strict ordering on
// them, and sorting must return a permutation of the list, in order wherever the ordering is
// consistent, without reading outside the list.

#include "fuzzsupport.h"

#include "page/portcatalogue.h"
#include "support/scriptedcontroller.h"

#include <algorithm>
#include <cstdlib>

namespace {

// A digit run that is no int (too long, or digits outside ASCII) is compared as text, which
// can make the ordering cyclic; the sort must survive that, but "in order" means nothing then.
bool hasDigitText(const QString &name)
{
    int run = 0;
    bool ascii = true;
    for (const QChar c : name) {
        if (c.isDigit()) {
            ++run;
            ascii = ascii && c.unicode() < 128;
            if (run >= 10 || !ascii)
                return true;
        } else {
            run = 0;
            ascii = true;
        }
    }
    return false;
}

// Sorts names and checks the result; returns it.
QStringList checkedSort(const QStringList &names)
{
    const QStringList sorted = PortCatalogue::sorted(names);

    QStringList a = names;
    QStringList b = sorted;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    if (a != b)
        std::abort(); // not a permutation

    bool consistent = true;
    for (const QString &name : names)
        consistent = consistent && !hasDigitText(name);
    for (int i = 0; i + 1 < sorted.size(); ++i) {
        const bool forward = PortCatalogue::lessThan(sorted.at(i), sorted.at(i + 1));
        const bool backward = PortCatalogue::lessThan(sorted.at(i + 1), sorted.at(i));
        if (forward && backward)
            std::abort(); // asymmetric
        if (consistent && backward)
            std::abort(); // out of order
    }
    return sorted;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList names = QString::fromUtf8(fuzzsupport::input(data, size)).split('\n');
    for (const QString &name : names) {
        if (PortCatalogue::lessThan(name, name))
            std::abort(); // irreflexive
    }
    const QStringList sorted = checkedSort(names);

    // Long lists are sorted another way: the same names again and again, with a letter and a
    // number after them, reach it.
    QStringList many;
    for (int copy = 0; many.size() < 256; ++copy) {
        for (const QString &name : names)
            many.append(copy % 3 == 0 ? name : name + QLatin1Char('x') + QString::number(copy % 7));
    }
    checkedSort(many);

    // The catalogue hands out the host's list in the same order.
    ScriptedController controller;
    controller.ports.insert(QStringLiteral("DO"), names);
    if (PortCatalogue::digitalOutputs() != sorted)
        std::abort();
    return 0;
}
