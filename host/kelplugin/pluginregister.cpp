#include "pluginregister.h"

#include "pluginbase.h"

namespace kelplugin {

void PluginRegister::regist(const QString &key, Factory factory)
{
    for (auto &entry : m_factories) {
        if (entry.first == key) {
            entry.second = std::move(factory);
            return;
        }
    }
    m_factories.append({key, std::move(factory)});
}

bool PluginRegister::contains(const QString &key) const
{
    for (const auto &entry : m_factories) {
        if (entry.first == key)
            return true;
    }
    return false;
}

QStringList PluginRegister::keys() const
{
    QStringList result;
    result.reserve(m_factories.size());
    for (const auto &entry : m_factories)
        result.append(entry.first);
    return result;
}

PluginBase *PluginRegister::create(const QString &key, QObject *parent) const
{
    for (const auto &entry : m_factories) {
        if (entry.first == key)
            return entry.second ? entry.second(parent) : nullptr;
    }
    return nullptr;
}

void PluginRegister::unregist(const QString &key)
{
    for (int i = 0; i < m_factories.size(); ++i) {
        if (m_factories.at(i).first == key) {
            m_factories.removeAt(i);
            return;
        }
    }
}

} // namespace kelplugin

kelplugin::PluginRegister &kelPluginFactory()
{
    static kelplugin::PluginRegister reg;
    return reg;
}
