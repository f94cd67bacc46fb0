#include "pluginbase.h"

namespace kelplugin {

PluginBase::PluginBase(QObject *parent) : QObject(parent)
{ }

PluginBase::~PluginBase() = default;

void PluginBase::setDefaultGlobalSheet(bool useGlobalSheet)
{
    m_defaultGlobalSheet = useGlobalSheet;
}

void PluginBase::setPluginLabel(const QString &label)
{
    m_pluginLabel = label;
}

void PluginBase::init()
{ }

void PluginBase::afterInit()
{ }

void PluginBase::render()
{ }

void PluginBase::idle()
{ }

void PluginBase::detach()
{ }

} // namespace kelplugin
