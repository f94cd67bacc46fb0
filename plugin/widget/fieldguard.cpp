#include "fieldguard.h"

#include "fieldhint.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollArea>
#include <QSpinBox>
#include <QTimer>

namespace {

const char *const kName = "fieldName";
const char *const kUnit = "fieldUnit";
const char *const kCaption = "fieldCaption";
const char *const kHintValue = "fieldHintValue";

// Numbers as the field shows them: no group separators.
QLocale numberLocale(const QWidget *field)
{
    QLocale locale = field->locale();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale;
}

QLineEdit *editOf(const QAbstractSpinBox *spin)
{
    return spin->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly);
}

QAbstractSpinBox *spinOf(QObject *object)
{
    if (auto *spin = qobject_cast<QAbstractSpinBox *>(object))
        return spin;
    if (qobject_cast<QLineEdit *>(object))
        return qobject_cast<QAbstractSpinBox *>(object->parent());
    return nullptr;
}

struct Bounds
{
    double minimum;
    double maximum;
    int decimals;
};

Bounds boundsOf(const QAbstractSpinBox *spin)
{
    if (const auto *box = qobject_cast<const QSpinBox *>(spin))
        return {double(box->minimum()), double(box->maximum()), 0};
    if (const auto *box = qobject_cast<const QDoubleSpinBox *>(spin))
        return {box->minimum(), box->maximum(), box->decimals()};
    return {0.0, 0.0, 0};
}

double valueOf(const QAbstractSpinBox *spin)
{
    if (const auto *box = qobject_cast<const QSpinBox *>(spin))
        return box->value();
    if (const auto *box = qobject_cast<const QDoubleSpinBox *>(spin))
        return box->value();
    return 0.0;
}

// The number with the field's decimals and unit, as the operator typed it.
QString withUnit(const QAbstractSpinBox *spin, double value)
{
    const QString number = numberLocale(spin).toString(value, 'f', boundsOf(spin).decimals);
    const QString unit = spin->property(kUnit).toString();
    return unit.isEmpty() ? number : QStringLiteral("%1 %2").arg(number, unit);
}

QString stripped(const QAbstractSpinBox *spin, QString text)
{
    QString prefix;
    QString suffix;
    if (const auto *box = qobject_cast<const QSpinBox *>(spin)) {
        prefix = box->prefix();
        suffix = box->suffix();
    } else if (const auto *box = qobject_cast<const QDoubleSpinBox *>(spin)) {
        prefix = box->prefix();
        suffix = box->suffix();
    }
    if (!prefix.isEmpty() && text.startsWith(prefix))
        text.remove(0, prefix.size());
    if (!suffix.isEmpty() && text.endsWith(suffix))
        text.chop(suffix.size());
    return text.trimmed();
}

} // namespace

FieldGuard *FieldGuard::instance()
{
    static FieldGuard *guard = new FieldGuard(qApp);
    return guard;
}

void FieldGuard::install(QWidget *root)
{
    const auto spins = root->findChildren<QAbstractSpinBox *>();
    for (QAbstractSpinBox *spin : spins) {
        // Table editors are guarded with their own names where they are made.
        if (spin->property(kUnit).isValid())
            continue;
        static const QRegularExpression keyed(QStringLiteral("^(?:double)?[sS]pinBox_(.+)$"));
        const QRegularExpressionMatch match = keyed.match(spin->objectName());
        QLabel *caption = match.hasMatch()
            ? root->findChild<QLabel *>(QStringLiteral("label_") + match.captured(1))
            : nullptr;
        if (caption)
            spin->setProperty(kCaption, QVariant::fromValue<QObject *>(caption));
        guard(spin, QString(), caption ? unitFromCaption(caption->text()) : QString());
    }
    const auto combos = root->findChildren<QComboBox *>();
    for (QComboBox *combo : combos)
        guard(combo);
}

void FieldGuard::guard(QWidget *field, const QString &name, const QString &unit)
{
    if (!name.isEmpty())
        field->setProperty(kName, name);
    // Focus by click or tab only: a wheel passing over the field must not take it.
    field->setFocusPolicy(Qt::StrongFocus);
    field->removeEventFilter(instance());
    field->installEventFilter(instance());
    if (auto *combo = qobject_cast<QComboBox *>(field)) {
        connect(
            combo, qOverload<int>(&QComboBox::currentIndexChanged), instance(),
            [combo] { FieldHint::hideFor(combo); }, Qt::UniqueConnection);
        return;
    }
    auto *spin = qobject_cast<QAbstractSpinBox *>(field);
    if (!spin)
        return;
    spin->setProperty(kUnit, unit);
    spin->setCorrectionMode(QAbstractSpinBox::CorrectToPreviousValue);
    spin->setToolTip(rangeText(spin));
    if (QLineEdit *edit = editOf(spin)) {
        edit->setPlaceholderText(rangeText(spin));
        edit->removeEventFilter(instance());
        edit->installEventFilter(instance());
        connect(edit, &QLineEdit::textEdited, instance(), [spin](const QString &text) {
            QString copy = text;
            int position = 0;
            if (spin->validate(copy, position) == QValidator::Acceptable)
                FieldHint::hideFor(spin);
        });
    }
    // A new value makes the hint moot; the field confirming the value it kept does not.
    const auto hide = [spin] {
        if (spin->property(kHintValue) != valueOf(spin))
            FieldHint::hideFor(spin);
    };
    if (auto *box = qobject_cast<QSpinBox *>(spin))
        connect(box, qOverload<int>(&QSpinBox::valueChanged), instance(), hide);
    else if (auto *box = qobject_cast<QDoubleSpinBox *>(spin))
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), instance(), hide);
}

