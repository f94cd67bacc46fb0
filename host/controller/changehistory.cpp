#include "changehistory.h"

#include "journalfile.h"
#include "storagelimits.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kelcontroller {

namespace {

const QString kEntries = QStringLiteral("entries");

// The header and the lines gathered newest first, oldest first.
QByteArray join(const QByteArray &header, const QVector<QByteArray> &newestFirst)
{
    QByteArray text = header;
    for (auto it = newestFirst.crbegin(); it != newestFirst.crend(); ++it)
        text += *it;
    return text;
}

QByteArray line(const ChangeHistory::Entry &entry)
{
    return QJsonDocument(ChangeHistory::toJson(entry)).toJson(QJsonDocument::Compact);
}

QString valueText(const QJsonValue &value)
{
    if (value.isUndefined())
        return QString();
    const QByteArray json = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}

QString csvField(const QString &text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"'))
        && !text.contains(QLatin1Char('\n')))
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QLatin1String("\"\""))
        + QLatin1Char('"');
}

void collect(const QString &path, const QJsonValue &before, const QJsonValue &after, int depth,
    QVector<ChangeHistory::Change> *out)
{
    if (before == after)
        return;
    // Records are two levels deep (set, field); anything deeper changes as a whole.
    if (!before.isObject() || !after.isObject() || depth > 8) {
        out->append({path, before, after});
        return;
    }
    const QJsonObject a = before.toObject();
    const QJsonObject b = after.toObject();
    QStringList keys = a.keys();
    for (const QString &key : b.keys()) {
        if (!a.contains(key))
            keys.append(key);
    }
    std::sort(keys.begin(), keys.end());
    for (const QString &key : qAsConst(keys))
        collect(path.isEmpty() ? key : path + QLatin1Char('.') + key, a.value(key), b.value(key),
            depth + 1, out);
}

} // namespace

QJsonObject ChangeHistory::toJson(const Entry &entry)
{
    QJsonArray changes;
    for (const auto &change : entry.changes) {
        QJsonObject c {{QStringLiteral("key"), change.key}};
        if (!change.before.isUndefined())
            c.insert(QStringLiteral("old"), change.before);
        if (!change.after.isUndefined())
            c.insert(QStringLiteral("new"), change.after);
        changes.append(c);
    }
    QJsonObject out {{QStringLiteral("time"), entry.time.toUTC().toString(Qt::ISODateWithMs)},
        {QStringLiteral("user_level"), entry.userLevel}, {QStringLiteral("command"), entry.command},
        {QStringLiteral("record"), entry.record}, {QStringLiteral("changes"), changes}};
    if (!entry.client.isEmpty())
        out.insert(QStringLiteral("client"), entry.client);
    return out;
}

bool ChangeHistory::fromJson(const QJsonValue &value, Entry *entry)
{
    const QJsonObject o = value.toObject();
    entry->time
        = QDateTime::fromString(o.value(QLatin1String("time")).toString(), Qt::ISODateWithMs);
    entry->userLevel = o.value(QLatin1String("user_level")).toInt(-1);
    entry->command = o.value(QLatin1String("command")).toString();
    entry->record = o.value(QLatin1String("record")).toString();
    entry->client = o.value(QLatin1String("client")).toString();
    const QJsonValue changes = o.value(QLatin1String("changes"));
    if (!entry->time.isValid() || entry->userLevel < 0 || !changes.isArray())
        return false;
    for (const QJsonValue &c : changes.toArray()) {
        const QJsonObject change = c.toObject();
        if (!change.value(QLatin1String("key")).isString())
            return false;
        entry->changes.append({change.value(QLatin1String("key")).toString(),
            change.value(QLatin1String("old")), change.value(QLatin1String("new"))});
    }
    return true;
}

ChangeHistory::ChangeHistory(const QString &filePath, int limit)
{
    const int keep = std::max(1, limit);
    m_journal.reset(new JournalFile(filePath, {keep, keptBytes, keep + keep / 5, maxBytes}));
}

ChangeHistory::~ChangeHistory() = default;

QString ChangeHistory::filePath() const
{
    return m_journal->filePath();
}

qint64 ChangeHistory::entryBytes(const Entry &entry)
{
    return line(entry).size() + 1;
}

