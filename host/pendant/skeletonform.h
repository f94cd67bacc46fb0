#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class QFormLayout;

// A parameter form built from an instruction skeleton: literal text with fields written as
// $caption#kind#values#flag$. "cmb" fields become combo boxes with the "/"-separated items,
// "spn" fields integer spin boxes with the "min,max" bounds; any other kind a line edit.
// The fields are named field_0, field_1, ... in order.
class SkeletonForm : public QWidget
{
    Q_OBJECT
public:
    struct Field
    {
        QString caption;
        QString kind;
        QString values;
        QString flag;
    };
    struct Piece
    {
        bool isField = false;
        QString literal;
        Field field;
    };

    explicit SkeletonForm(const QString &skeleton, QWidget *parent = nullptr);
    ~SkeletonForm() override;

    // Text outside well-formed fields (including a "$" without its closing "$") is literal.
    static QList<Piece> parse(const QString &skeleton);
    // Inclusive bounds of a "spn" field's values; a bound that is not a number takes the int limit.
    static void spinBounds(const QString &values, int &minimum, int &maximum);

    int fieldCount() const { return m_editors.size(); }
    // The instruction text with the chosen values in place of the fields.
    QString text() const;
    // Takes the values from an instruction line of this skeleton's shape. False, leaving the
    // form as it was, when the line has another shape or a value the field cannot hold.
    bool setText(const QString &line);

private:
    QList<Piece> m_pieces;
    QList<QWidget *> m_editors;
};
