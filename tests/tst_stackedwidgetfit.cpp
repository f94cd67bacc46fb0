#include "widget/stackedwidgetfit.h"

#include <QStackedWidget>
#include <QTest>

namespace {

class SizedPage : public QWidget
{
public:
    SizedPage(QSize hint, QSize minimum) : m_hint(hint), m_minimum(minimum) { }
    QSize sizeHint() const override { return m_hint; }
    QSize minimumSizeHint() const override { return m_minimum; }

private:
    QSize m_hint;
    QSize m_minimum;
};

} // namespace

class TestStackedWidgetFit : public QObject
{
    Q_OBJECT

private slots:
    void withoutPagesReportsTheBaseSizes()
    {
        StackedWidgetFit fit;
        QStackedWidget plain;
        QCOMPARE(fit.sizeHint(), plain.sizeHint());
        QCOMPARE(fit.minimumSizeHint(), plain.minimumSizeHint());
    }

    void sizeFollowsTheCurrentPage_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<QSize>("hint");
        QTest::addColumn<QSize>("minimum");
        QTest::newRow("small page") << 0 << QSize(100, 50) << QSize(10, 5);
        QTest::newRow("tall page") << 1 << QSize(300, 900) << QSize(30, 90);
    }

    void sizeFollowsTheCurrentPage()
    {
        QFETCH(int, current);
        QFETCH(QSize, hint);
        QFETCH(QSize, minimum);

        StackedWidgetFit fit;
        fit.addWidget(new SizedPage(QSize(100, 50), QSize(10, 5)));
        fit.addWidget(new SizedPage(QSize(300, 900), QSize(30, 90)));
        fit.setCurrentIndex(current);
        QCOMPARE(fit.sizeHint(), hint);
        QCOMPARE(fit.minimumSizeHint(), minimum);
    }
};

QTEST_MAIN(TestStackedWidgetFit)
#include "tst_stackedwidgetfit.moc"
