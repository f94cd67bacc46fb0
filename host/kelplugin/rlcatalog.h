#pragma once

#include "kelplugin_global.h"
#include "rlmanager.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace kelplugin {

struct RLInstruction
{
    QString typeKey;
    QString groupKey;
    QString skeleton;
    QString description;
    QString pattern;
    QString defaultText;
    RLWidgetFactory insertWidget;
    RLWidgetFactory propertyWidget;
};

struct RLGroup
{
    QString key;
    QString caption;
};

// One registration call as a manager received it, for the program editor's diagnostics and
// for tests that check what a plug-in registers and in which order.
struct RLCall
{
    QString operation;
    QStringList arguments;
};

// The host's instruction catalogue: every instruction and group registered through any
// RLManager, in registration order.
class KELPLUGIN_EXPORT RLCatalog
{
public:
    QList<RLGroup> groups() const { return m_groups; }
    QList<RLInstruction> instructions() const { return m_instructions; }
    // nullptr when the key was never registered.
    const RLInstruction *instruction(const QString &typeKey) const;
    QList<RLCall> calls() const { return m_calls; }
    void clear();

private:
    friend class RLManager;
    RLInstruction &entry(const QString &typeKey);
    void record(const QString &operation, const QStringList &arguments);

    QList<RLGroup> m_groups;
    QList<RLInstruction> m_instructions;
    QList<RLCall> m_calls;
};

KELPLUGIN_EXPORT RLCatalog &rlCatalog();

} // namespace kelplugin
