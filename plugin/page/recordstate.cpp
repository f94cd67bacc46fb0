#include "recordstate.h"

namespace kellaser {

RecordState::RecordState(QObject *parent) : QObject(parent)
{ }

void RecordState::note(const QString &key, bool read, bool filledForm)
{
    m_read.insert(key, read);
    if (read && filledForm)
        markFilled();
    emit changed();
}

bool RecordState::isRead(const QString &key) const
{
    return m_read.value(key, false);
}

bool RecordState::allRead() const
{
    if (m_read.isEmpty())
        return false;
    for (const bool read : m_read) {
        if (!read)
            return false;
    }
    return true;
}

void RecordState::setForm(std::function<QJsonValue()> form)
{
    m_form = std::move(form);
}

void RecordState::markFilled()
{
    m_filled = m_form ? m_form() : QJsonValue();
}

bool RecordState::isEdited() const
{
    return m_form && m_form() != m_filled;
}

} // namespace kellaser
