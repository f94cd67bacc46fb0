#include "pluginhost.h"

#include "kelplugin/pluginbase.h"
#include "kelplugin/pluginregister.h"

#include <QDir>
#include <QLibrary>
#include <QTimer>

namespace {
// int kelplugin::api(): every plug-in library exports it.
const char kApiSymbol[] = "_ZN9kelplugin3apiEv";
constexpr int kIdleIntervalMs = 200;
} // namespace

PluginHost::PluginHost(QObject *parent) : QObject(parent), m_idleTimer(new QTimer(this))
{
    m_idleTimer->setInterval(kIdleIntervalMs);
    connect(m_idleTimer, &QTimer::timeout, this, [this] {
        for (const auto &plugin : qAsConst(m_plugins)) {
            if (plugin)
                plugin->idle();
        }
    });
}

PluginHost::~PluginHost()
{
    shutdown();
    // Libraries stay mapped: code of theirs may still be referenced until the process ends.
    qDeleteAll(m_libraries);
}

QList<PluginHost::LoadResult> PluginHost::loadFolder(const QString &folder)
{
    QList<LoadResult> results;
    const QDir dir(folder);
    if (!dir.exists()) {
        emit problem(tr("Plug-in folder %1 does not exist.").arg(QDir::toNativeSeparators(folder)));
        return results;
    }
    const QFileInfoList files = dir.entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &info : files) {
        if (!QLibrary::isLibrary(info.fileName()))
            continue;
        LoadResult result;
        result.file = info.absoluteFilePath();
        const QStringList before = kelPluginFactory().keys();
        auto *library = new QLibrary(result.file);
        if (!library->load()) {
            result.message
                = tr("%1 cannot be loaded: %2").arg(info.fileName(), library->errorString());
            delete library;
        } else {
            using ApiFunction = int (*)();
            const auto api = reinterpret_cast<ApiFunction>(library->resolve(kApiSymbol));
            for (const QString &key : kelPluginFactory().keys()) {
                if (!before.contains(key))
                    result.keys.append(key);
            }
            if (!api || api() != 1 || result.keys.isEmpty()) {
                result.message = tr("%1 is not a pendant plug-in: it does not export the plug-in "
                                    "interface or registers no plug-in.")
                                     .arg(info.fileName());
                for (const QString &key : qAsConst(result.keys))
                    kelPluginFactory().unregist(key);
                result.keys.clear();
                library->unload();
                delete library;
            } else {
                result.loaded = true;
                m_libraries.append(library);
                m_keys += result.keys;
            }
        }
        if (!result.message.isEmpty())
            emit problem(result.message);
        results.append(result);
    }
    return results;
}

void PluginHost::startAll()
{
    for (const QString &key : qAsConst(m_keys)) {
        kelplugin::PluginBase *plugin = kelPluginFactory().create(key, this);
        if (!plugin) {
            emit problem(tr("Plug-in %1 could not be created.").arg(key));
            continue;
        }
        m_plugins.append(plugin);
    }
    // The real pendant initialises every plug-in before any of them renders.
    for (const auto &plugin : qAsConst(m_plugins))
        plugin->init();
    for (const auto &plugin : qAsConst(m_plugins))
        plugin->afterInit();
    for (const auto &plugin : qAsConst(m_plugins))
        plugin->render();
    m_idleTimer->start();
}

void PluginHost::shutdown()
{
    m_idleTimer->stop();
    for (int i = m_plugins.size() - 1; i >= 0; --i) {
        if (m_plugins.at(i))
            m_plugins.at(i)->detach();
    }
    for (int i = m_plugins.size() - 1; i >= 0; --i)
        delete m_plugins.at(i).data();
    m_plugins.clear();
}

QList<kelplugin::PluginBase *> PluginHost::plugins() const
{
    QList<kelplugin::PluginBase *> result;
    for (const auto &plugin : m_plugins) {
        if (plugin)
            result.append(plugin);
    }
    return result;
}
