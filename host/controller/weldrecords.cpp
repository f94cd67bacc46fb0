#include "weldrecords.h"

#include "recordschema.h"
#include "recordstore.h"

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

bool isWeld(const QJsonValue &value)
{
    const QJsonObject w = value.toObject();
    return value.isObject() && RecordSchema::isInteger(w.value(idKey), 1, 1e9)
        && w.value(samplesKey).isArray();
}

} // namespace

WeldRecords::WeldRecords(const QString &filePath)
    : m_store(new RecordStore(filePath)), m_totals(emptyTotals())
{ }

WeldRecords::~WeldRecords() = default;

QString WeldRecords::filePath() const
{
    return m_store->filePath();
}

QString WeldRecords::load()
{
    QJsonObject doc;
    QString error;
    const RecordStore::ReadResult result = m_store->read(&doc, &error);
    if (result == RecordStore::ReadResult::Missing)
        return QString();
    if (result == RecordStore::ReadResult::Loaded) {
        const QJsonArray welds = doc.value(weldsKey).toArray();
        const QJsonObject totals = doc.value(totalsKey).toObject();
        bool ok = doc.value(weldsKey).isArray() && doc.value(totalsKey).isObject();
        for (const QString &key : emptyTotals().keys())
            ok = ok && RecordSchema::isFiniteNumber(totals.value(key));
        for (const QJsonValue &w : welds)
            ok = ok && isWeld(w);
        if (ok) {
            m_totals = totals;
            for (const QJsonValue &w : welds) {
                m_welds.append({withoutSamples(w.toObject()), compact(w.toObject())});
                m_nextId = std::max(m_nextId, w.toObject().value(idKey).toInt() + 1);
            }
            while (m_welds.size() > kept)
                m_welds.removeLast();
            return QString();
        }
        error = QStringLiteral("%1 does not hold weld records").arg(m_store->filePath());
    }
    QString asideError;
    const QString aside = m_store->keepAside(&asideError);
    if (aside.isEmpty()) {
        m_blocked = true;
        return QStringLiteral("The weld records are damaged: %1. %2; new welds are not saved.")
            .arg(error, asideError);
    }
    return QStringLiteral("The weld records are damaged: %1. They were kept as %2.")
        .arg(error, aside);
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
    m_welds.prepend({withoutSamples(entry), compact(entry)});
    while (m_welds.size() > kept)
        m_welds.removeLast();
    const auto total
        = [this](const char *key) { return m_totals.value(QLatin1String(key)).toDouble(); };
    m_totals = QJsonObject {
        {QStringLiteral("welds"), total("welds") + 1},
        {QStringLiteral("laser_on_ms"), total("laser_on_ms") + double(weld.laserOnMs)},
        {QStringLiteral("wire_used_mm"), WeldMonitor::rounded(total("wire_used_mm") + weld.wireMm)},
    };
    if (m_blocked) {
        *error = QStringLiteral("%1 is damaged and kept for inspection").arg(filePath());
        return false;
    }
    return write(error);
}

bool WeldRecords::write(QString *error) const
{
    QByteArray bytes = "{\"" + totalsKey.toLatin1() + "\":" + compact(m_totals) + ",\""
        + weldsKey.toLatin1() + "\":[";
    for (int i = 0; i < m_welds.size(); ++i) {
        if (i > 0)
            bytes += ",\n";
        bytes += m_welds.at(i).json;
    }
    bytes += "]}\n";
    return m_store->write(bytes, error);
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
