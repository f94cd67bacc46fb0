#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

class QByteArray;

namespace kellaser {

// The plug-in's common look, kept as data in :/kellaserweld/render/sub_page.json: a list of
// rules {"name": selector, property: value, ...} whose values may use the tokens $font$,
// $color$, $image$ and $border$. A page asks for the rules scoped to its object name
// ("#WeldioPage QLabel") and gets them as a style sheet with the tokens filled in.
class StyleDescription
{
public:
    static const QString &resourcePath();

    StyleDescription();
    // Entries that are not objects with a string "name", and values that are not strings or
    // numbers, are skipped: a damaged description costs looks, never a crash.
    static StyleDescription fromJson(const QByteArray &json, QString *error = nullptr);
    static StyleDescription fromResource(const QString &path = resourcePath());

    // Replaces a token's value, the token given with its dollar signs ("$font$").
    void setToken(const QString &token, const QString &value);
    QString token(const QString &token) const;

    int ruleCount() const { return m_rules.size(); }
    // Rules whose selector starts with "#" + scope, in description order; all rules for an
    // empty scope.
    QString styleSheet(const QString &scope = QString()) const;

private:
    struct Rule
    {
        QString selector;
        QList<QPair<QString, QString>> properties;
    };

    QString expand(QString value) const;

    QList<Rule> m_rules;
    QHash<QString, QString> m_tokens;
};

} // namespace kellaser
