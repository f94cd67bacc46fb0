#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace kelcontroller {

// A log kept as JSON Lines, one entry per line: each new entry is appended and synced, so that
// storing one costs the same however many are behind it. When the file passes its high-water
// mark (entries or bytes) it is rewritten atomically with the newest entries down to the
// low-water mark; the newest are never the ones dropped.
class KELPLUGIN_EXPORT JournalFile
{
public:
    struct Limits
    {
        int keepEntries; // low water: what a trim leaves at most
        qint64 keepBytes;
        int maxEntries; // high water: passing either trims
        qint64 maxBytes;
    };
    // Whether a line's object is an entry of this log.
    using Check = std::function<bool(const QJsonObject &)>;
    // A file of the earlier whole-file format, as its entries oldest first; false: not one.
    using Legacy = std::function<bool(const QJsonObject &whole, QVector<QJsonObject> *entries)>;

    JournalFile(const QString &filePath, const Limits &limits);

    QString filePath() const { return m_filePath; }
    const Limits &limits() const { return m_limits; }
    int count() const { return m_lines.size(); }
    qint64 bytes() const { return m_bytes; }

    // Reads the file, oldest entry first. A torn last line (an append that was interrupted)
    // and lines that are no entry are dropped and reported in problems; a file of the earlier
    // format is taken over. The file is then rewritten with what could be read, so that the
    // next append starts on a clean line; one that lost complete entries is copied aside
    // first.
    QVector<QJsonObject> load(const Check &check, const Legacy &legacy, QStringList *problems);
    // Appends entries (compact JSON, no line end), synced. On failure the file is as before
    // and error says why. dropped: how many of the oldest entries a trim removed.
    bool append(const QVector<QByteArray> &entries, int *dropped, QString *error);

private:
    bool rewrite(const QVector<QByteArray> &lines, QString *error);

    QString m_filePath;
    Limits m_limits;
    QVector<QByteArray> m_lines; // as in the file, without line ends
    qint64 m_bytes = 0;          // line ends included
};

} // namespace kelcontroller
