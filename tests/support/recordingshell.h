#pragma once

#include "kelplugin/shellbackend.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QWidget>

// A pendant shell that remembers every call, for tests. Installs itself on construction and
// removes itself on destruction; widgets handed over are deleted with it.
class RecordingShell : public kelplugin::ShellBackend
{
public:
    struct Message
    {
        QString pluginKey;
        int level;
        QString text;
    };
    struct Call
    {
        QString function;
        QStringList arguments;
    };

    RecordingShell();
    ~RecordingShell() override;

    QList<Message> messages;
    QList<Call> calls;
    QPointer<QWidget> centerWidget;
    QPointer<QWidget> statusBarWidget;
    QList<kelplugin::PhysicalButton> firstButtons;
    QList<kelplugin::PhysicalButton> secondButtons;

    // Texts of the operator messages, in order, optionally of one level only.
    QStringList messageTexts(int level = -1) const;
    // Presses (true) or releases (false) the named key of either list.
    bool press(const QString &name, bool pressed);
    void clear();

    int throwLog(
        const QString &pluginKey, kelplugin::enThrowLogLevel level, const QString &text) override;
    int createCenterWidget(const QString &pluginKey, QWidget *widget) override;
    int createStatusBar(const QString &pluginKey, QWidget *widget, int slot) override;
    int createPhyButtonList(const QString &pluginKey, const QString &listName,
        const QList<kelplugin::PhysicalButton> &first,
        const QList<kelplugin::PhysicalButton> &second, const QStringList &extra) override;
    int changePhyButtonStatus(
        const QString &pluginKey, const QString &listName, bool active) override;
    int changeModelWindowStatus(const QString &pluginKey, bool modal) override;
};
