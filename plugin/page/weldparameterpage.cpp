#include "weldparameterpage.h"

WeldParameterPage::WeldParameterPage(WeldSettingPage *, QWidget *parent) : QWidget(parent)
{ }
