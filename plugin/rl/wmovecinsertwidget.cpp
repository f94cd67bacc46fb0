#include "wmovecinsertwidget.h"

namespace kelplugin {

WMoveCInsertWidget::WMoveCInsertWidget(const QString &name, QWidget *parent)
    : MotionInsertWidget(name, QStringLiteral("LsMoveC"), QStringLiteral("LsMoveC(%1);"), parent)
{
    m_ui.setupUi(this);
    bind({m_ui.widget_via_point, m_ui.widget_to_point}, m_ui.widget_motion);
}

WMoveCInsertWidget::~WMoveCInsertWidget() = default;

} // namespace kelplugin
