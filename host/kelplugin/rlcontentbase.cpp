#include "rlcontentbase.h"

namespace kelplugin {

RLContentBase::RLContentBase(QWidget *parent) : QWidget(parent)
{ }

RLContentBase::~RLContentBase() = default;

void RLContentBase::setInstructionText(const QString &line)
{
    if (m_text == line)
        return;
    m_text = line;
    emit instructionTextChanged(m_text);
}

QString RLContentBase::instructionText() const
{
    return m_text;
}

} // namespace kelplugin
