#pragma once

#include "rl/motioninsertwidget.h"
#include "ui_wmovecfinsertwidget.h"

namespace kelplugin {

// Insert and property editor of LsMoveCF(CirPoint, ToPoint, Speed, Zone, Tool, WObj).
class WMoveCFInsertWidget : public MotionInsertWidget
{
    Q_OBJECT
public:
    explicit WMoveCFInsertWidget(const QString &name, QWidget *parent = nullptr);
    ~WMoveCFInsertWidget() override;

private:
    Ui::WMoveCFInsertWidget m_ui;
};

} // namespace kelplugin
