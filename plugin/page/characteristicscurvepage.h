#pragma once

#include <QWidget>

class WeldSettingPage;

// The characteristic curve page; still being built.
class CharacteristicsCurvePage : public QWidget
{
    Q_OBJECT
public:
    CharacteristicsCurvePage(WeldSettingPage *settingPage, QWidget *parent = nullptr);

    void initStyle() { }
};
