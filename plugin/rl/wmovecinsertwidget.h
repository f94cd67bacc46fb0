#pragma once

#include "rl/motioninsertwidget.h"
#include "ui_wmovecinsertwidget.h"

namespace kelplugin {

// Insert and property editor of LsMoveC(CirPoint, ToPoint, Speed, Zone, Tool, WObj).
class WMoveCInsertWidget : public MotionInsertWidget
{
    Q_OBJECT
public:
    explicit WMoveCInsertWidget(const QString &name, QWidget *parent = nullptr);
    ~WMoveCInsertWidget() override;

private:
    Ui::WMoveCInsertWidget m_ui;
};

} // namespace kelplugin
