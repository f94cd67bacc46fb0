#pragma once

#include "kelplugin_global.h"
#include "physicalbutton.h"
#include "throwloglevel.h"

#include <QList>
#include <QStringList>

class QWidget;

namespace kelplugin {

// The pendant's services to plug-ins. Each returns 0 when the shell took the request and -1
// when no shell is installed.
KELPLUGIN_EXPORT int ThrowLog(const QString &pluginKey, enThrowLogLevel level, const QString &text);
KELPLUGIN_EXPORT int CreateCenterWidget(const QString &pluginKey, QWidget *widget);
KELPLUGIN_EXPORT int CreateStatusBar(const QString &pluginKey, QWidget *widget, int slot);
KELPLUGIN_EXPORT int CreatePhyButtonList(const QString &pluginKey, const QString &listName,
    const QList<PhysicalButton> &first, const QList<PhysicalButton> &second,
    const QStringList &extra);
KELPLUGIN_EXPORT int ChangePhyButtonStatus(
    const QString &pluginKey, const QString &listName, bool active);
KELPLUGIN_EXPORT int ChangeModelWindowStatus(const QString &pluginKey, bool modal);

} // namespace kelplugin
