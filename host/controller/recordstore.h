#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>

class QFileDevice;

namespace kelcontroller {

// The controller's data file: one JSON object, read once at start and replaced atomically on
// every write, so that a crash or a full disk never leaves half a file behind.
class KELPLUGIN_EXPORT RecordStore
{
public:
    enum class ReadResult { Missing, Loaded, Corrupt };

    // The largest file read at start: far above what a save may write, so that a file an
    // older version let grow is still read; a larger one is a wrong file, not ours.
    static constexpr qint64 maxReadBytes = 128 * 1024 * 1024;

    explicit RecordStore(const QString &filePath);

    QString filePath() const { return m_filePath; }

    // Corrupt: unreadable, not JSON, or not a JSON object; error says which.
    ReadResult read(QJsonObject *document, QString *error) const;
    // Copies the file to <file>.corrupt-<timestamp>, synced, and leaves the file itself in
    // place until a repaired one replaces it; returns the copy's path, or an empty string with
    // error set.
    QString keepAside(QString *error) const;
    bool write(const QJsonObject &document, QString *error) const;
    // The document already serialised.
    bool write(const QByteArray &bytes, QString *error) const;

    // Makes the renames and new files in folder durable (a rename is in the folder's data).
    static bool syncFolder(const QString &folder);
    // What a failed file operation means to an operator: "disk full", "read-only",
    // "permission denied", ... followed by the system's own text and the file. errnum: the
    // errno of the failed call when Qt did not word it (a short write).
    static QString failure(const QFileDevice &file, const QString &what, int errnum = 0);

    // Tests stop a start-up repair between its steps; the hook sees "aside-kept" once the
    // copy is durable and "replaced" once the repaired file is.
    using StepHook = void (*)(const char *step);
    static void setStepHook(StepHook hook);
    static void step(const char *name);

private:
    QString m_filePath;
};

} // namespace kelcontroller
