#include "buttonmonitorpage.h"

ButtonMonitorPage::ButtonMonitorPage(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ButtonMonitorPage"));
}

ButtonMonitorPage::~ButtonMonitorPage() = default;

void ButtonMonitorPage::initStyle()
{ }
