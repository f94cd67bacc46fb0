#include "recordstore.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

namespace kelcontroller {

namespace {
// Far above any real configuration; protects start-up from reading a wrong, huge file.
constexpr qint64 maxFileSize = 32 * 1024 * 1024;
} // namespace

RecordStore::RecordStore(const QString &filePath) : m_filePath(filePath)
{ }

RecordStore::ReadResult RecordStore::read(QJsonObject *document, QString *error) const
{
    *document = QJsonObject();
    QFile file(m_filePath);
    if (!file.exists())
        return ReadResult::Missing;
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1 cannot be read: %2").arg(m_filePath, file.errorString());
        return ReadResult::Corrupt;
    }
    if (file.size() > maxFileSize) {
        *error = QStringLiteral("%1 is too large (%2 bytes)").arg(m_filePath).arg(file.size());
        return ReadResult::Corrupt;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1 is not valid JSON (%2 at offset %3)")
                     .arg(m_filePath, parseError.errorString())
                     .arg(parseError.offset);
        return ReadResult::Corrupt;
    }
    if (!doc.isObject()) {
        *error = QStringLiteral("%1 does not hold a JSON object").arg(m_filePath);
        return ReadResult::Corrupt;
    }
    *document = doc.object();
    return ReadResult::Loaded;
}

QString RecordStore::keepAside(QString *error) const
{
    const QString stem = m_filePath + QStringLiteral(".corrupt-")
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString target = stem;
    for (int i = 2; QFileInfo::exists(target); ++i)
        target = stem + QLatin1Char('-') + QString::number(i);
    if (!QFile::rename(m_filePath, target)) {
        *error = QStringLiteral("%1 could not be renamed to %2").arg(m_filePath, target);
        return QString();
    }
    return target;
}

bool RecordStore::write(const QJsonObject &document, QString *error) const
{
    return write(QJsonDocument(document).toJson(QJsonDocument::Indented), error);
}

bool RecordStore::write(const QByteArray &bytes, QString *error) const
{
    const QFileInfo info(m_filePath);
    if (!QDir().mkpath(info.absolutePath())) {
        *error = QStringLiteral("the folder %1 cannot be created").arg(info.absolutePath());
        return false;
    }
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("%1 cannot be written: %2").arg(m_filePath, file.errorString());
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        *error = QStringLiteral("%1 cannot be written: %2").arg(m_filePath, file.errorString());
        return false;
    }
    return true;
}

} // namespace kelcontroller