QString FieldGuard::rangeText(const QAbstractSpinBox *spin)
{
    const Bounds bounds = boundsOf(spin);
    const QString low = numberLocale(spin).toString(bounds.minimum, 'f', bounds.decimals);
    const QString high = withUnit(spin, bounds.maximum);
    return tr("%1 – %2").arg(low, high);
}

QString FieldGuard::unitFromCaption(const QString &caption)
{
    static const QRegularExpression unit(QStringLiteral("\\(([^()]+)\\)\\s*$"));
    return unit.match(caption).captured(1).trimmed();
}

QString FieldGuard::fieldName(const QWidget *field)
{
    const QString given = field->property(kName).toString();
    if (!given.isEmpty())
        return given;
    const auto *caption
        = qobject_cast<const QLabel *>(field->property(kCaption).value<QObject *>());
    const QString text = caption ? caption->text() : field->objectName();
    for (const QWidget *ancestor = field->parentWidget(); ancestor;
         ancestor = ancestor->parentWidget()) {
        const auto *group = qobject_cast<const QGroupBox *>(ancestor);
        if (group && !group->title().isEmpty())
            return QStringLiteral("%1 · %2").arg(group->title(), text);
    }
    return text;
}

QString FieldGuard::refusalOf(const QAbstractSpinBox *spin, const QString &text)
{
    const QString number = stripped(spin, text);
    const Bounds bounds = boundsOf(spin);
    bool ok = false;
    const double value = spin->locale().toDouble(number, &ok);
    if (!ok) {
        // A minus sign where nothing below 0 is allowed is refused at once by the field.
        if (number == QLatin1String("-") && bounds.minimum >= 0)
            return tr("No negative values: %1").arg(rangeText(spin));
        return QString();
    }
    if (value > bounds.maximum)
        return tr("%1 is above the maximum %2")
            .arg(withUnit(spin, value), withUnit(spin, bounds.maximum));
    if (value < bounds.minimum)
        return tr("%1 is below the minimum %2")
            .arg(withUnit(spin, value), withUnit(spin, bounds.minimum));
    return QString();
}

void FieldGuard::point(QWidget *field, const QString &reason)
{
    for (QWidget *ancestor = field->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (auto *area = qobject_cast<QScrollArea *>(ancestor))
            area->ensureWidgetVisible(field);
    }
    field->setFocus(Qt::OtherFocusReason);
    showHint(field, reason);
}

void FieldGuard::showHint(QWidget *field, const QString &reason)
{
    if (const auto *spin = qobject_cast<QAbstractSpinBox *>(field))
        field->setProperty(kHintValue, valueOf(spin));
    FieldHint::showAt(field, reason);
}

bool FieldGuard::checkTyping(QAbstractSpinBox *spin, const QString &typed)
{
    QLineEdit *edit = editOf(spin);
    if (!edit || typed.isEmpty()
        || !std::all_of(typed.cbegin(), typed.cend(), [](QChar c) { return c.isPrint(); }))
        return false;
    QString text = edit->text();
    if (edit->hasSelectedText())
        text.replace(edit->selectionStart(), edit->selectedText().size(), typed);
    else
        text.insert(edit->cursorPosition(), typed);
    int position = 0;
    QString copy = text;
    if (spin->validate(copy, position) != QValidator::Invalid)
        return false;
    const QString reason = refusalOf(spin, text);
    if (reason.isEmpty())
        return false;
    showHint(spin, reason);
    return true;
}

void FieldGuard::checkFinished(QAbstractSpinBox *spin, bool later)
{
    QLineEdit *edit = editOf(spin);
    if (!edit)
        return;
    QString copy = edit->text();
    int position = 0;
    if (spin->validate(copy, position) == QValidator::Acceptable)
        return;
    const QString reason = refusalOf(spin, edit->text());
    if (reason.isEmpty())
        return;
    // The field goes back to the value it had before the edit; the hint says so.
    const QString text = tr("%1; the field keeps %2").arg(reason, withUnit(spin, valueOf(spin)));
    if (!later) {
        showHint(spin, text);
        return;
    }
    // Focus also leaves while a window closes: the hint waits until the field is sure to stay.
    QTimer::singleShot(0, spin, [spin, text] {
        if (spin->isVisible())
            showHint(spin, text);
    });
}

bool FieldGuard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Wheel: {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && !qobject_cast<QLineEdit *>(watched) && !widget->hasFocus()) {
            // Unhandled, the wheel goes on to the parents and scrolls the page.
            event->ignore();
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        QAbstractSpinBox *spin = spinOf(watched);
        if (!spin)
            break;
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
            checkFinished(spin, false);
        else
            checkTyping(spin, key->text());
        break;
    }
    case QEvent::FocusOut:
        if (QAbstractSpinBox *spin = spinOf(watched))
            checkFinished(spin, true);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
