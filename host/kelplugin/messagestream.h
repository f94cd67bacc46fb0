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
    // Larger than any record or weld list; a longer line is a broken or hostile peer. A
    // stream that expects less (requests, a first message) sets its own limit.
    static constexpr int maxMessageBytes = 16 * 1024 * 1024;

    enum class Status {
        Pending,    // no complete message yet
        Message,    // one taken
        Malformed,  // a line that is not a JSON object
        Oversized,  // a line longer than the limit
        BadVersion, // an object without this protocol's version
    };

    explicit MessageStream(QIODevice *device, int maxBytes = maxMessageBytes);

    // Takes the next message, if there is a complete one. Reads from the device only as far as
    // the next line end, and never more than the limit beyond what is taken: bytes a peer sends
    // faster than they are taken wait in the device, not here.
    Status next(QJsonObject *message);
    // The longest line taken; from the next call on.
    void setMaxMessageBytes(int maxBytes) { m_maxBytes = maxBytes; }
    // The bytes of the line the last call took, its end included.
    int lastLineBytes() const { return m_lastLineBytes; }
    // Writes one message, adding the version.
    bool send(QJsonObject message);
    // What next() found wrong, for the error reply and the log.
    QString error() const { return m_error; }

    static QByteArray encode(QJsonObject message);

private:
    Status oversized();

    QIODevice *m_device;
    int m_maxBytes;
    QByteArray m_buffer;
    int m_taken = 0;    // the start of m_buffer already handed out as lines
    int m_searched = 0; // m_buffer up to here is known to hold no line end
    int m_lastLineBytes = 0;
    QString m_error;
};

} // namespace kelplugin
