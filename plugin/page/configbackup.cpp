#include "configbackup.h"

#include "weldparameterpage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <cmath>

namespace {

const QString kFormat = QStringLiteral("format");
const QString kVersion = QStringLiteral("version");
const QString kCreated = QStringLiteral("created");
const QString kController = QStringLiteral("controller");
const QString kRecords = QStringLiteral("records");

bool isNumber(const QJsonValue &value)
{
    return value.isDouble() && std::isfinite(value.toDouble());
}

bool isNumberRows(const QJsonValue &value)
{
    if (!value.isArray())
        return false;
    for (const QJsonValue &row : value.toArray()) {
        if (!row.isArray())
            return false;
        for (const QJsonValue &cell : row.toArray()) {
            if (!isNumber(cell))
                return false;
        }
    }
    return true;
}

QString wrongType(const QString &recordKey, const QString &key)
{
    return ConfigBackup::tr("%1: \"%2\" has the wrong type").arg(recordKey, key);
}

// Flat records and the curve record: the controller's own record names the keys and types.
QString refuseAgainst(
    const QString &recordKey, const QJsonObject &record, const QJsonObject &current)
{
    for (auto it = record.constBegin(); it != record.constEnd(); ++it) {
        const auto reference = current.constFind(it.key());
        if (reference == current.constEnd())
            return ConfigBackup::tr("%1: unknown key \"%2\"").arg(recordKey, it.key());
        const bool sameType = it.value().type() == reference.value().type()
            && (!it.value().isArray() || isNumberRows(it.value()));
        if (!sameType || (it.value().isDouble() && !isNumber(it.value())))
            return wrongType(recordKey, it.key());
    }
    return QString();
}

// Weld data and matching sets: the names the pages list and the fields their editors own.
QString refuseSets(const QString &recordKey, const QJsonObject &record, const QString &prefix,
    int last, const QStringList &keys)
{
    static const QRegularExpression number(QStringLiteral("^[1-9][0-9]?$"));
    for (auto it = record.constBegin(); it != record.constEnd(); ++it) {
        const QString name = it.key();
        const QString digits = name.mid(prefix.size());
        if (!name.startsWith(prefix) || !number.match(digits).hasMatch() || digits.toInt() > last)
            return ConfigBackup::tr("%1: \"%2\" is not a set name").arg(recordKey, name);
        if (!it.value().isObject())
            return wrongType(recordKey, name);
        const QJsonObject set = it.value().toObject();
        for (auto field = set.constBegin(); field != set.constEnd(); ++field) {
            const QString path = name + QLatin1Char('.') + field.key();
            if (!keys.contains(field.key()))
                return ConfigBackup::tr("%1: unknown key \"%2\"").arg(recordKey, path);
            const QJsonValue value = field.value();
            const bool ok = field.key() == QLatin1String("power_data")
                ? isNumberRows(value)
                : (value.isBool() || value.isString() || isNumber(value));
            if (!ok)
                return wrongType(recordKey, path);
        }
    }
    return QString();
}

} // namespace

const QString &ConfigBackup::formatName()
{
    static const QString name = QStringLiteral("kellaserweld-backup");
    return name;
}

const QStringList &ConfigBackup::recordKeys()
{
    static const QStringList keys {QStringLiteral("weld_io_config"),
        QStringLiteral("weld_setting_config"), QStringLiteral("weld_curve_config"),
        QStringLiteral("weld_param_config"), QStringLiteral("weld_param_match")};
    return keys;
}

QByteArray ConfigBackup::write(
    const QJsonObject &records, const QJsonObject &controller, const QDateTime &time)
{
    // QJsonObject keeps its keys sorted, so the file's order never depends on how it was built.
    return QJsonDocument(QJsonObject {{kFormat, formatName()}, {kVersion, version},
                             {kCreated, time.toUTC().toString(Qt::ISODate)},
                             {kController, controller}, {kRecords, records}})
        .toJson(QJsonDocument::Indented);
}

ConfigBackup::Contents ConfigBackup::read(const QByteArray &bytes)
{
    Contents contents;
    if (bytes.trimmed().isEmpty()) {
        contents.error = tr("The file is empty.");
        return contents;
    }
    if (bytes.size() > maxFileSize) {
        contents.error = tr("The file is too large for a backup.");
        return contents;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &parseError);
    if (!doc.isObject()) {
        contents.error = tr("The file is damaged: it is not a JSON object.");
        return contents;
    }
    const QJsonObject root = doc.object();
    if (root.value(kFormat).toString() != formatName()) {
        contents.error = tr("The file is no laser welding backup.");
        return contents;
    }
    const QJsonValue fileVersion = root.value(kVersion);
    if (!isNumber(fileVersion) || fileVersion.toDouble() < 1
        || fileVersion.toDouble() != std::floor(fileVersion.toDouble())) {
        contents.error = tr("The file is damaged: its version is not a number.");
        return contents;
    }
    if (fileVersion.toDouble() > version) {
        contents.error = tr("The backup was made by a newer version (%1); this one reads up to %2.")
                             .arg(fileVersion.toDouble())
                             .arg(version);
        return contents;
    }
    for (auto it = root.constBegin(); it != root.constEnd(); ++it) {
        if (it.key() != kFormat && it.key() != kVersion && it.key() != kCreated
            && it.key() != kController && it.key() != kRecords) {
            contents.error = tr("The file is damaged: unknown entry \"%1\".").arg(it.key());
            return contents;
        }
    }
    const QJsonValue records = root.value(kRecords);
    if (!records.isObject() || !root.value(kController).isObject()
        || !root.value(kCreated).isString()) {
        contents.error = tr("The file is damaged: records, controller or time are missing.");
        return contents;
    }
    const QJsonObject recordObject = records.toObject();
    for (auto it = recordObject.constBegin(); it != recordObject.constEnd(); ++it) {
        if (!recordKeys().contains(it.key())) {
            contents.error = tr("The file is damaged: unknown record \"%1\".").arg(it.key());
            return contents;
        }
        if (!it.value().isObject()) {
            contents.error = tr("The file is damaged: %1 is not an object.").arg(it.key());
            return contents;
        }
    }
    contents.records = recordObject;
    contents.controller = root.value(kController).toObject();
    contents.created = root.value(kCreated).toString();
    return contents;
}

QString ConfigBackup::shapeRefusal(
    const QString &recordKey, const QJsonObject &record, const QJsonObject &current)
{
    if (recordKey == QLatin1String("weld_param_config"))
        return refuseSets(recordKey, record, QStringLiteral("LsData"),
            WeldParameterPage::weldDataSetCount, WeldParameterPage::weldDataKeys());
    if (recordKey == QLatin1String("weld_param_match")) {
        static const QStringList matchKeys {QStringLiteral("PowerDataID"),
            QStringLiteral("power_enable"), QStringLiteral("frequency_enable"),
            QStringLiteral("dutycycle_enable"), QStringLiteral("power_data")};
        return refuseSets(recordKey, record, QStringLiteral("PowerData"),
            WeldParameterPage::matchingSetCount, matchKeys);
    }
    return refuseAgainst(recordKey, record, current);
}
