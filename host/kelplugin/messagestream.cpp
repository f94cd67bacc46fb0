#include "messagestream.h"

#include <QIODevice>
#include <QJsonDocument>

namespace kelplugin {

MessageStream::MessageStream(QIODevice *device, int maxBytes)
    : m_device(device), m_maxBytes(maxBytes)
{ }

QByteArray MessageStream::encode(QJsonObject message)
{
    message.insert(QStringLiteral("v"), version);
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

bool MessageStream::send(QJsonObject message)
{
    const QByteArray line = encode(std::move(message));
    return m_device->write(line) == line.size();
}

MessageStream::Status MessageStream::next(QJsonObject *message)
{
    m_lastLineBytes = 0;
    int end;
    // What was searched before holds no line end: a slow sender of a long line costs a search
    // of what it sends, not of everything it sent on every arrival.
    while ((end = m_buffer.indexOf('\n', m_searched)) < 0) {
        m_searched = m_buffer.size();
        if (m_searched - m_taken > m_maxBytes) {
            m_error = QStringLiteral("message longer than %1 bytes").arg(m_maxBytes);
            m_buffer.clear();
            m_taken = m_searched = 0;
            return Status::Oversized;
        }
        // Lines are handed out from an offset; what they took goes only when more is read.
        m_buffer.remove(0, m_taken);
        m_searched -= m_taken;
        m_taken = 0;
        const qint64 room = qint64(m_maxBytes) + 1 - m_buffer.size();
        const QByteArray more = m_device->read(qMin(room, m_device->bytesAvailable()));
        if (more.isEmpty())
            return Status::Pending;
        m_buffer += more;
    }
    const QByteArray line = m_buffer.mid(m_taken, end - m_taken);
    m_lastLineBytes = line.size() + 1;
    m_taken = m_searched = end + 1;
    if (m_taken == m_buffer.size()) {
        m_buffer.clear();
        m_taken = m_searched = 0;
    }
    if (line.size() > m_maxBytes) {
        m_error = QStringLiteral("message longer than %1 bytes").arg(m_maxBytes);
        return Status::Oversized;
    }
    QJsonParseError parse;
    const QJsonDocument doc = QJsonDocument::fromJson(line, &parse);
    if (parse.error != QJsonParseError::NoError || !doc.isObject()) {
        m_error = parse.error != QJsonParseError::NoError
            ? QStringLiteral("not JSON: %1 at byte %2").arg(parse.errorString()).arg(parse.offset)
            : QStringLiteral("not a JSON object");
        return Status::Malformed;
    }
    *message = doc.object();
    const QJsonValue v = message->value(QLatin1String("v"));
    if (v.toInt(-1) != version || v.toDouble() != version) {
        m_error = v.isUndefined() ? QStringLiteral("no protocol version")
                                  : QStringLiteral("protocol version %1 is not %2")
                                        .arg(v.toVariant().toString())
                                        .arg(version);
        return Status::BadVersion;
    }
    return Status::Message;
}

} // namespace kelplugin
