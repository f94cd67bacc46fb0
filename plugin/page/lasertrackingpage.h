#pragma once

#include "ui_lasertrackingpage.h"

#include <QWidget>

// The laser tracking page of the navigation: a placeholder with an empty form.
class LaserTrackingPage : public QWidget
{
    Q_OBJECT
public:
    explicit LaserTrackingPage(QWidget *parent = nullptr);
    ~LaserTrackingPage() override;

private:
    Ui::LaserTrackingPage m_ui;
};
