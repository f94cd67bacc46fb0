#include "armsafecombobox.h"

#include <QFontMetrics>

void ArmSafeComboBox::showPopup()
{
    // Lay out every item text once with the widget's own font before the popup view does;
    // the widths themselves are not needed.
    const QFontMetrics metrics(font());
    for (int i = 0; i < count(); ++i)
        static_cast<void>(metrics.horizontalAdvance(itemText(i)));
    QComboBox::showPopup();
}
