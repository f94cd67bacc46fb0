#include "rlmanager.h"

#include "rlcatalog.h"

namespace kelplugin {

RLManager::RLManager(QObject *parent) : QObject(parent)
{ }

RLManager::~RLManager() = default;

void RLManager::createTypeKey(const QString &typeKey)
{
    rlCatalog().record(QStringLiteral("createTypeKey"), {typeKey});
    rlCatalog().entry(typeKey);
}

void RLManager::createGroups(const QString &caption, const QString &groupKey)
{
    RLCatalog &catalog = rlCatalog();
    catalog.record(QStringLiteral("createGroups"), {caption, groupKey});
    for (RLGroup &group : catalog.m_groups) {
        if (group.key == groupKey) {
            group.caption = caption;
            return;
        }
    }
    catalog.m_groups.append({groupKey, caption});
}

void RLManager::createTypeToGroup(const QString &typeKey, const QString &groupKey)
{
    rlCatalog().record(QStringLiteral("createTypeToGroup"), {typeKey, groupKey});
    rlCatalog().entry(typeKey).groupKey = groupKey;
}

void RLManager::createPattern(const QString &typeKey, const QString &pattern)
{
    rlCatalog().record(QStringLiteral("createPattern"), {typeKey, pattern});
    rlCatalog().entry(typeKey).pattern = pattern;
}

void RLManager::createInsDefault(const QString &typeKey, const QString &defaultText)
{
    rlCatalog().record(QStringLiteral("createInsDefault"), {typeKey, defaultText});
    rlCatalog().entry(typeKey).defaultText = defaultText;
}

void RLManager::createInsDescribe(const QString &typeKey, const QString &description)
{
    rlCatalog().record(QStringLiteral("createInsDescribe"), {typeKey, description});
    rlCatalog().entry(typeKey).description = description;
}

void RLManager::createSkeleton(const QString &typeKey, const QString &skeleton)
{
    rlCatalog().record(QStringLiteral("createSkeleton"), {typeKey, skeleton});
    rlCatalog().entry(typeKey).skeleton = skeleton;
}

void RLManager::createInsertWidget(const QString &typeKey, RLWidgetFactory factory)
{
    rlCatalog().record(QStringLiteral("createInsertWidget"), {typeKey});
    rlCatalog().entry(typeKey).insertWidget = std::move(factory);
}

void RLManager::createPropertyWidget(const QString &typeKey, RLWidgetFactory factory)
{
    rlCatalog().record(QStringLiteral("createPropertyWidget"), {typeKey});
    rlCatalog().entry(typeKey).propertyWidget = std::move(factory);
}

} // namespace kelplugin
