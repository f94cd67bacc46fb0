#pragma once

#include "kelplugin/pluginbase.h"

#include <QString>

class ButtonMonitorPage;
class LaserWeldPage;
class ShowStatusBar;

namespace kelplugin {

// The laser welding plug-in as the pendant sees it: builds the pages, keys and status
// indicator, registers the weld instructions and keeps the indicator in step with the
// controller's work mode.
class kelLaserWeld : public PluginBase
{
    Q_OBJECT
public:
    explicit kelLaserWeld(QObject *parent = nullptr);
    ~kelLaserWeld() override;

    // Builds the five hardware keys and hands them to the pendant.
    void initPhysicalButton();

private:
    void init() override;
    void afterInit() override;
    void render() override;
    void idle() override;

    void onRedLight(bool pressed);
    void onProtectGas(bool pressed);
    void onFeedWire(bool pressed);
    void onRetractWire(bool pressed);
    void onWorkMode(bool pressed);

    // Valid after init; the pendant owns the page and the indicator once handed over.
    LaserWeldPage *m_mainPage = nullptr;
    QString m_monitorKey;
    ShowStatusBar *m_statusBar = nullptr;
    ButtonMonitorPage *m_monitorDialog = nullptr;
};

} // namespace kelplugin
