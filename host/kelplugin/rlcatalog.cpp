#include "rlcatalog.h"

namespace kelplugin {

const RLInstruction *RLCatalog::instruction(const QString &typeKey) const
{
    for (const RLInstruction &ins : m_instructions) {
        if (ins.typeKey == typeKey)
            return &ins;
    }
    return nullptr;
}

void RLCatalog::clear()
{
    m_groups.clear();
    m_instructions.clear();
    m_calls.clear();
}

RLInstruction &RLCatalog::entry(const QString &typeKey)
{
    for (RLInstruction &ins : m_instructions) {
        if (ins.typeKey == typeKey)
            return ins;
    }
    RLInstruction ins;
    ins.typeKey = typeKey;
    m_instructions.append(ins);
    return m_instructions.last();
}

void RLCatalog::record(const QString &operation, const QStringList &arguments)
{
    m_calls.append({operation, arguments});
}

RLCatalog &rlCatalog()
{
    static RLCatalog catalog;
    return catalog;
}

} // namespace kelplugin
