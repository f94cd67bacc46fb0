#include "styledescription.h"

#include "logline.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace kellaser {

namespace {

const QString kName = QStringLiteral("name");

bool scopedTo(const QString &selector, const QString &scope)
{
    const QString id = QLatin1Char('#') + scope;
    if (!selector.startsWith(id))
        return false;
    // "#WeldioPageX" is another widget.
    if (selector.size() == id.size())
        return true;
    const QChar next = selector.at(id.size());
    return next == QLatin1Char(' ') || next == QLatin1Char(':') || next == QLatin1Char('[')
        || next == QLatin1Char('>') || next == QLatin1Char('.');
}

} // namespace

const QString &StyleDescription::resourcePath()
{
    static const QString path = QStringLiteral(":/kellaserweld/render/sub_page.json");
    return path;
}

StyleDescription::StyleDescription()
{
    m_tokens.insert(QStringLiteral("$font$"), QStringLiteral("\"Microsoft YaHei UI\""));
    m_tokens.insert(QStringLiteral("$color$"), QStringLiteral("#c8c8c8"));
    m_tokens.insert(QStringLiteral("$border$"), QStringLiteral("1px solid #c8c8c8"));
    m_tokens.insert(QStringLiteral("$image$"),
        QStringLiteral("url(:/kellaserweld/png/arrow/down_arrow_white.png)"));
}

StyleDescription StyleDescription::fromJson(const QByteArray &json, QString *error)
{
    StyleDescription description;
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isArray()) {
        if (error)
            *error = parseError.error != QJsonParseError::NoError
                ? parseError.errorString()
                : QStringLiteral("not a list of rules");
        return description;
    }
    const QJsonArray rules = document.array();
    for (const QJsonValue &value : rules) {
        const QJsonObject object = value.toObject();
        const QString selector = object.value(kName).toString().trimmed();
        if (selector.isEmpty())
            continue;
        Rule rule {selector, {}};
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (it.key() == kName)
                continue;
            if (it.value().isString())
                rule.properties.append({it.key(), it.value().toString()});
            else if (it.value().isDouble())
                rule.properties.append({it.key(), QString::number(it.value().toDouble())});
        }
        description.m_rules.append(rule);
    }
    return description;
}

StyleDescription StyleDescription::fromResource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        logWarning() << "StyleDescription::fromResource cannot open" << path;
        return StyleDescription();
    }
    QString error;
    StyleDescription description = fromJson(file.readAll(), &error);
    if (!error.isEmpty())
        logWarning() << "StyleDescription::fromResource" << path << error;
    return description;
}

void StyleDescription::setToken(const QString &token, const QString &value)
{
    m_tokens.insert(token, value);
}

QString StyleDescription::token(const QString &token) const
{
    return m_tokens.value(token);
}

QString StyleDescription::expand(QString value) const
{
    // One pass: a token's value is never scanned for tokens again.
    QString out;
    int from = 0;
    while (from < value.size()) {
        const int start = value.indexOf(QLatin1Char('$'), from);
        const int end = start < 0 ? -1 : value.indexOf(QLatin1Char('$'), start + 1);
        if (end < 0) {
            out += value.midRef(from);
            break;
        }
        const QString token = value.mid(start, end - start + 1);
        const auto it = m_tokens.constFind(token);
        if (it == m_tokens.constEnd()) {
            out += value.midRef(from, end - from);
            from = end;
            continue;
        }
        out += value.midRef(from, start - from);
        out += it.value();
        from = end + 1;
    }
    return out;
}

QString StyleDescription::styleSheet(const QString &scope) const
{
    QString sheet;
    for (const Rule &rule : m_rules) {
        if (!scope.isEmpty() && !scopedTo(rule.selector, scope))
            continue;
        sheet += rule.selector + QLatin1Char('{');
        for (const auto &property : rule.properties)
            sheet += property.first + QLatin1Char(':') + expand(property.second) + QLatin1Char(';');
        sheet += QLatin1Char('}');
    }
    return sheet;
}

} // namespace kellaser
