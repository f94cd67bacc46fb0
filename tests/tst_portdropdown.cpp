// A port drop-down keeps its size whatever list it holds: sizing it by its entries would measure
// every name of a refilled list on each layout pass, 8,192 of them on a large cell.

#include "page/portcatalogue.h"

#include <QComboBox>
#include <QtTest>

class TestPortDropDown : public QObject
{
    Q_OBJECT

private slots:
    void sizeDoesNotFollowTheList_data()
    {
        QTest::addColumn<QStringList>("list");
        QStringList many;
        for (int i = 8192; i > 0; --i)
            many.append(QStringLiteral("DO") + QString::number(i));
        QTest::newRow("many ports") << many;
        QTest::newRow("one overlong name") << QStringList {QString(60, QLatin1Char('W'))};
        QTest::newRow("empty list") << QStringList();
    }

    void sizeDoesNotFollowTheList()
    {
        QFETCH(QStringList, list);

        QComboBox dropDown;
        PortCatalogue::fitDropDown(&dropDown);
        dropDown.addItems({QString(), QStringLiteral("DO1"), QStringLiteral("DO2")});
        const QSize hint = dropDown.sizeHint();
        const QSize minimum = dropDown.minimumSizeHint();

        dropDown.clear();
        dropDown.addItems(list);
        QCOMPARE(dropDown.sizeHint(), hint);
        QCOMPARE(dropDown.minimumSizeHint(), minimum);
        // A typical name still fits.
        QVERIFY(minimum.width()
            > dropDown.fontMetrics().horizontalAdvance(QStringLiteral("DO_Board1_63")));
    }
};

QTEST_MAIN(TestPortDropDown)
#include "tst_portdropdown.moc"
