#include "weldrecords.h"

#include "journalfile.h"
#include "recordschema.h"
#include "storagelimits.h"

#include <QJsonDocument>

namespace kelcontroller {

namespace {

const QString weldsKey = QStringLiteral("welds");
const QString totalsKey = QStringLiteral("totals");
const QString samplesKey = QStringLiteral("samples");
const QString idKey = QStringLiteral("id");
const QString timeFormat = QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz");

QJsonObject emptyTotals()
{
    return QJsonObject {{QStringLiteral("welds"), 0}, {QStringLiteral("laser_on_ms"), 0},
        {QStringLiteral("wire_used_mm"), 0.0}};
}

// The file keeps samples as rows [t, power, frequency, duty, wire, speed]: a fifth of the
// size of objects.
QJsonArray sampleRows(const QVector<MonitorSample> &samples)
{
    QJsonArray rows;
    for (const MonitorSample &s : samples)
        rows.append(QJsonArray {double(s.t), WeldMonitor::rounded(s.power),
            WeldMonitor::rounded(s.frequency), WeldMonitor::rounded(s.duty),
            WeldMonitor::rounded(s.wire), WeldMonitor::rounded(s.speed)});
    return rows;
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject withoutSamples(QJsonObject weld)
{
    weld.remove(samplesKey);
    return weld;
}

bool isTotals(const QJsonValue &value)
{
    bool ok = value.isObject();
    for (const QString &key : emptyTotals().keys())
        ok = ok && RecordSchema::isFiniteNumber(value.toObject().value(key));
    return ok;
}

// A line: a weld, and the totals after it (a weld taken over from the earlier format may
// have none).
bool isWeld(const QJsonObject &w)
{
    return RecordSchema::isInteger(w.value(idKey), 1, 1e9) && w.value(samplesKey).isArray()
        && (!w.contains(totalsKey) || isTotals(w.value(totalsKey)));
}

} // namespace

WeldRecords::WeldRecords(const QString &filePath)
    : m_journal(new JournalFile(filePath, {kept, keptBytes, kept + 10, maxBytes}))
    , m_totals(emptyTotals())
{ }

WeldRecords::~WeldRecords() = default;

QString WeldRecords::filePath() const
{
    return m_journal->filePath();
}

void WeldRecords::block(const QString &why)
{
    m_blocked = why;
}

QString WeldRecords::load()
{
    QStringList problems;
    const QVector<QJsonObject> welds = m_journal->load(
        isWeld,
        [](const QJsonObject &whole, QVector<QJsonObject> *entries) {
            if (!whole.value(weldsKey).isArray() || !isTotals(whole.value(totalsKey)))
                return false;
            // Newest first there; the file's totals belong after the newest.
            const QJsonArray list = whole.value(weldsKey).toArray();
            for (int i = list.size() - 1; i >= 0; --i) {
                QJsonObject w = list.at(i).toObject();
                if (i == 0)
                    w.insert(totalsKey, whole.value(totalsKey));
                entries->append(w);
            }
            return true;
        },
        &problems);
    for (const QJsonObject &w : welds) {
        if (w.contains(totalsKey))
            m_totals = w.value(totalsKey).toObject();
        QJsonObject weld = w;
        weld.remove(totalsKey);
        m_welds.prepend({withoutSamples(weld), compact(weld)});
        m_nextId = std::max(m_nextId, weld.value(idKey).toInt() + 1);
    }
    while (m_welds.size() > kept)
        m_welds.removeLast();
    if (problems.isEmpty())
        return QString();
    return QStringLiteral("The weld records: %1.").arg(problems.join(QStringLiteral("; ")));
}

bool WeldRecords::add(const Weld &weld, QString *error)
{
    const QDateTime end = weld.start.addMSecs(weld.durationMs);
    QJsonObject entry {
        {idKey, m_nextId++},
        {QStringLiteral("start"), weld.start.toString(timeFormat)},
        {QStringLiteral("end"), end.toString(timeFormat)},
        {QStringLiteral("program"), weld.program},
        {QStringLiteral("line"), weld.line},
        {QStringLiteral("data_set"), weld.dataSet},
        {QStringLiteral("match_set"), weld.matchSet},
        {QStringLiteral("duration_ms"), double(weld.durationMs)},
        {QStringLiteral("length_mm"), WeldMonitor::rounded(weld.lengthMm)},
        {QStringLiteral("laser_on_ms"), double(weld.laserOnMs)},
        {QStringLiteral("wire_mm"), WeldMonitor::rounded(weld.wireMm)},
        {QStringLiteral("simulated"), weld.simulated},
        {QStringLiteral("completed"), weld.completed},
        {samplesKey, sampleRows(weld.samples.mid(0, maxSamples))},
    };
    const auto total
        = [this](const char *key) { return m_totals.value(QLatin1String(key)).toDouble(); };
    m_totals = QJsonObject {
        {QStringLiteral("welds"), total("welds") + 1},
        {QStringLiteral("laser_on_ms"), total("laser_on_ms") + double(weld.laserOnMs)},
        {QStringLiteral("wire_used_mm"), WeldMonitor::rounded(total("wire_used_mm") + weld.wireMm)},
    };
    QString cut;
    QByteArray json = compact(entry);
    if (json.size() + compact(m_totals).size() + 16 > maxWeldBytes) {
        cut = StorageLimits::tooLarge(QStringLiteral("weld %1").arg(entry.value(idKey).toInt()),
                  json.size(), maxWeldBytes)
            + QStringLiteral(": stored without its samples");
        entry.insert(samplesKey, QJsonArray());
        json = compact(entry);
    }
    m_welds.prepend({withoutSamples(entry), json});
    while (m_welds.size() > kept)
        m_welds.removeLast();
    if (!m_blocked.isEmpty()) {
        *error = QStringLiteral("weld %1 is not stored: %2")
                     .arg(entry.value(idKey).toInt())
                     .arg(m_blocked);
        return false;
    }
    entry.insert(totalsKey, m_totals);
    int dropped = 0;
    QString why;
    if (!m_journal->append({compact(entry)}, &dropped, &why)) {
        *error
            = QStringLiteral("weld %1 is not stored: %2").arg(entry.value(idKey).toInt()).arg(why);
        return false;
    }
    if (!cut.isEmpty()) {
        *error = cut;
        return false;
    }
    return true;
}

QJsonObject WeldRecords::list() const
{
    QJsonArray summaries;
    for (const Entry &w : m_welds)
        summaries.append(w.summary);
    return QJsonObject {{totalsKey, m_totals}, {weldsKey, summaries}};
}

QJsonValue WeldRecords::weld(int id) const
{
    for (const Entry &w : m_welds) {
        if (w.summary.value(idKey).toInt() != id)
            continue;
        QJsonObject entry = QJsonDocument::fromJson(w.json).object();
        QJsonArray samples;
        for (const QJsonValue &row : entry.value(samplesKey).toArray()) {
            const QJsonArray r = row.toArray();
            MonitorSample s;
            s.t = qint64(r.at(0).toDouble());
            s.power = r.at(1).toDouble();
            s.frequency = r.at(2).toDouble();
            s.duty = r.at(3).toDouble();
            s.wire = r.at(4).toDouble();
            s.speed = r.at(5).toDouble();
            samples.append(WeldMonitor::toJson(s));
        }
        entry.insert(samplesKey, samples);
        return entry;
    }
    return QJsonValue(QJsonValue::Undefined);
}

} // namespace kelcontroller
