#include "wmovelinsertwidget.h"

namespace kelplugin {

WMoveLInsertWidget::WMoveLInsertWidget(const QString &name, QWidget *parent)
    : MotionInsertWidget(name, QStringLiteral("LsMoveL"), QStringLiteral("LsMoveL(%1);"), parent)
{
    m_ui.setupUi(this);
    bind({m_ui.widget_to_point}, m_ui.widget_motion);
}

WMoveLInsertWidget::~WMoveLInsertWidget() = default;

} // namespace kelplugin
