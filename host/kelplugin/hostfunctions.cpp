#include "hostfunctions.h"

#include "shellbackend.h"

#include <QWidget>

#include <cstdio>

namespace kelplugin {

int ThrowLog(const QString &pluginKey, enThrowLogLevel level, const QString &text)
{
    if (ShellBackend *shell = shellBackend())
        return shell->throwLog(pluginKey, level, text);
    // No pendant window: the operator message must not vanish.
    std::fprintf(stderr, "[%s|%d] %s\n", qPrintable(pluginKey), int(level), qPrintable(text));
    return -1;
}

int CreateCenterWidget(const QString &pluginKey, QWidget *widget)
{
    if (ShellBackend *shell = shellBackend())
        return shell->createCenterWidget(pluginKey, widget);
    return -1;
}

int CreateStatusBar(const QString &pluginKey, QWidget *widget, int slot)
{
    if (ShellBackend *shell = shellBackend())
        return shell->createStatusBar(pluginKey, widget, slot);
    return -1;
}

int CreatePhyButtonList(const QString &pluginKey, const QString &listName,
    const QList<PhysicalButton> &first, const QList<PhysicalButton> &second,
    const QStringList &extra)
{
    if (ShellBackend *shell = shellBackend())
        return shell->createPhyButtonList(pluginKey, listName, first, second, extra);
    return -1;
}

int ChangePhyButtonStatus(const QString &pluginKey, const QString &listName, bool active)
{
    if (ShellBackend *shell = shellBackend())
        return shell->changePhyButtonStatus(pluginKey, listName, active);
    return -1;
}

int ChangeModelWindowStatus(const QString &pluginKey, bool modal)
{
    if (ShellBackend *shell = shellBackend())
        return shell->changeModelWindowStatus(pluginKey, modal);
    return -1;
}

} // namespace kelplugin
