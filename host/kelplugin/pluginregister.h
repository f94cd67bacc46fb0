#pragma once

#include "kelplugin_global.h"

#include <QList>
#include <QPair>
#include <QStringList>

#include <functional>

class QObject;

namespace kelplugin {

class PluginBase;

// Factories of the loaded plug-ins, filled by each library's static registration.
class KELPLUGIN_EXPORT PluginRegister
{
public:
    using Factory = std::function<PluginBase *(QObject *)>;

    // Registering a key again replaces its factory.
    void regist(const QString &key, Factory factory);
    bool contains(const QString &key) const;
    QStringList keys() const;
    // nullptr for an unknown key or a factory that returns none.
    PluginBase *create(const QString &key, QObject *parent) const;
    void unregist(const QString &key);

private:
    QList<QPair<QString, Factory>> m_factories;
};

} // namespace kelplugin

KELPLUGIN_EXPORT kelplugin::PluginRegister &kelPluginFactory();
