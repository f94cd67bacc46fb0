// Any skeleton and any instruction line: the pendant's skeleton form must build its fields,
// read values from the line or refuse it, and read back what it writes itself.
// Input: the skeleton, a newline, then the line.

#include "fuzzsupport.h"

#include "skeletonform.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::initialise(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(fuzzsupport::bytes(data, size));
    const int split = input.indexOf(QLatin1Char('\n'));
    const QString skeleton = split < 0 ? input : input.left(split);
    const QString line = split < 0 ? QString() : input.mid(split + 1);

    const QList<SkeletonForm::Piece> pieces = SkeletonForm::parse(skeleton);
    int fields = 0;
    for (const SkeletonForm::Piece &piece : pieces) {
        if (piece.isField) {
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
    if (!form.setText(written) || form.text() != written) {
        std::fprintf(stderr, "skeleton: %s\nwritten:  %s\nread:     %s\n", qPrintable(skeleton),
            qPrintable(written), qPrintable(form.text()));
        std::abort();
    }
    return 0;
}