ChangeHistory::Entry ChangeHistory::shortened(Entry entry)
{
    const auto shorten = [](QJsonValue *value) {
        const qint64 bytes = valueText(*value).toUtf8().size();
        if (bytes > maxValueBytes)
            *value = QStringLiteral("(%1, not kept in the history)")
                         .arg(StorageLimits::sizeText(bytes));
    };
    for (Change &change : entry.changes) {
        shorten(&change.before);
        shorten(&change.after);
    }
    return entry;
}

QString ChangeHistory::load()
{
    m_entries.clear();
    m_unstored.clear();
    QStringList problems;
    const QVector<QJsonObject> objects = m_journal->load(
        [](const QJsonObject &o) {
            Entry entry;
            return fromJson(o, &entry);
        },
        [](const QJsonObject &whole, QVector<QJsonObject> *entries) {
            if (!whole.value(kEntries).isArray())
                return false;
            for (const QJsonValue &value : whole.value(kEntries).toArray())
                entries->append(value.toObject());
            return true;
        },
        &problems);
    for (const QJsonObject &o : objects) {
        Entry entry;
        fromJson(o, &entry);
        m_entries.append(entry);
    }
    if (problems.isEmpty())
        return QString();
    return QStringLiteral("The change history: %1.").arg(problems.join(QStringLiteral("; ")));
}

bool ChangeHistory::add(const Entry &entry, QString *error)
{
    if (entry.changes.isEmpty())
        return true;
    m_entries.append(entry);
    m_unstored.append(line(entry));
    int dropped = 0;
    QString why;
    if (m_journal->append(m_unstored, &dropped, &why)) {
        m_entries.remove(0, dropped);
        m_unstored.clear();
        return true;
    }
    // Kept in memory for the next try, as many as the file would keep.
    QString lost;
    int excess = std::max(0, m_unstored.size() - m_journal->limits().keepEntries);
    qint64 unstoredBytes = 0;
    for (int i = excess; i < m_unstored.size(); ++i)
        unstoredBytes += m_unstored.at(i).size() + 1;
    while (excess < m_unstored.size() - 1 && unstoredBytes > keptBytes)
        unstoredBytes -= m_unstored.at(excess++).size() + 1;
    if (excess > 0) {
        m_unstored.remove(0, excess);
        m_entries.remove(m_entries.size() - m_unstored.size() - excess, excess);
        lost = QStringLiteral(" %1 older unstored entries are lost.").arg(excess);
    }
    *error = QStringLiteral("The change history could not store the change of %1 made at %2 "
                            "(%3 entries wait to be stored): %4.%5")
                 .arg(entry.record, entry.time.toUTC().toString(Qt::ISODateWithMs))
                 .arg(m_unstored.size())
                 .arg(why, lost);
    return false;
}

QVector<ChangeHistory::Change> ChangeHistory::changes(
    const QJsonValue &before, const QJsonValue &after)
{
    QVector<Change> out;
    collect(QString(), before, after, 0, &out);
    return out;
}

QByteArray ChangeHistory::csv(const QString &record, qint64 maxBytes) const
{
    const QByteArray header = "time,user_level,command,record,key,old,new,client\n";
    QVector<QByteArray> lines;
    qint64 bytes = header.size();
    // Newest first, so that a limit drops the oldest.
    for (auto entry = m_entries.crbegin(); entry != m_entries.crend(); ++entry) {
        if (!record.isEmpty() && entry->record != record)
            continue;
        for (auto change = entry->changes.crbegin(); change != entry->changes.crend(); ++change) {
            const QStringList fields {entry->time.toUTC().toString(Qt::ISODateWithMs),
                QString::number(entry->userLevel), entry->command, entry->record, change->key,
                valueText(change->before), valueText(change->after), entry->client};
            QStringList quoted;
            for (const QString &field : fields)
                quoted.append(csvField(field));
            const QByteArray line = quoted.join(QLatin1Char(',')).toUtf8() + '\n';
            if (maxBytes >= 0 && bytes + line.size() > maxBytes)
                return join(header, lines);
            bytes += line.size();
            lines.append(line);
        }
    }
    return join(header, lines);
}

} // namespace kelcontroller
