#include "skeletonform.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>

#include <limits>

namespace {

const QString kCombo = QStringLiteral("cmb");
const QString kSpin = QStringLiteral("spn");

// Blanks around the skeleton's punctuation are free: the line may have more, fewer or none.
QString literalPattern(const QString &literal)
{
    QString pattern;
    for (int i = 0; i < literal.size(); ++i) {
        const QChar c = literal.at(i);
        // Any run of blanks, none included: "a b" must still match its own text.
        if (c.isSpace()) {
            pattern += QStringLiteral("\\s*+");
            continue;
        }
        // A character beyond the 16-bit range is two code units; escaped apart they make an
        // invalid pattern that matches nothing.
        const int units
            = c.isHighSurrogate() && i + 1 < literal.size() && literal.at(i + 1).isLowSurrogate()
            ? 2
            : 1;
        const QString escaped = QRegularExpression::escape(literal.mid(i, units));
        i += units - 1;
        if (c.isLetterOrNumber() || c == QLatin1Char('_'))
            pattern += escaped;
        else
            pattern += QStringLiteral("\\s*+") + escaped + QStringLiteral("\\s*+");
    }
    return pattern;
}

} // namespace

SkeletonForm::SkeletonForm(const QString &skeleton, QWidget *parent)
    : QWidget(parent), m_pieces(parse(skeleton))
{
    auto *layout = new QFormLayout(this);
    for (const Piece &piece : qAsConst(m_pieces)) {
        if (!piece.isField)
            continue;
        const Field &field = piece.field;
        QWidget *editor = nullptr;
        if (field.kind == kCombo) {
            auto *combo = new QComboBox(this);
            combo->addItems(field.values.split(QLatin1Char('/'), Qt::SkipEmptyParts));
            editor = combo;
        } else if (field.kind == kSpin) {
            auto *spin = new QSpinBox(this);
            int minimum = 0;
            int maximum = 0;
            spinBounds(field.values, minimum, maximum);
            spin->setRange(minimum, maximum);
            editor = spin;
        } else {
            editor = new QLineEdit(this);
        }
        editor->setObjectName(QStringLiteral("field_%1").arg(m_editors.size()));
        layout->addRow(new QLabel(field.caption, this), editor);
        m_editors.append(editor);
    }
}

SkeletonForm::~SkeletonForm() = default;

QList<SkeletonForm::Piece> SkeletonForm::parse(const QString &skeleton)
{
    QList<Piece> pieces;
    QString literal;
    int pos = 0;
    while (pos < skeleton.size()) {
        const int open = skeleton.indexOf(QLatin1Char('$'), pos);
        const int close = open < 0 ? -1 : skeleton.indexOf(QLatin1Char('$'), open + 1);
        if (close < 0) {
            literal += skeleton.mid(pos);
            break;
        }
        const QStringList parts = skeleton.mid(open + 1, close - open - 1).split(QLatin1Char('#'));
        literal += skeleton.mid(pos, open - pos);
        if (parts.size() < 3 || parts.size() > 4) {
            // Not a field: keep the "$" as text and look for a field after it.
            literal += QLatin1Char('$');
            pos = open + 1;
            continue;
        }
        if (!literal.isEmpty()) {
            Piece text;
            text.literal = literal;
            pieces.append(text);
            literal.clear();
        }
        Piece field;
        field.isField = true;
        field.field = {parts.at(0), parts.at(1), parts.at(2), parts.value(3)};
        pieces.append(field);
        pos = close + 1;
    }
    if (!literal.isEmpty()) {
        Piece text;
        text.literal = literal;
        pieces.append(text);
    }
    return pieces;
}

void SkeletonForm::spinBounds(const QString &values, int &minimum, int &maximum)
{
    const QStringList bounds = values.split(QLatin1Char(','));
    bool ok = false;
    minimum = bounds.value(0).trimmed().toInt(&ok);
    if (!ok)
        minimum = std::numeric_limits<int>::min();
    maximum = bounds.value(1).trimmed().toInt(&ok);
    if (!ok)
        maximum = std::numeric_limits<int>::max();
    if (minimum > maximum)
        std::swap(minimum, maximum);
}

QString SkeletonForm::text() const
{
    QString result;
    int index = 0;
    for (const Piece &piece : m_pieces) {
        if (!piece.isField) {
            result += piece.literal;
            continue;
        }
        const QWidget *editor = m_editors.at(index++);
        if (const auto *combo = qobject_cast<const QComboBox *>(editor))
            result += combo->currentText();
        else if (const auto *spin = qobject_cast<const QSpinBox *>(editor))
            result += QString::number(spin->value());
        else if (const auto *edit = qobject_cast<const QLineEdit *>(editor))
            result += edit->text();
    }
    return result;
}

bool SkeletonForm::setText(const QString &line)
{
    QString pattern = QStringLiteral("^\\s*+");
    for (const Piece &piece : qAsConst(m_pieces))
        pattern += piece.isField ? QStringLiteral("\\s*+(\\S(?:.*?\\S)?)?\\s*+")
                                 : literalPattern(piece.literal);
    pattern += QStringLiteral("(?://.*)?$");
    // Blanks are taken whole and values neither start nor end in one, so a failing match does
    // not try every way to split a long run of blanks.
    const QString blanks = QStringLiteral("\\s*+");
    while (pattern.contains(blanks + blanks))
        pattern.replace(blanks + blanks, blanks);
    // Unicode properties make \s and \S agree with QChar::isSpace, which split the literal text.
    const QRegularExpressionMatch match
        = QRegularExpression(pattern, QRegularExpression::UseUnicodePropertiesOption).match(line);
    if (!match.hasMatch())
        return false;

    // Check every value before changing any field.
    QList<int> choices;
    for (int i = 0; i < m_editors.size(); ++i) {
        const QString value = match.captured(i + 1).trimmed();
        const QWidget *editor = m_editors.at(i);
        int choice = 0;
        if (const auto *combo = qobject_cast<const QComboBox *>(editor)) {
            choice = combo->findText(value);
            // A list without items shows, and writes, an empty value.
            if (choice < 0 && !(combo->count() == 0 && value.isEmpty()))
                return false;
        } else if (qobject_cast<const QSpinBox *>(editor)) {
            bool ok = false;
            choice = value.toInt(&ok);
            if (!ok)
                return false;
        }
        choices.append(choice);
    }
    for (int i = 0; i < m_editors.size(); ++i) {
        QWidget *editor = m_editors.at(i);
        if (auto *combo = qobject_cast<QComboBox *>(editor))
            combo->setCurrentIndex(choices.at(i));
        else if (auto *spin = qobject_cast<QSpinBox *>(editor))
            spin->setValue(choices.at(i));
        else if (auto *edit = qobject_cast<QLineEdit *>(editor))
            edit->setText(match.captured(i + 1).trimmed());
    }
    return true;
}
