#include "widget/stackedwidgetfit.h"

#include <QStackedWidget>
#include <QtTest>

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
    void sizeFollowsTheCurrentPage()
    {
        StackedWidgetFit fit;
        const QSize sizes[][2] = {{{100, 50}, {10, 5}}, {{300, 900}, {30, 90}}};
        for (const auto &size : sizes)
            fit.addWidget(new SizedPage(size[0], size[1]));
        for (int page : {1, 0}) {
            fit.setCurrentIndex(page);
            QCOMPARE(fit.sizeHint(), sizes[page][0]);
            QCOMPARE(fit.minimumSizeHint(), sizes[page][1]);
        }
    }
};

QTEST_MAIN(TestStackedWidgetFit)
#include "tst_stackedwidgetfit.moc"
