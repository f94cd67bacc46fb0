#include "changehistory.h"

#include "recordstore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kelcontroller {

namespace {

const QString kEntries = QStringLiteral("entries");

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
    : m_store(new RecordStore(filePath)), m_limit(std::max(1, limit))
{ }

ChangeHistory::~ChangeHistory() = default;

QString ChangeHistory::load()
{
    m_entries.clear();
    QJsonObject doc;
    QString error;
    const RecordStore::ReadResult result = m_store->read(&doc, &error);
    if (result == RecordStore::ReadResult::Missing)
        return QString();
    QVector<Entry> entries;
    bool ok = result == RecordStore::ReadResult::Loaded && doc.value(kEntries).isArray();
    if (ok) {
        for (const QJsonValue &value : doc.value(kEntries).toArray()) {
            Entry entry;
            ok = ok && fromJson(value, &entry);
            entries.append(entry);
        }
    }
    if (ok) {
        m_entries = entries.mid(std::max(0, entries.size() - m_limit));
        return QString();
    }
    QString asideError;
    const QString aside = m_store->keepAside(&asideError);
    return aside.isEmpty()
        ? QStringLiteral("The change history is damaged: %1").arg(asideError)
        : QStringLiteral("The change history is damaged; it was kept as %1.").arg(aside);
}

bool ChangeHistory::add(const Entry &entry, QString *error)
{
    if (entry.changes.isEmpty())
        return true;
    m_entries.append(entry);
    if (m_entries.size() > m_limit)
        m_entries.remove(0, m_entries.size() - m_limit);
    QJsonArray entries;
    for (const Entry &e : qAsConst(m_entries))
        entries.append(toJson(e));
    return m_store->write(QJsonObject {{kEntries, entries}}, error);
}

QVector<ChangeHistory::Change> ChangeHistory::changes(
    const QJsonValue &before, const QJsonValue &after)
{
    QVector<Change> out;
    collect(QString(), before, after, 0, &out);
    return out;
}

QByteArray ChangeHistory::csv(const QString &record) const
{
    QString text = QStringLiteral("time,user_level,command,record,key,old,new,client\n");
    for (const Entry &entry : m_entries) {
        if (!record.isEmpty() && entry.record != record)
            continue;
        for (const Change &change : entry.changes) {
            const QStringList fields {entry.time.toUTC().toString(Qt::ISODateWithMs),
                QString::number(entry.userLevel), entry.command, entry.record, change.key,
                valueText(change.before), valueText(change.after), entry.client};
            QStringList quoted;
            for (const QString &field : fields)
                quoted.append(csvField(field));
            text += quoted.join(QLatin1Char(',')) + QLatin1Char('\n');
        }
    }
    return text.toUtf8();
}

} // namespace kelcontroller
