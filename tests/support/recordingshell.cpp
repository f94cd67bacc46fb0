#include "recordingshell.h"

namespace {
// Widgets without a meta-object of their own are known by their form's object name.
QString widgetName(const QWidget *widget)
{
    if (!widget)
        return QString();
    return widget->objectName().isEmpty() ? QString::fromLatin1(widget->metaObject()->className())
                                          : widget->objectName();
}
} // namespace

RecordingShell::RecordingShell()
{
    kelplugin::setShellBackend(this);
}

RecordingShell::~RecordingShell()
{
    kelplugin::setShellBackend(nullptr);
    delete centerWidget.data();
    delete statusBarWidget.data();
}

QStringList RecordingShell::messageTexts(int level) const
{
    QStringList texts;
    for (const Message &m : messages) {
        if (level < 0 || m.level == level)
            texts.append(m.text);
    }
    return texts;
}

bool RecordingShell::press(const QString &name, bool pressed)
{
    for (const auto *list : {&firstButtons, &secondButtons}) {
        for (const kelplugin::PhysicalButton &button : *list) {
            if (button.name == name && button.callback) {
                button.callback(pressed);
                return true;
            }
        }
    }
    return false;
}

void RecordingShell::clear()
{
    messages.clear();
    calls.clear();
}

int RecordingShell::throwLog(
    const QString &pluginKey, kelplugin::enThrowLogLevel level, const QString &text)
{
    messages.append({pluginKey, int(level), text});
    calls.append({QStringLiteral("ThrowLog"), {pluginKey, QString::number(int(level)), text}});
    return 0;
}

int RecordingShell::createCenterWidget(const QString &pluginKey, QWidget *widget)
{
    centerWidget = widget;
    calls.append({QStringLiteral("CreateCenterWidget"), {pluginKey, widgetName(widget)}});
    return 0;
}

int RecordingShell::createStatusBar(const QString &pluginKey, QWidget *widget, int slot)
{
    statusBarWidget = widget;
    calls.append({QStringLiteral("CreateStatusBar"),
        {pluginKey, widgetName(widget), QString::number(slot)}});
    return 0;
}

int RecordingShell::createPhyButtonList(const QString &pluginKey, const QString &listName,
    const QList<kelplugin::PhysicalButton> &first, const QList<kelplugin::PhysicalButton> &second,
    const QStringList &extra)
{
    firstButtons = first;
    secondButtons = second;
    QStringList args {
        pluginKey, listName, QString::number(first.size()), QString::number(second.size())};
    args += extra;
    calls.append({QStringLiteral("CreatePhyButtonList"), args});
    return 0;
}

int RecordingShell::changePhyButtonStatus(
    const QString &pluginKey, const QString &listName, bool active)
{
    calls.append({QStringLiteral("ChangePhyButtonStatus"),
        {pluginKey, listName, active ? QStringLiteral("true") : QStringLiteral("false")}});
    return 0;
}

int RecordingShell::changeModelWindowStatus(const QString &pluginKey, bool modal)
{
    calls.append({QStringLiteral("ChangeModelWindowStatus"),
        {pluginKey, modal ? QStringLiteral("true") : QStringLiteral("false")}});
    return 0;
}
