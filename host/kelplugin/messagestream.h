#pragma once

#include "kelplugin_global.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

class QIODevice;

namespace kelplugin {

// The framing of the controller protocol on one connection: each message is one JSON object
// in compact form on a line of its own (UTF-8, ended by "\n"). Both ends use it, so what one
// writes the other reads with the same rules and limits.
class KELPLUGIN_EXPORT MessageStream
{
public:
    // The protocol version every message carries as "v".
    static constexpr int version = 1;
    // Larger than any record or weld list; a longer line is a broken or hostile peer.
    static constexpr int maxMessageBytes = 16 * 1024 * 1024;

    enum class Status {
        Pending,    // no complete message yet
        Message,    // one taken
        Malformed,  // a line that is not a JSON object
        Oversized,  // a line longer than maxMessageBytes
        BadVersion, // an object without this protocol's version
    };

    explicit MessageStream(QIODevice *device);

    // Reads what the device has and takes the next message, if there is a complete one.
    Status next(QJsonObject *message);
    // Writes one message, adding the version.
    bool send(QJsonObject message);
    // What next() found wrong, for the error reply and the log.
    QString error() const { return m_error; }

    static QByteArray encode(QJsonObject message);

private:
    QIODevice *m_device;
    QByteArray m_buffer;
    int m_searched = 0; // the start of m_buffer known to hold no line end
    QString m_error;
};

} // namespace kelplugin
