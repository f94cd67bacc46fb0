#include "laserweldpage.h"

#include "core/logline.h"

LaserWeldPage::LaserWeldPage(QWidget *parent) : QWidget(parent)
{
    kellaser::logInfo() << "LaserWeldPage::LaserWeldPage" << 15;
    setObjectName(QStringLiteral("LaserWeldPage"));
}

LaserWeldPage::~LaserWeldPage() = default;

void LaserWeldPage::initRenderStyle()
{ }
