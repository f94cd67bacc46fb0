#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QLibrary;
class QTimer;

namespace kelplugin {
class PluginBase;
}

// Loads plug-in libraries from a folder and runs the plug-ins' lifecycle the way the real
// pendant does: each library registers itself when loaded; each registered plug-in is then
// created and taken through init, afterInit and render, and idle runs from a timer.
class PluginHost : public QObject
{
    Q_OBJECT
public:
    struct LoadResult
    {
        QString file;
        bool loaded = false;
        QStringList keys; // plug-ins the library registered
        QString message;  // why it was not loaded, or empty
    };

    explicit PluginHost(QObject *parent = nullptr);
    ~PluginHost() override;

    // Loads every library in the folder; libraries that are not plug-ins are unloaded again.
    QList<LoadResult> loadFolder(const QString &folder);
    // Creates the plug-ins of every loaded library and runs init, afterInit, render.
    void startAll();
    // detach, then destroy, in reverse order of creation.
    void shutdown();

    QList<kelplugin::PluginBase *> plugins() const;
    QStringList loadedKeys() const { return m_keys; }

signals:
    void problem(const QString &text);

private:
    QList<QLibrary *> m_libraries;
    QStringList m_keys;
    QList<QPointer<kelplugin::PluginBase>> m_plugins;
    QTimer *m_idleTimer;
};
