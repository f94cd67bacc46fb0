#pragma once

#include "kelplugin_global.h"
#include "physicalbutton.h"
#include "throwloglevel.h"

#include <QList>
#include <QStringList>

class QWidget;

namespace kelplugin {

// The pendant side of the host: the window that shows the plug-ins' widgets, keys and
// messages. The embedding program installs one with setShellBackend().
class KELPLUGIN_EXPORT ShellBackend
{
public:
    virtual ~ShellBackend();

    virtual int throwLog(const QString &pluginKey, enThrowLogLevel level, const QString &text) = 0;
    virtual int createCenterWidget(const QString &pluginKey, QWidget *widget) = 0;
    virtual int createStatusBar(const QString &pluginKey, QWidget *widget, int slot) = 0;
    virtual int createPhyButtonList(const QString &pluginKey, const QString &listName,
        const QList<PhysicalButton> &first, const QList<PhysicalButton> &second,
        const QStringList &extra)
        = 0;
    virtual int changePhyButtonStatus(
        const QString &pluginKey, const QString &listName, bool active)
        = 0;
    virtual int changeModelWindowStatus(const QString &pluginKey, bool modal) = 0;
};

// Does not take ownership; pass nullptr to remove.
KELPLUGIN_EXPORT void setShellBackend(ShellBackend *shell);
KELPLUGIN_EXPORT ShellBackend *shellBackend();

} // namespace kelplugin
