#pragma once

#include <QWidget>

// The plug-in's centre page. Navigation and the configuration pages are still being built.
class LaserWeldPage : public QWidget
{
    Q_OBJECT
public:
    explicit LaserWeldPage(QWidget *parent = nullptr);
    ~LaserWeldPage() override;

    // Style sheets that depend on the pendant's look, applied from the plug-in's render step.
    void initRenderStyle();
};
