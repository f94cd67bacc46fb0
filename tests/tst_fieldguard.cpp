// Number fields refuse out-of-range input at the field, tell their unit and range, and turn
// with the wheel only while they have the focus.

#include "widget/fieldguard.h"
#include "widget/fieldhint.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QtTest>

namespace {

// A caption and its field inside a page taller than the scroll area, as on the pendant.
struct Form
{
    QScrollArea area;
    QWidget *page = new QWidget;
    QGroupBox *group = new QGroupBox(QStringLiteral("Welding"), page);
    QLabel *caption = new QLabel(group);
    QSpinBox *spin = new QSpinBox(group);
    QComboBox *combo = new QComboBox(group);
    QLineEdit *other = new QLineEdit(group);

    Form(const QString &captionText, int minimum, int maximum, int value)
    {
        caption->setObjectName(QStringLiteral("label_gas_time"));
        caption->setText(captionText);
        spin->setObjectName(QStringLiteral("spinBox_gas_time"));
        spin->setRange(minimum, maximum);
        spin->setValue(value);
        combo->addItems({QStringLiteral("Analogue"), QStringLiteral("Bus"), QStringLiteral("Id")});
        combo->setCurrentIndex(1);
        auto *groupLayout = new QVBoxLayout(group);
        for (QWidget *widget : {static_cast<QWidget *>(caption), static_cast<QWidget *>(spin),
                 static_cast<QWidget *>(combo), static_cast<QWidget *>(other)})
            groupLayout->addWidget(widget);
        auto *layout = new QVBoxLayout(page);
        layout->addWidget(group);
        layout->addSpacing(2000);
        area.setWidget(page);
        area.resize(400, 300);
        FieldGuard::install(page);
    }

    bool show()
    {
        area.show();
        QApplication::setActiveWindow(&area);
        return QTest::qWaitForWindowActive(&area);
    }

    QString hint() const
    {
        const FieldHint *shown = FieldHint::visibleIn(spin);
        return shown && shown->field() == spin ? shown->text() : QString();
    }
};

// One notch down, delivered like the mouse's: to the widget under it, handed on to its parents
// while ignored.
void sendWheel(QWidget *target)
{
    const QPoint local = target->rect().center();
    QWheelEvent wheel(local, target->mapToGlobal(local), QPoint(), QPoint(0, -120), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    // As QTest delivers its key events: spontaneous and through notify, which sendEvent is not.
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(target, &wheel);
}

} // namespace

class TestFieldGuard : public QObject
{
    Q_OBJECT

private slots:
    void typedValueBeyondTheRange_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("start");
        QTest::addColumn<bool>("replace"); // select all first, else type after the value
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("finish"); // "enter", "leave" or "" (stop typing)
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("hint");

        QTest::newRow("maximum itself") << 0 << 9999 << 999 << false << "9"
                                        << "enter" << 9999 << "";
        QTest::newRow("one above the maximum, typed digit refused")
            << 0 << 9999 << 1000 << false << "0"
            << "" << 1000 << "10000 ms is above the maximum 9999 ms";
        QTest::newRow("the hint goes once the value is good again")
            << 0 << 9999 << 1000 << false << "0\b"
            << "" << 100 << "";
        QTest::newRow("minimum itself") << 1000 << 10000 << 5000 << true << "1000"
                                        << "enter" << 1000 << "";
        QTest::newRow("one below the minimum, on Enter")
            << 1000 << 10000 << 5000 << true << "999"
            << "enter" << 5000 << "999 ms is below the minimum 1000 ms; the field keeps 5000 ms";
        QTest::newRow("one below the minimum, on leaving the field")
            << 1000 << 10000 << 5000 << true << "999"
            << "leave" << 5000 << "999 ms is below the minimum 1000 ms; the field keeps 5000 ms";
        QTest::newRow("below the minimum while still typing says nothing yet")
            << 1000 << 10000 << 5000 << true << "99"
            << "" << 5000 << "";
        QTest::newRow("minus sign where nothing is negative")
            << 0 << 2000 << 300 << true << "-"
            << "" << 300 << "No negative values: 0 – 2000 ms";
    }

