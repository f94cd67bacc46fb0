#include "programline.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>

namespace kelcontroller {

namespace {

struct Syntax
{
    const char *name;
    ProgramLine::Kind kind;
    int parameters;
};

const Syntax syntaxes[] = {
    {"LaserOn", ProgramLine::Kind::LaserOn, 1},
    {"LaserOff", ProgramLine::Kind::LaserOff, 0},
    {"LsParaSet", ProgramLine::Kind::ParaSet, 1},
    {"LsWireFwd", ProgramLine::Kind::WireFwd, 2},
    {"LsWireBwd", ProgramLine::Kind::WireBwd, 2},
    {"LsParaMatch", ProgramLine::Kind::ParaMatch, 1},
    {"LsParaMatchOff", ProgramLine::Kind::ParaMatchOff, 0},
    {"LsMoveL", ProgramLine::Kind::MoveL, 5},
    {"LsMoveC", ProgramLine::Kind::MoveC, 6},
    {"LsMoveCF", ProgramLine::Kind::MoveCF, 6},
};

const QRegularExpression &identifier()
{
    static const QRegularExpression re(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return re;
}

// Splits at commas outside parentheses; false when the parentheses do not balance.
bool splitParameters(const QString &text, QStringList *parts)
{
    int depth = 0;
    QString piece;
    for (const QChar c : text) {
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')') && --depth < 0)
            return false;
        if (c == QLatin1Char(',') && depth == 0) {
            parts->append(piece.trimmed());
            piece.clear();
        } else {
            piece.append(c);
        }
    }
    if (depth != 0)
        return false;
    if (!piece.trimmed().isEmpty() || !parts->isEmpty())
        parts->append(piece.trimmed());
    return true;
}

bool finiteNumber(const QString &text, double *value)
{
    bool ok = false;
    *value = text.toDouble(&ok);
    return ok && std::isfinite(*value);
}

bool quoted(const QString &text, QString *name, QString *error)
{
    if (text.size() < 3 || !text.startsWith(QLatin1Char('"')) || !text.endsWith(QLatin1Char('"'))
        || text.count(QLatin1Char('"')) != 2) {
        *error = QStringLiteral("%1 is not a quoted set name.").arg(text);
        return false;
    }
    *name = text.mid(1, text.size() - 2);
    return true;
}

bool point(const QString &text, PointRef *p, QString *error)
{
    *p = PointRef();
    if (identifier().match(text).hasMatch()) {
        p->name = text;
        return true;
    }
    static const QRegularExpression shifted(QStringLiteral("^(Offs|RelTool)\\s*\\((.*)\\)$"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch m = shifted.match(text);
    QStringList parts;
    if (m.hasMatch() && splitParameters(m.captured(2), &parts) && parts.size() == 4
        && identifier().match(parts.at(0)).hasMatch()) {
        double xyz[3];
        bool ok = true;
        for (int i = 0; i < 3; ++i)
            ok = ok && finiteNumber(parts.at(i + 1), &xyz[i]);
        if (ok) {
            p->name = parts.at(0);
            p->offset = QVector3D(float(xyz[0]), float(xyz[1]), float(xyz[2]));
            p->relTool = m.captured(1) == QLatin1String("RelTool");
            return true;
        }
    }
    *error = QStringLiteral("%1 is not a point.").arg(text);
    return false;
}

bool speedData(const QString &text, double *speed, QString *error)
{
    static const QRegularExpression re(QStringLiteral("^v(\\d+(\\.\\d+)?)$"));
    const QRegularExpressionMatch m = re.match(text);
    // Faster than any robot arm: a typing error, not a speed.
    if (m.hasMatch()) {
        *speed = m.captured(1).toDouble();
        if (*speed > 0.0 && *speed <= 7000.0)
            return true;
        *error = QStringLiteral("the speed %1 is outside v1..v7000.").arg(text);
        return false;
    }
    *error = QStringLiteral("%1 is not a speed.").arg(text);
    return false;
}

bool zoneData(const QString &text, double *zone, QString *error)
{
    static const QRegularExpression re(QStringLiteral("^z(\\d{1,4})$"));
    if (text == QLatin1String("fine")) {
        *zone = -1.0;
        return true;
    }
    const QRegularExpressionMatch m = re.match(text);
    if (m.hasMatch()) {
        *zone = m.captured(1).toDouble();
        return true;
    }
    *error = QStringLiteral("%1 is not a zone.").arg(text);
    return false;
}

bool wireParameters(const QStringList &p, ProgramLine *line, QString *error)
{
    double speed = 0.0;
    double time = 0.0;
    if (!finiteNumber(p.at(0), &speed) || speed < 1.0 || speed > 100.0) {
        *error = QStringLiteral("the wire speed %1 is outside 1..100 mm/s.").arg(p.at(0));
        return false;
    }
    if (!finiteNumber(p.at(1), &time) || time < 1.0 || time > 10000.0 || time != std::floor(time)) {
        *error = QStringLiteral("the wire time %1 is outside 1..10000 ms.").arg(p.at(1));
        return false;
    }
    line->wireSpeed = speed;
    line->wireTime = int(time);
    return true;
}

bool motionParameters(const QStringList &p, ProgramLine *line, QString *error)
{
    const int first = line->isCircle() ? 1 : 0;
    if (line->isCircle() && !point(p.at(0), &line->cirPoint, error))
        return false;
    line->tool = p.at(first + 3);
    line->wobj = p.at(first + 4);
    return point(p.at(first), &line->toPoint, error)
        && speedData(p.at(first + 1), &line->speed, error)
        && zoneData(p.at(first + 2), &line->zone, error);
}

} // namespace

bool ProgramLine::isMotion() const
{
    return kind == Kind::MoveL || isCircle();
}

bool ProgramLine::passesThrough() const
{
    return kind == Kind::ParaSet || kind == Kind::ParaMatch || kind == Kind::ParaMatchOff
        || kind == Kind::LaserOff || kind == Kind::Skip;
}

bool ProgramLine::parse(const QString &text, ProgramLine *line, QString *error)
{
    *line = ProgramLine();
    QString code = text;
    const int comment = code.indexOf(QLatin1String("//"));
    if (comment >= 0)
        code.truncate(comment);
    code = code.trimmed();
    if (code.isEmpty())
        return true;
    if (code.endsWith(QLatin1Char(';')))
        code = code.left(code.size() - 1).trimmed();

    int nameEnd = 0;
    while (nameEnd < code.size()
        && (code.at(nameEnd).isLetterOrNumber() || code.at(nameEnd) == QLatin1Char('_')))
        ++nameEnd;
    const QString name = code.left(nameEnd);
    const Syntax *syntax = nullptr;
    for (const Syntax &s : syntaxes)
        if (name == QLatin1String(s.name))
            syntax = &s;
    if (!syntax) {
        *error = name.isEmpty() ? QStringLiteral("the line is no instruction.")
                                : QStringLiteral("unknown instruction %1.").arg(name);
        return false;
    }
    const QString rest = code.mid(nameEnd).trimmed();
    QStringList parameters;
    if (!rest.isEmpty()
        && (!rest.startsWith(QLatin1Char('(')) || !rest.endsWith(QLatin1Char(')'))
            || !splitParameters(rest.mid(1, rest.size() - 2), &parameters))) {
        *error = QStringLiteral("%1 is malformed.").arg(name);
        return false;
    }
    if (parameters.size() != syntax->parameters || parameters.contains(QString())) {
        *error = QStringLiteral("%1 takes %2 parameters.").arg(name).arg(syntax->parameters);
        return false;
    }
    line->kind = syntax->kind;
    switch (line->kind) {
    case Kind::LaserOn:
    case Kind::ParaSet:
    case Kind::ParaMatch:
        return quoted(parameters.at(0), &line->setName, error);
    case Kind::WireFwd:
    case Kind::WireBwd:
        return wireParameters(parameters, line, error);
    case Kind::MoveL:
    case Kind::MoveC:
    case Kind::MoveCF:
        return motionParameters(parameters, line, error);
    default:
        return true;
    }
}

} // namespace kelcontroller
