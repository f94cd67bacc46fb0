#include "recorddiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>

namespace kellaser {

namespace {

// Deeper than any record; a hostile file nested further is compared as a whole below it.
constexpr int kMaxDepth = 16;

void walk(const QString &path, const QJsonValue &before, const QJsonValue &after, int depth,
    QVector<RecordDiff::Change> *changes)
{
    if (before == after)
        return;
    if (before.isObject() && after.isObject() && depth < kMaxDepth) {
        const QJsonObject a = before.toObject();
        const QJsonObject b = after.toObject();
        QStringList keys = a.keys() + b.keys();
        std::sort(keys.begin(), keys.end());
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
        const QString prefix = path.isEmpty() ? QString() : path + QLatin1Char('.');
        for (const QString &key : qAsConst(keys))
            walk(prefix + key, a.value(key), b.value(key), depth + 1, changes);
        return;
    }
    RecordDiff::Kind kind = RecordDiff::Kind::Changed;
    if (before.isUndefined())
        kind = RecordDiff::Kind::Added;
    else if (after.isUndefined())
        kind = RecordDiff::Kind::Removed;
    changes->append({kind, path, before, after});
}

} // namespace

QVector<RecordDiff::Change> RecordDiff::diff(const QJsonValue &before, const QJsonValue &after)
{
    QVector<Change> changes;
    walk(QString(), before, after, 0, &changes);
    return changes;
}

QString RecordDiff::text(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
        return QString();
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    default:
        // A scalar is written as the one element of an array, without the brackets.
        const QByteArray json = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
        return QString::fromUtf8(json.mid(1, json.size() - 2));
    }
}

} // namespace kellaser
