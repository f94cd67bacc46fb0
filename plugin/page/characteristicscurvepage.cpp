#include "characteristicscurvepage.h"

CharacteristicsCurvePage::CharacteristicsCurvePage(WeldSettingPage *, QWidget *parent)
    : QWidget(parent)
{ }
