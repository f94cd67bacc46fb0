#include "kellaserweld.h"

#include "logline.h"
#include "page/buttonmonitorpage.h"
#include "page/laserweldpage.h"
#include "rl/rllaserwelddefine.h"
#include "widget/showstatusbar.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

namespace kelplugin {

namespace {
const QString kPluginKey = QStringLiteral("kellaserweld");
}

kelLaserWeld::kelLaserWeld(QObject *parent) : PluginBase(parent), m_monitorKey(QString())
{
    setDefaultGlobalSheet(false);
    setPluginLabel(tr("Laser Welding"));
    m_monitorKey = QStringLiteral("weld_monitor_data");
}

kelLaserWeld::~kelLaserWeld() = default;

void kelLaserWeld::init()
{
    kellaser::logInfo() << "kelLaserWeld::iniUi()";
    m_mainPage = new LaserWeldPage(nullptr);
    m_monitorDialog = new ButtonMonitorPage(m_mainPage);
    CreateCenterWidget(kPluginKey, m_mainPage);
    kellaser::logInfo() << "kelLaserWeld::init()";
    initPhysicalButton();
    m_statusBar = new ShowStatusBar(nullptr);
    kellaser::logInfo() << "kelLaserWeld::initPhysicalButton()";
    CreateStatusBar(kPluginKey, m_statusBar, 1);
    // The controller's mode is only trusted after a connection; render() hooks that.
    m_statusBar->showRealWelding();
}

void kelLaserWeld::afterInit()
{
    kellaser::logInfo() << "KelPluginDemo::initData()";
    RlLaserWeldDefine registrar(this);
}

void kelLaserWeld::render()
{
    m_monitorDialog->initStyle();
    m_mainPage->initRenderStyle();
    connect(&kelPluginInterface(), &InterfaceManager::sigNetworkConnect, this, [this] {
        const bool virtualWelding
            = kelPluginInterface()
                  .getKelServiceData(QStringLiteral("laser_weld_data.virtual_welding_status"))
                  .toBool(false);
        if (virtualWelding)
            m_statusBar->showSimulatedWelding();
        else
            m_statusBar->showRealWelding();
    });
}

void kelLaserWeld::idle()
{ }

} // namespace kelplugin
