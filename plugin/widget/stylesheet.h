#pragma once

class QString;
class QWidget;

namespace kellaser {

// Sets a widget's style sheet unless it already has exactly this one. Qt re-polishes the whole
// subtree on every call, and render() asks the pages again for the sheets they set when built.
void applyStyleSheet(QWidget *widget, const QString &styleSheet);

} // namespace kellaser
