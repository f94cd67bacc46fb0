// Static registration of the plug-in: runs when the pendant loads the library.

#include "core/kellaserweld.h"

#include "kelplugin/pluginregister.h"

#include <QtGlobal>

namespace {

const bool s_registered = [] {
    kelPluginFactory().regist(
        QStringLiteral("kellaserweld"), [](QObject *parent) -> kelplugin::PluginBase * {
            return new kelplugin::kelLaserWeld(parent);
        });
    return true;
}();

} // namespace

// Outside any namespace: the resource initialiser is declared where it is used.
static void initKellaserweldResources()
{
    Q_INIT_RESOURCE(kellaserweld);
    Q_INIT_RESOURCE(kellaserweld_lang);
    Q_INIT_RESOURCE(kellaserweld_icons);
}
Q_CONSTRUCTOR_FUNCTION(initKellaserweldResources)

namespace kelplugin {

int api()
{
    return 1;
}

} // namespace kelplugin
