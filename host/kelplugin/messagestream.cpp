#include "messagestream.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <vector>

namespace kelplugin {

namespace {

// The first key that an object of the line repeats, or an empty string. Qt 5.15's parser loses
// the memory of an object or array that a repeated key replaces, so a peer repeating keys
// could grow the controller without bound: such lines are refused before they are parsed.
// Only the nesting and the strings are followed; the parser judges the rest.
QString repeatedKey(const QByteArray &line)
{
    struct Level
    {
        bool object;
        bool expectKey;
        QSet<QByteArray> keys;
    };
    std::vector<Level> levels;
    const int size = line.size();
    for (int i = 0; i < size; ++i) {
        const char c = line.at(i);
        if (c == '{' || c == '[') {
            levels.push_back({c == '{', c == '{', {}});
        } else if (c == '}' || c == ']') {
            if (!levels.empty())
                levels.pop_back();
        } else if (c == ',') {
            if (!levels.empty() && levels.back().object)
                levels.back().expectKey = true;
        } else if (c == '"') {
            const int start = i + 1;
            bool escaped = false;
            for (++i; i < size && line.at(i) != '"'; ++i) {
                if (line.at(i) == '\\') {
                    escaped = true;
                    ++i;
                }
            }
            if (levels.empty() || !levels.back().object || !levels.back().expectKey)
                continue;
            levels.back().expectKey = false;
            QByteArray key = line.mid(start, i - start);
            if (escaped) // the same key may be written with and without escapes
                key = QJsonDocument::fromJson('[' + line.mid(start - 1, i - start + 2) + ']')
                          .array()
                          .at(0)
                          .toString()
                          .toUtf8();
            if (levels.back().keys.contains(key))
                return QString::fromUtf8(key);
            levels.back().keys.insert(key);
        }
    }
    return {};
}

} // namespace

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

MessageStream::Status MessageStream::oversized()
{
    m_error = QStringLiteral("message longer than %1 bytes").arg(m_maxBytes);
    return Status::Oversized;
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
            m_buffer.clear();
            m_taken = m_searched = 0;
            return oversized();
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
    if (line.size() > m_maxBytes)
        return oversized();
    const QString repeated = repeatedKey(line);
    if (!repeated.isEmpty()) {
        m_error
            = QStringLiteral("the key \"%1\" appears twice in one object").arg(repeated.left(64));
        return Status::Malformed;
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
