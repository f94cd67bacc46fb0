#pragma once

#include <QObject>

class QAbstractSpinBox;
class QWidget;

// The pages' number fields and drop-downs, guarded in one place: the wheel turns a field only
// while it has the focus (otherwise the page scrolls), a number field tells its unit and range
// in its tool tip, and a number typed beyond the range is refused at the field with the reason
// instead of being changed without a word.
class FieldGuard : public QObject
{
    Q_OBJECT
public:
    // Guards every spin box and combo box below root. A spin box "spinBox_<key>" or
    // "doubleSpinBox_<key>" takes its name and unit from its caption "label_<key>".
    static void install(QWidget *root);
    // Guards one field made later (a table cell's editor), with its name and unit.
    static void guard(
        QWidget *field, const QString &name = QString(), const QString &unit = QString());

    // "0 – 9999 ms": the range in the field's unit.
    static QString rangeText(const QAbstractSpinBox *spin);
    // "W" from "Laser power (W)"; empty when the caption names no unit.
    static QString unitFromCaption(const QString &caption);
    // The field as the operator reads it: its caption, after its group's title if it has one.
    static QString fieldName(const QWidget *field);
    // Why text cannot become the spin box's value (a number beyond its range); empty when it
    // can, or while it is no number at all.
    static QString refusalOf(const QAbstractSpinBox *spin, const QString &text);

    // Brings field into view, focuses it and shows reason at it.
    static void point(QWidget *field, const QString &reason);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using QObject::QObject;
    static FieldGuard *instance();
    static void showHint(QWidget *field, const QString &reason);
    bool checkTyping(QAbstractSpinBox *spin, const QString &typed);
    void checkFinished(QAbstractSpinBox *spin, bool later);
};
