#include "messagestream.h"

#include <QIODevice>
#include <QJsonDocument>

namespace kelplugin {

MessageStream::MessageStream(QIODevice *device) : m_device(device)
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
    if (m_device->bytesAvailable() > 0)
        m_buffer += m_device->readAll();
    // What was searched before holds no line end: a slow sender of a long line costs a search
    // of what it sends, not of everything it sent on every arrival.
    const int end = m_buffer.indexOf('\n', m_searched);
    if (end < 0) {
        m_searched = m_buffer.size();
        if (m_buffer.size() > maxMessageBytes) {
            m_error = QStringLiteral("message longer than %1 bytes").arg(maxMessageBytes);
            m_buffer.clear();
            m_searched = 0;
            return Status::Oversized;
        }
        return Status::Pending;
    }
    const QByteArray line = m_buffer.left(end);
    m_buffer.remove(0, end + 1);
    m_searched = 0;
    if (line.size() > maxMessageBytes) {
        m_error = QStringLiteral("message longer than %1 bytes").arg(maxMessageBytes);
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
