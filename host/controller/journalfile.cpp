#include "journalfile.h"

#include "recordstore.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cerrno>
#include <unistd.h>

namespace kelcontroller {

JournalFile::JournalFile(const QString &filePath, const Limits &limits)
    : m_filePath(filePath), m_limits(limits)
{ }

QVector<QJsonObject> JournalFile::load(
    const Check &check, const Legacy &legacy, QStringList *problems)
{
    m_lines.clear();
    m_bytes = 0;
    QFile file(m_filePath);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        problems->append(
            RecordStore::failure(file, QStringLiteral("%1 cannot be read").arg(m_filePath)));
        return {};
    }
    if (file.size() > RecordStore::maxReadBytes) {
        problems->append(
            QStringLiteral("%1 is too large (%2 bytes)").arg(m_filePath).arg(file.size()));
        return {};
    }
    const QByteArray bytes = file.readAll();
    file.close();

    QVector<QJsonObject> entries;
    bool rewriteNeeded = false;
    bool damaged = false; // entries lost that were once complete: the file is kept aside
    QJsonParseError wholeError;
    const QJsonDocument whole = QJsonDocument::fromJson(bytes, &wholeError);
    QVector<QJsonObject> legacyEntries;
    if (wholeError.error == QJsonParseError::NoError && whole.isObject()
        && legacy(whole.object(), &legacyEntries)) {
        rewriteNeeded = true;
        int skipped = 0;
        for (const QJsonObject &entry : qAsConst(legacyEntries)) {
            if (check(entry))
                entries.append(entry);
            else
                ++skipped;
        }
        damaged = skipped > 0;
        if (damaged)
            problems->append(QStringLiteral("%1 is damaged: %2 of its %3 entries could not be "
                                            "read and were dropped")
                                 .arg(m_filePath)
                                 .arg(skipped)
                                 .arg(legacyEntries.size()));
    } else {
        QStringList bad;
        int start = 0;
        int lineNumber = 0;
        while (start < bytes.size()) {
            ++lineNumber;
            int end = bytes.indexOf('\n', start);
            const bool last = end < 0;
            if (last)
                end = bytes.size();
            const QByteArray line = bytes.mid(start, end - start).trimmed();
            start = end + 1;
            if (line.isEmpty())
                continue;
            QJsonParseError error;
            const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
            if (error.error == QJsonParseError::NoError && doc.isObject() && check(doc.object())) {
                entries.append(doc.object());
                rewriteNeeded = rewriteNeeded || last;
                continue;
            }
            rewriteNeeded = true;
            if (last) {
                // An append a kill or a power cut interrupted: never complete, so never
                // acknowledged; told, but nothing to inspect.
                problems->append(QStringLiteral("%1 ends in an entry whose writing was "
                                                "interrupted (line %2, %3 bytes); it is dropped")
                                     .arg(m_filePath)
                                     .arg(lineNumber)
                                     .arg(line.size()));
            } else {
                bad.append(QStringLiteral("line %1 is no entry").arg(lineNumber));
            }
        }
        damaged = !bad.isEmpty();
        if (damaged)
            problems->append(
                QStringLiteral("%1 is damaged: %2; %3 dropped")
                    .arg(m_filePath,
                        bad.mid(0, 5).join(QStringLiteral(", "))
                            + (bad.size() > 5 ? QStringLiteral(", ...") : QString()),
                        bad.size() == 1 ? QStringLiteral("1 entry")
                                        : QStringLiteral("%1 entries").arg(bad.size())));
    }

    for (const QJsonObject &entry : qAsConst(entries)) {
        m_lines.append(QJsonDocument(entry).toJson(QJsonDocument::Compact));
        m_bytes += m_lines.constLast().size() + 1;
    }
    if (!rewriteNeeded)
        return entries;
    // A damaged original stays for inspection; the log goes on from a clean file.
    QString error;
    if (damaged) {
        const QString aside = RecordStore(m_filePath).keepAside(&error);
        if (aside.isEmpty()) {
            problems->append(error);
            return entries;
        }
        problems->append(QStringLiteral("the file as it was is kept as %1").arg(aside));
    }
    if (!rewrite(m_lines, &error))
        problems->append(error);
    return entries;
}

bool JournalFile::append(const QVector<QByteArray> &entries, int *dropped, QString *error)
{
    *dropped = 0;
    qint64 added = 0;
    for (const QByteArray &line : entries)
        added += line.size() + 1;
    if (m_lines.size() + entries.size() > m_limits.maxEntries
        || m_bytes + added > m_limits.maxBytes) {
        QVector<QByteArray> kept = m_lines + entries;
        qint64 keptBytes = m_bytes + added;
        int drop = 0;
        while (drop < m_lines.size()
            && (kept.size() - drop > m_limits.keepEntries || keptBytes > m_limits.keepBytes)) {
            keptBytes -= kept.at(drop).size() + 1;
            ++drop;
        }
        kept.remove(0, drop);
        if (!rewrite(kept, error))
            return false;
        m_lines = kept;
        m_bytes = keptBytes;
        *dropped = drop;
        return true;
    }

    QFile file(m_filePath);
    const bool existed = file.exists();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        *error = RecordStore::failure(file, QStringLiteral("%1 cannot be written").arg(m_filePath));
        return false;
    }
    const qint64 before = file.size();
    QByteArray bytes;
    bytes.reserve(int(added));
    for (const QByteArray &line : entries)
        bytes += line + '\n';
    errno = 0;
    if (file.write(bytes) != bytes.size() || ::fdatasync(file.handle()) != 0) {
        *error = RecordStore::failure(
            file, QStringLiteral("%1 cannot be written").arg(m_filePath), errno);
        // A part of a line would glue the next entry to it.
        file.resize(before);
        return false;
    }
    file.close();
    if (!existed)
        RecordStore::syncFolder(QFileInfo(m_filePath).absolutePath());
    m_lines += entries;
    m_bytes += added;
    return true;
}

bool JournalFile::rewrite(const QVector<QByteArray> &lines, QString *error)
{
    QByteArray bytes;
    for (const QByteArray &line : lines)
        bytes += line + '\n';
    return RecordStore(m_filePath).write(bytes, error);
}

} // namespace kelcontroller
