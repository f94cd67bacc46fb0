#pragma once

#include <QWidget>

class WeldSettingPage;

// The process parameter page; still being built.
class WeldParameterPage : public QWidget
{
    Q_OBJECT
public:
    WeldParameterPage(WeldSettingPage *settingPage, QWidget *parent = nullptr);
};
