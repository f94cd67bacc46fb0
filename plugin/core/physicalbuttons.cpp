#include "kellaserweld.h"

#include "logline.h"

#include "kelplugin/hostfunctions.h"

namespace kelplugin {

// The key handlers are still being built: the keys are listed but do nothing yet.
void kelLaserWeld::initPhysicalButton()
{
    kellaser::logInfo() << "kelLaserWeld::initPhysicalButton()";
    CreatePhyButtonList(
        QStringLiteral("kellaserweld"), QStringLiteral("kellaserweld"), {}, {}, {QString()});
    ChangePhyButtonStatus(QStringLiteral("kellaserweld"), QStringLiteral("kellaserweld"), true);
}

void kelLaserWeld::onRedLight(bool)
{ }
void kelLaserWeld::onProtectGas(bool)
{ }
void kelLaserWeld::onFeedWire(bool)
{ }
void kelLaserWeld::onRetractWire(bool)
{ }
void kelLaserWeld::onWorkMode(bool)
{ }

} // namespace kelplugin
