#include "kellaserweld.h"

#include "commandchannel.h"
#include "logline.h"
#include "widget/showstatusbar.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QDebug>
#include <QJsonArray>

namespace kelplugin {

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kRedLightStatus = QStringLiteral("laser_weld_data.weld_redlight_status");
const QString kVirtualWeldingStatus = QStringLiteral("laser_weld_data.virtual_welding_status");
const QString kRedLightCommand = QStringLiteral("set_weld_red_light");
const QString kGasCommand = QStringLiteral("set_weld_manual_gas");
const QString kFeedWireCommand = QStringLiteral("set_weld_feed_wire");
const QString kRetractWireCommand = QStringLiteral("set_weld_retract_wire");
const QString kWorkModeCommand = QStringLiteral("set_virtual_welding");

// Every key changes the equipment, so every key needs an operating level of at least 3.
bool mayOperate()
{
    if (kelPluginInterface().getUserOperateLevel() >= 3)
        return true;
    ThrowLog(kPluginKey, THROW_LOG_WARNING, kelLaserWeld::tr("Insufficient user permissions!"));
    return false;
}

bool readStatus(const QString &key)
{
    return kelPluginInterface().getKelServiceData(key).toBool(false);
}

} // namespace

void kelLaserWeld::initPhysicalButton()
{
    kellaser::logInfo() << "kelLaserWeld::initPhysicalButton()";

    const PhysicalButton workMode {tr("Work mode"),
        QStringLiteral(":/png/phybutton/switchModePressed.png"),
        QStringLiteral(":/png/phybutton/switchModeUnpressed.png"),
        [this](bool pressed) { onWorkMode(pressed); }};
    const PhysicalButton wiring {tr("Wiring"),
        QStringLiteral(":/png/phybutton/feedWirePressed.png"),
        QStringLiteral(":/png/phybutton/feedWireUnpressed.png"),
        [this](bool pressed) { onFeedWire(pressed); }};
    const PhysicalButton protectGas {tr("ProtectGas"),
        QStringLiteral(":/png/phybutton/gasPressed.png"),
        QStringLiteral(":/png/phybutton/gasUnpressed.png"),
        [this](bool pressed) { onProtectGas(pressed); }};
    const PhysicalButton retractWire {tr("Retract Wire"),
        QStringLiteral(":/png/phybutton/pullWirePressed.png"),
        QStringLiteral(":/png/phybutton/pullWireUnpressed.png"),
        [this](bool pressed) { onRetractWire(pressed); }};
    const PhysicalButton redLight {tr("Red Light"),
        QStringLiteral(":/png/phybutton/redLightPressed.png"),
        QStringLiteral(":/png/phybutton/redLightUnpressed.png"),
        [this](bool pressed) { onRedLight(pressed); }};

    const QList<PhysicalButton> first {workMode, wiring, redLight};
    const QList<PhysicalButton> second {protectGas, retractWire};
    CreatePhyButtonList(kPluginKey, kPluginKey, first, second, QStringList {QString()});
    ChangePhyButtonStatus(kPluginKey, kPluginKey, true);
}

void kelLaserWeld::onRedLight(bool pressed)
{
    if (!pressed || !mayOperate())
        return;
    const bool lightOn = readStatus(kRedLightStatus);
    // The light simply toggles; the controller's answer carries nothing the operator needs.
    kellaser::CommandChannel::send(this, kRedLightCommand, !lightOn);
}

void kelLaserWeld::onProtectGas(bool pressed)
{
    if (!pressed || !mayOperate())
        return;
    // There is no close command: the controller ends the purge on its own.
    const QJsonArray reply = kellaser::CommandChannel::send(this, kGasCommand, true);
    const auto outcome = kellaser::CommandChannel::checkReply(reply, kGasCommand,
        QStringLiteral("Phybtn:: open gas failed. "), tr("Open gas successfully"),
        tr("Open gas failed. Please check logs."));
    if (outcome == kellaser::CommandChannel::Outcome::NotFound)
        qDebug() << "ProtectGas";
}

void kelLaserWeld::onFeedWire(bool pressed)
{
    // Both halves are checked, so a refused operator sends neither the start nor the stop.
    if (!mayOperate())
        return;
    const QJsonArray reply = kellaser::CommandChannel::send(this, kFeedWireCommand, pressed);
    if (!pressed)
        qDebug() << "is_pressed = " << pressed;
    const auto outcome = kellaser::CommandChannel::checkReply(reply, kFeedWireCommand,
        QStringLiteral("Phybtn:: feed_wire failed. "), tr("Feed wire successfully"),
        tr("Feed wire failed. Please check logs."));
    if (outcome == kellaser::CommandChannel::Outcome::NotFound) {
        qDebug() << "is_pressed = " << pressed;
        qDebug() << "Welding";
    }
}

void kelLaserWeld::onRetractWire(bool pressed)
{
    if (!mayOperate())
        return;
    const QJsonArray reply = kellaser::CommandChannel::send(this, kRetractWireCommand, pressed);
    const auto outcome = kellaser::CommandChannel::checkReply(reply, kRetractWireCommand,
        QStringLiteral("Phybtn:: retract_wire failed. "), tr("Retract wire successfully"),
        tr("Retract wire failed. Please check logs."));
    if (outcome == kellaser::CommandChannel::Outcome::NotFound)
        qDebug() << "Retract Wire";
}

void kelLaserWeld::onWorkMode(bool pressed)
{
    const bool virtualWelding = readStatus(kVirtualWeldingStatus);
    if (!pressed || !mayOperate())
        return;
    const bool toVirtual = !virtualWelding;
    const QJsonArray reply = kellaser::CommandChannel::send(this, kWorkModeCommand, toVirtual);
    // An empty or shapeless reply counts as success here, unlike the search check.
    if (kellaser::CommandChannel::firstElementReturn(reply, kWorkModeCommand) != 0) {
        ThrowLog(kPluginKey, THROW_LOG_ERROR, tr("Switch work mode failed"));
        return;
    }
    if (toVirtual) {
        if (m_statusBar)
            m_statusBar->showSimulatedWelding();
        ThrowLog(kPluginKey, THROW_LOG_INFO, tr("Switch to VirtualWelding"));
    } else {
        if (m_statusBar)
            m_statusBar->showRealWelding();
        ThrowLog(kPluginKey, THROW_LOG_INFO, tr("Switch to RealWdlding"));
    }
}

} // namespace kelplugin
