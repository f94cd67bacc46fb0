#include "recordstore.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace kelcontroller {

namespace {
RecordStore::StepHook s_stepHook = nullptr;
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
        *error = failure(file, QStringLiteral("%1 cannot be read").arg(m_filePath));
        return ReadResult::Corrupt;
    }
    if (file.size() > maxReadBytes) {
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
    // A copy, not a rename: until the repaired file replaces it, the damaged file stays the
    // data file, so a kill in between never leaves the folder without one.
    QFile original(m_filePath);
    if (!original.open(QIODevice::ReadOnly)) {
        *error = failure(original, QStringLiteral("%1 cannot be read").arg(m_filePath));
        return QString();
    }
    const QByteArray bytes = original.readAll();
    original.close();
    if (!RecordStore(target).write(bytes, error))
        return QString();
    step("aside-kept");
    return target;
}

bool RecordStore::write(const QJsonObject &document, QString *error) const
{
    return write(QJsonDocument(document).toJson(QJsonDocument::Indented), error);
}

bool RecordStore::write(const QByteArray &bytes, QString *error) const
{
    const QFileInfo info(m_filePath);
    // The folder is made when it is taken; one that went away (a medium unmounted, removed by
    // hand) is not made again, which would write to another disk unnoticed.
    if (!info.absoluteDir().exists()) {
        *error = QStringLiteral("folder missing: %1 cannot be written, the folder %2 no longer "
                                "exists")
                     .arg(m_filePath, info.absolutePath());
        return false;
    }
    QSaveFile file(m_filePath);
    // Unbuffered: a buffered write that fails in commit()'s flush is not seen by QSaveFile,
    // which then puts the cut-off file in place of the good one and reports success.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        *error = failure(file, QStringLiteral("%1 cannot be written").arg(m_filePath));
        return false;
    }
    errno = 0;
    if (file.write(bytes) != bytes.size()) {
        // Qt words a short write as no error at all; errno knows.
        *error = failure(file, QStringLiteral("%1 cannot be written").arg(m_filePath), errno);
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        *error = failure(file, QStringLiteral("%1 cannot be written").arg(m_filePath));
        return false;
    }
    // QSaveFile syncs the file before its rename; the rename itself lives in the folder.
    syncFolder(info.absolutePath());
    return true;
}

bool RecordStore::syncFolder(const QString &folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

QString RecordStore::failure(const QFileDevice &file, const QString &what, int errnum)
{
    // Qt words the error with the system's text for errno; find which one it was.
    struct Known
    {
        int code;
        const char *words;
    };
    static const Known known[] = {
        {ENOSPC, "disk full"},
        {EDQUOT, "disk full (quota reached)"},
        {EFBIG, "disk full (file size limit reached)"},
        {EROFS, "read-only folder"},
        {EACCES, "permission denied"},
        {EPERM, "permission denied"},
        {ENOENT, "folder missing"},
        {EIO, "disk error"},
    };
    const QString system
        = errnum != 0 ? QString::fromLocal8Bit(std::strerror(errnum)) : file.errorString();
    for (const Known &k : known) {
        if (errnum == k.code
            || system.contains(QString::fromLocal8Bit(std::strerror(k.code)), Qt::CaseInsensitive))
            return QStringLiteral("%1: %2 (%3)").arg(QLatin1String(k.words), what, system);
    }
    return QStringLiteral("%1 (%2)").arg(what, system);
}

void RecordStore::setStepHook(StepHook hook)
{
    s_stepHook = hook;
}

void RecordStore::step(const char *name)
{
    if (s_stepHook)
        s_stepHook(name);
}

} // namespace kelcontroller
