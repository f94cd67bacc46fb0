// Style sheets cost a pass through every widget below the one they are set on, so the plug-in
// sets each one once and never pushes a sheet through a page that is already built.

#include "page/laserweldpage.h"
#include "page/weldiopage.h"
#include "support/scriptedcontroller.h"
#include "widget/stylesheet.h"

#include <QComboBox>
#include <QLabel>
#include <QtTest>

namespace {

// Counts the style changes each widget receives while it is installed.
class StyleChangeCounter : public QObject
{
public:
    StyleChangeCounter() { qApp->installEventFilter(this); }
    ~StyleChangeCounter() override { qApp->removeEventFilter(this); }

    QHash<QObject *, int> counts;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::StyleChange)
            ++counts[watched];
        return false;
    }
};

} // namespace

class TestStyleSheet : public QObject
{
    Q_OBJECT

private slots:
    void childIsRestyledOnlyForANewSheet_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("restyled");
        const QString white = QStringLiteral("QWidget{background-color:white;}");
        QTest::newRow("same sheet again") << white << white << false;
        QTest::newRow("changed sheet") << white << QStringLiteral("QLabel{color:red;}") << true;
        QTest::newRow("sheet removed") << white << QString() << true;
    }

    void childIsRestyledOnlyForANewSheet()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, restyled);

        QWidget parent;
        auto *child = new QLabel(&parent);
        // Only polished widgets are restyled by a changed sheet.
        parent.ensurePolished();
        kellaser::applyStyleSheet(&parent, first);
        StyleChangeCounter counter;
        kellaser::applyStyleSheet(&parent, second);
        QCOMPARE(parent.styleSheet(), second);
        QCOMPARE(counter.counts.value(child) > 0, restyled);
    }

    void mainPageRestylesAPortDropDownOnlyAFewTimes()
    {
        ScriptedController controller;
        StyleChangeCounter counter;
        LaserWeldPage page;
        page.initRenderStyle();
        auto *dropDown = page.findChild<QComboBox *>(QStringLiteral("comboBox_power_port"));
        QVERIFY(dropDown);
        // Once, inside its own page's sheet. Before, the move into the stack, the content's sheet,
        // render's scroll-bar sheet and render's second round of page sheets came on top: 9 times.
        QVERIFY2(counter.counts.value(dropDown) <= 2,
            qPrintable(QString::number(counter.counts.value(dropDown))));
    }
};

QTEST_MAIN(TestStyleSheet)
#include "tst_stylesheet.moc"
