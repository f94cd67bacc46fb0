#include "stylesheet.h"

#include <QWidget>

namespace kellaser {

void applyStyleSheet(QWidget *widget, const QString &styleSheet)
{
    if (widget->styleSheet() != styleSheet)
        widget->setStyleSheet(styleSheet);
}

} // namespace kellaser