    void typedValueBeyondTheRange()
    {
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QFETCH(int, start);
        QFETCH(bool, replace);
        QFETCH(QString, typed);
        QFETCH(QString, finish);
        QFETCH(int, value);
        QFETCH(QString, hint);

        Form form(QStringLiteral("Gas purge time (ms)"), minimum, maximum, start);
        QVERIFY(form.show());
        form.spin->setFocus();
        QTRY_VERIFY(form.spin->hasFocus());
        if (replace)
            form.spin->selectAll();
        else
            QTest::keyClick(form.spin, Qt::Key_End);
        QTest::keyClicks(form.spin, typed);
        if (finish == QLatin1String("enter"))
            QTest::keyClick(form.spin, Qt::Key_Return);
        else if (finish == QLatin1String("leave"))
            form.other->setFocus();

        QCOMPARE(form.spin->value(), value);
        QTRY_COMPARE(form.hint(), hint);
        // The range itself never moves.
        QCOMPARE(form.spin->minimum(), minimum);
        QCOMPARE(form.spin->maximum(), maximum);
    }

    void unitAndRangeShown_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<QString>("range");
        QTest::addColumn<QString>("name");

        QTest::newRow("unit in brackets")
            << "Gas purge time (ms)" << 1000 << 10000 << "1000 – 10000 ms"
            << "Welding · Gas purge time (ms)";
        QTest::newRow("unit without a blank") << "Welding speed(mm/s)" << 1 << 500 << "1 – 500 mm/s"
                                              << "Welding · Welding speed(mm/s)";
        QTest::newRow("no unit") << "Nodes" << 0 << 100 << "0 – 100"
                                 << "Welding · Nodes";
    }

    void unitAndRangeShown()
    {
        QFETCH(QString, caption);
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QFETCH(QString, range);
        QFETCH(QString, name);

        Form form(caption, minimum, maximum, minimum);
        QCOMPARE(form.spin->toolTip(), range);
        QCOMPARE(form.spin->findChild<QLineEdit *>()->placeholderText(), range);
        QCOMPARE(FieldGuard::fieldName(form.spin), name);
    }

    void wheelTurnsOnlyAFocusedField_data()
    {
        QTest::addColumn<bool>("combo");
        QTest::addColumn<bool>("focused");

        QTest::newRow("spin box without focus") << false << false;
        QTest::newRow("spin box with focus") << false << true;
        QTest::newRow("combo box without focus") << true << false;
        QTest::newRow("combo box with focus") << true << true;
    }

    void wheelTurnsOnlyAFocusedField()
    {
        QFETCH(bool, combo);
        QFETCH(bool, focused);

        Form form(QStringLiteral("Laser power (W)"), 0, 9999, 3000);
        QVERIFY(form.show());
        QWidget *field = combo ? static_cast<QWidget *>(form.combo) : form.spin;
        (focused ? field : static_cast<QWidget *>(form.other))->setFocus();
        QTRY_VERIFY(focused ? field->hasFocus() : form.other->hasFocus());
        QScrollBar *bar = form.area.verticalScrollBar();
        QCOMPARE(bar->value(), 0);

        sendWheel(combo ? field : form.spin->findChild<QLineEdit *>());

        // One notch down: the next item or one step less, or the page scrolls instead.
        if (combo)
            QCOMPARE(form.combo->currentIndex(), focused ? 2 : 1);
        else
            QCOMPARE(form.spin->value(), focused ? 2999 : 3000);
        QCOMPARE(bar->value() > 0, !focused);
    }

    void hintBoxPlacement_data()
    {
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<QSize>("text");
        QTest::addColumn<QRect>("box");

        const QRect area(0, 0, 400, 300);
        QTest::newRow("below the field, as wide as the field at least")
            << QRect(10, 20, 100, 30) << QSize(50, 12) << QRect(10, 50, 100, 20);
        QTest::newRow("wider text than field")
            << QRect(10, 20, 100, 30) << QSize(150, 12) << QRect(10, 50, 158, 20);
        QTest::newRow("above the field at the bottom edge")
            << QRect(10, 270, 100, 30) << QSize(50, 12) << QRect(10, 250, 100, 20);
        QTest::newRow("moved left at the right edge")
            << QRect(350, 20, 50, 30) << QSize(150, 12) << QRect(242, 50, 158, 20);
    }

    void hintBoxPlacement()
    {
        QFETCH(QRect, frame);
        QFETCH(QSize, text);
        QFETCH(QRect, box);
        QCOMPARE(FieldHint::textBox(frame, text, QRect(0, 0, 400, 300)), box);
    }
};

QTEST_MAIN(TestFieldGuard)
#include "tst_fieldguard.moc"
