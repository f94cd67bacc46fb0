#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

#include <memory>

namespace kelcontroller {

class RecordStore;

// Who changed which configuration record, when, with which command, and each key's old and
// new value. Kept in its own file beside the data file; the oldest entries go first.
class KELPLUGIN_EXPORT ChangeHistory
{
public:
    struct Change
    {
        QString key;       // dotted path below the record, "LsData3.laser_power_weld"
        QJsonValue before; // undefined: the key was added
        QJsonValue after;  // undefined: the key was removed
    };
    struct Entry
    {
        QDateTime time;
        int userLevel = 0;
        QString command;
        QString record;
        QVector<Change> changes;
        QString client; // who sent the command over the network; empty: the pendant itself
    };

    static constexpr int defaultLimit = 500;

    explicit ChangeHistory(const QString &filePath, int limit = defaultLimit);
    ~ChangeHistory();

    // Reads the file; a damaged one is put aside and the history starts empty. Returns what
    // went wrong, empty when nothing did.
    QString load();
    // Appends an entry (nothing for an entry without changes), drops the oldest beyond the
    // limit and writes the file; false, with error set, when it cannot be written.
    bool add(const Entry &entry, QString *error);
    const QVector<Entry> &entries() const { return m_entries; } // oldest first

    // The keys whose values differ between two versions of a record; arrays change whole.
    static QVector<Change> changes(const QJsonValue &before, const QJsonValue &after);
    // An entry as the history file and the controller protocol carry it, and back.
    static QJsonObject toJson(const Entry &entry);
    static bool fromJson(const QJsonValue &value, Entry *entry);
    // One line per changed key, "time,user_level,command,record,key,old,new,client", oldest
    // first; an empty record means all.
    QByteArray csv(const QString &record = QString()) const;

private:
    std::unique_ptr<RecordStore> m_store;
    QVector<Entry> m_entries;
    int m_limit;
};

} // namespace kelcontroller
