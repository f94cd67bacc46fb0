#pragma once

#include "kelplugin_global.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace kelplugin {

class RLContentBase;

using RLWidgetFactory = std::function<RLContentBase *()>;

// Registry of robot-language instructions. What a plug-in registers outlives the manager
// object: it goes into the host's instruction catalogue (rlcatalog.h).
class KELPLUGIN_EXPORT RLManager : public QObject
{
    Q_OBJECT
public:
    explicit RLManager(QObject *parent = nullptr);
    ~RLManager() override;

    void createTypeKey(const QString &typeKey);
    void createGroups(const QString &caption, const QString &groupKey);
    void createTypeToGroup(const QString &typeKey, const QString &groupKey);
    void createPattern(const QString &typeKey, const QString &pattern);
    void createInsDefault(const QString &typeKey, const QString &defaultText);
    void createInsDescribe(const QString &typeKey, const QString &description);
    void createSkeleton(const QString &typeKey, const QString &skeleton);
    void createInsertWidget(const QString &typeKey, RLWidgetFactory factory);
    void createPropertyWidget(const QString &typeKey, RLWidgetFactory factory);
};

} // namespace kelplugin
