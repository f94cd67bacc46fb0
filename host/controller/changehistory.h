#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

#include <memory>

namespace kelcontroller {

class JournalFile;

// Who changed which configuration record, when, with which command, and each key's old and
// new value. Kept in its own file beside the data file, one entry per line; the oldest go
// first.
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

    // Entries kept at least (when they fit in keptBytes); the file grows by a fifth more
    // before the oldest go.
    static constexpr int defaultLimit = 10000;
    static constexpr qint64 keptBytes = 4 * 1024 * 1024;
    static constexpr qint64 maxBytes = 6 * 1024 * 1024;
    // One entry's line: a change larger than this is refused before it is saved.
    static constexpr qint64 maxEntryBytes = 1024 * 1024;

    explicit ChangeHistory(const QString &filePath, int limit = defaultLimit);
    ~ChangeHistory();

    QString filePath() const;
    // Reads the file. Entries that cannot be read are dropped and reported, the damaged file
    // kept aside; the earlier whole-file format is taken over. Returns what went wrong, empty
    // when nothing did.
    QString load();
    // Appends an entry (nothing for an entry without changes), synced; the oldest go when the
    // file passes its limits. false, with error set, when it cannot be written: the entry
    // stays in memory and is written with the next one that can be.
    bool add(const Entry &entry, QString *error);
    const QVector<Entry> &entries() const { return m_entries; } // oldest first
    // Entries in memory that the file does not hold yet.
    int unstored() const { return m_unstored.size(); }

    // The bytes an entry takes in the file.
    static qint64 entryBytes(const Entry &entry);
    // The entry with every value above maxValueBytes replaced by a note of its size: a record
    // an older version let grow can still be made smaller.
    static constexpr qint64 maxValueBytes = 64 * 1024;
    static Entry shortened(Entry entry);

    // The keys whose values differ between two versions of a record; arrays change whole.
    static QVector<Change> changes(const QJsonValue &before, const QJsonValue &after);
    // An entry as the history file and the controller protocol carry it, and back.
    static QJsonObject toJson(const Entry &entry);
    static bool fromJson(const QJsonValue &value, Entry *entry);
    // One line per changed key, "time,user_level,command,record,key,old,new,client", oldest
    // first; an empty record means all.
    // maxBytes (when not negative) keeps the newest lines that fit, the header always.
    QByteArray csv(const QString &record = QString(), qint64 maxBytes = -1) const;

private:
    std::unique_ptr<JournalFile> m_journal;
    QVector<Entry> m_entries;
    QVector<QByteArray> m_unstored; // the newest entries' lines, not written yet
};

} // namespace kelcontroller
