#include "wmovecfinsertwidget.h"

namespace kelplugin {

WMoveCFInsertWidget::WMoveCFInsertWidget(const QString &name, QWidget *parent)
    : MotionInsertWidget(name, QStringLiteral("LsMoveCF"), QStringLiteral("LsMoveCF(%1);"), parent)
{
    m_ui.setupUi(this);
    bind({m_ui.widget_via_point, m_ui.widget_to_point}, m_ui.widget_motion);
}

WMoveCFInsertWidget::~WMoveCFInsertWidget() = default;

} // namespace kelplugin
