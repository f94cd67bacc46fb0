#pragma once

#include <QHash>
#include <QJsonValue>
#include <QObject>

#include <functional>

namespace kellaser {

// What a page knows about the controller's records it shows: whether each was read (the form
// holds the controller's values, not the form's defaults) and whether the operator has edited
// the form since it was last filled from them.
class RecordState : public QObject
{
    Q_OBJECT
public:
    explicit RecordState(QObject *parent = nullptr);

    // Notes the outcome of a read of key; read means the page now shows the controller's
    // values. filledForm: the read refilled the editable form (not only a list beside it).
    void note(const QString &key, bool read, bool filledForm = true);
    bool isRead(const QString &key) const;
    // True when every record noted so far was read; false before the first read.
    bool allRead() const;

    // The form as the page would save it; compared with what it held when last filled.
    void setForm(std::function<QJsonValue()> form);
    // Remembers the form as filled from the controller (after a read or a successful save).
    void markFilled();
    bool isEdited() const;
    // The form as last filled, and a way to set it when only part of the form was saved.
    QJsonValue filledForm() const { return m_filled; }
    void setFilledForm(const QJsonValue &filled) { m_filled = filled; }

signals:
    void changed();

private:
    QHash<QString, bool> m_read;
    std::function<QJsonValue()> m_form;
    QJsonValue m_filled;
};

} // namespace kellaser
