#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>

namespace kelcontroller {

// The controller's data file: one JSON object, read once at start and replaced atomically on
// every write, so that a crash or a full disk never leaves half a file behind.
class KELPLUGIN_EXPORT RecordStore
{
public:
    enum class ReadResult { Missing, Loaded, Corrupt };

    explicit RecordStore(const QString &filePath);

    QString filePath() const { return m_filePath; }

    // Corrupt: unreadable, not JSON, or not a JSON object; error says which.
    ReadResult read(QJsonObject *document, QString *error) const;
    // Moves the file to <file>.corrupt-<timestamp> so that nothing overwrites it; returns the
    // new path, or an empty string with error set.
    QString keepAside(QString *error) const;
    bool write(const QJsonObject &document, QString *error) const;
    // The document already serialised.
    bool write(const QByteArray &bytes, QString *error) const;

private:
    QString m_filePath;
};

} // namespace kelcontroller
