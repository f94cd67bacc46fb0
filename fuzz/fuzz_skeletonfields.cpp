// Any skeleton and any instruction line: the pendant's skeleton form must build its fields,
// read values from the line or refuse it, and read back what it writes itself.
// Input: the skeleton, a newline, then the line.

#include "fuzzsupport.h"

#include "skeletonform.h"

#include <QRegularExpression>

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(fuzzsupport::input(data, size));
    const int split = input.indexOf(QLatin1Char('\n'));
    const QString skeleton = split < 0 ? input : input.left(split);
    const QString line = split < 0 ? QString() : input.mid(split + 1);

    const QList<SkeletonForm::Piece> pieces = SkeletonForm::parse(skeleton);
    int fields = 0;
    // Choices made of words and quotes, as every registered skeleton has them, cannot be
    // confused with the literal text around them; other choices can, and a line such as
    // "g(*)3g(" then has more than one reading.
    static const QRegularExpression wordChoice(QStringLiteral("^\"?\\w*\"?$"));
    // Two fields with no visible text between them can split their values in many ways too.
    bool unambiguous = true;
    bool fieldBefore = false;
    for (const SkeletonForm::Piece &piece : pieces) {
        if (!piece.isField && !piece.literal.trimmed().isEmpty())
            fieldBefore = false;
        if (piece.isField) {
            unambiguous = unambiguous && !fieldBefore;
            fieldBefore = true;
            if (piece.field.kind == QLatin1String("cmb")) {
                const QStringList items = piece.field.values.split(QLatin1Char('/'));
                for (const QString &item : items)
                    unambiguous = unambiguous && wordChoice.match(item).hasMatch();
            }
            ++fields;
            int minimum = 0;
            int maximum = 0;
            SkeletonForm::spinBounds(piece.field.values, minimum, maximum);
        }
    }

    SkeletonForm form(skeleton);
    if (form.fieldCount() != fields)
        std::abort();
    const QString before = form.text();
    if (!form.setText(line) && form.text() != before)
        std::abort(); // a refused line leaves the form as it was
    // What the form writes, it reads back unchanged.
    const QString written = form.text();
    if (unambiguous && (!form.setText(written) || form.text() != written)) {
        std::fprintf(stderr, "skeleton: %s\nwritten:  %s\nread:     %s\n", qPrintable(skeleton),
            qPrintable(written), qPrintable(form.text()));
        std::abort();
    }
    return 0;
}
