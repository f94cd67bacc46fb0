#pragma once

#include <QStringList>

class QComboBox;

// The controller's I/O port names of one type, fetched afresh from the host on every call and
// put in natural order, so that DO2 comes before DO10.
class PortCatalogue
{
public:
    static QStringList analogInputs();
    static QStringList analogOutputs();
    static QStringList digitalInputs();
    static QStringList digitalOutputs();
    static QStringList groupInputs();
    static QStringList groupOutputs();

    // The host's list of one type ("AI", "AO", "DI", "DO", "GI", "GO"), naturally ordered.
    static QStringList ports(const QString &type);

    // A naturally ordered copy; always a permutation of names, whatever they hold.
    static QStringList sorted(const QStringList &names);

    // The natural comparison: true when a sorts before b. Names are split into runs of ASCII
    // letters and runs of digits; runs that fit an int compare as numbers, everything else as
    // case-sensitive text, and a name that runs out of tokens first sorts first.
    static bool lessThan(const QString &a, const QString &b);

    // Sizes a drop-down of port names by a typical name rather than by its longest entry, which
    // would measure every name of a refilled list on each layout pass.
    static void fitDropDown(QComboBox *dropDown);
    // As QComboBox::setCurrentText for a drop-down filled with exactly items: an unknown name
    // leaves the selection alone. The item model would compare every entry as a QVariant.
    static void selectPort(QComboBox *dropDown, const QStringList &items, const QString &name);
};
