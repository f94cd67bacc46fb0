#include "lasertrackingpage.h"

LaserTrackingPage::LaserTrackingPage(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
}

LaserTrackingPage::~LaserTrackingPage() = default;
