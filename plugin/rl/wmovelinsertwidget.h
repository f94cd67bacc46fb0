#pragma once

#include "rl/motioninsertwidget.h"
#include "ui_wmovelinsertwidget.h"

namespace kelplugin {

// Insert and property editor of LsMoveL(ToPoint, Speed, Zone, Tool, WObj).
class WMoveLInsertWidget : public MotionInsertWidget
{
    Q_OBJECT
public:
    explicit WMoveLInsertWidget(const QString &name, QWidget *parent = nullptr);
    ~WMoveLInsertWidget() override;

private:
    Ui::WMoveLInsertWidget m_ui;
};

} // namespace kelplugin
