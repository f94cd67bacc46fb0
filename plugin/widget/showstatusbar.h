#pragma once

#include "ui_showstatusbar.h"

#include <QWidget>

// The status-bar indicator of the work mode: real or simulated (virtual) welding.
class ShowStatusBar : public QWidget
{
public:
    explicit ShowStatusBar(QWidget *parent = nullptr);
    ~ShowStatusBar() override;

    void showRealWelding();
    void showSimulatedWelding();

private:
    void showIcon(const QString &path);

    Ui::ShowStatusBar m_ui;
};
