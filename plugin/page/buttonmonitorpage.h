#pragma once

#include <QDialog>

// The live welding values while the controller streams them. Still being built.
class ButtonMonitorPage : public QDialog
{
    Q_OBJECT
public:
    explicit ButtonMonitorPage(QWidget *parent = nullptr);
    ~ButtonMonitorPage() override;

    void initStyle();
};
