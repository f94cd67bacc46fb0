#include "support/testenvironment.h"
#include "widget/armsafecombobox.h"
#include "widget/headerwidgetview.h"
#include "widget/showstatusbar.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>
#include <QtTest>

namespace {

// Stands in for a switch button: a fixed preferred size, like the 50 x 25 switches.
class FixedHintWidget : public QWidget
{
public:
    using QWidget::QWidget;
    QSize sizeHint() const override { return QSize(50, 25); }
};

enum class HeaderChange {
    None,
    SectionNarrowed,
    EarlierSectionResized,
    SectionMoved,
    Scrolled,
    SectionHidden
};

} // namespace

Q_DECLARE_METATYPE(HeaderChange)

class TestSmallWidgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }

    void statusIndicatorKeepsLastIcon()
    {
        ShowStatusBar bar;
        bar.showSimulatedWelding();
        const QImage simulated = testenv::indicatorImage(&bar);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        bar.resize(120, 40);
        bar.hide();
        bar.show();
        QCOMPARE(testenv::indicatorImage(&bar), simulated);
    }

    void hostedWidgetStaysInItsSection_data()
    {
        QTest::addColumn<HeaderChange>("change");
        QTest::newRow("first layout") << HeaderChange::None;
        QTest::newRow("section narrower than the widget") << HeaderChange::SectionNarrowed;
        QTest::newRow("earlier section resized") << HeaderChange::EarlierSectionResized;
        QTest::newRow("section moved") << HeaderChange::SectionMoved;
        QTest::newRow("scrolled sideways") << HeaderChange::Scrolled;
        QTest::newRow("section hidden") << HeaderChange::SectionHidden;
    }

    void hostedWidgetStaysInItsSection()
    {
        QFETCH(HeaderChange, change);
        QTableWidget table(3, 8);
        auto *header = new HeaderWidgetView(Qt::Horizontal, &table);
        table.setHorizontalHeader(header);
        header->setMinimumSectionSize(10);
        header->setFixedHeight(32);
        for (int column = 0; column < table.columnCount(); ++column)
            table.setHorizontalHeaderItem(column, new QTableWidgetItem(QStringLiteral("Column")));
        auto *hosted = new FixedHintWidget;
        header->setSectionWidget(2, hosted);
        table.resize(500, 200);
        table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&table));

        switch (change) {
        case HeaderChange::None:
            break;
        case HeaderChange::SectionNarrowed:
            header->resizeSection(2, 30);
            break;
        case HeaderChange::EarlierSectionResized:
            header->resizeSection(0, 170);
            break;
        case HeaderChange::SectionMoved:
            header->moveSection(2, 5);
            break;
        case HeaderChange::Scrolled:
            table.horizontalScrollBar()->setValue(table.horizontalScrollBar()->maximum());
            QVERIFY(header->offset() > 0);
            break;
        case HeaderChange::SectionHidden:
            header->hideSection(2);
            QTRY_VERIFY(!hosted->isVisible());
            return;
        }

        const QRect section(header->sectionViewportPosition(2), 0, header->sectionSize(2),
            header->viewport()->height());
        QTRY_VERIFY(hosted->isVisible());
        const QRect geometry = hosted->geometry();
        // Centred up to the pixel an odd leftover puts on one side.
        const QPoint offCentre = geometry.center() - section.center();
        QVERIFY2(qAbs(offCentre.x()) <= 1 && qAbs(offCentre.y()) <= 1,
            qPrintable(QStringLiteral("off by %1,%2").arg(offCentre.x()).arg(offCentre.y())));
        QVERIFY(section.contains(geometry));
        QCOMPARE(geometry.size(), QSize(50, 25).boundedTo(section.size()));
    }

    void hostingSectionPaintsNoText()
    {
        QTableWidget table(2, 4);
        auto *header = new HeaderWidgetView(Qt::Horizontal, &table);
        table.setHorizontalHeader(header);
        for (int column = 0; column < table.columnCount(); ++column)
            table.setHorizontalHeaderItem(column, new QTableWidgetItem(QStringLiteral("WWWW")));
        header->setSectionWidget(2, new FixedHintWidget);
        table.resize(500, 200);
        table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&table));

        // The header alone, without the hosted widget on top.
        QImage image(header->viewport()->size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        header->viewport()->render(&image, QPoint(), QRegion(), QWidget::DrawWindowBackground);
        const auto darkPixels = [&image, header](int section) {
            const QRect rect(header->sectionViewportPosition(section) + 3, 2,
                header->sectionSize(section) - 6, image.height() - 4);
            int dark = 0;
            for (int y = rect.top(); y <= rect.bottom(); ++y)
                for (int x = rect.left(); x <= rect.right(); ++x)
                    dark += qGray(image.pixel(x, y)) < 100 ? 1 : 0;
            return dark;
        };
        QVERIFY(darkPixels(1) > 0);
        QCOMPARE(darkPixels(2), 0);
    }

    void sectionWidgetsAreOwnedAndForgotten()
    {
        QTableWidget table(2, 4);
        auto *header = new HeaderWidgetView(Qt::Horizontal, &table);
        table.setHorizontalHeader(header);
        QPointer<QWidget> first = new FixedHintWidget;
        header->setSectionWidget(3, first);
        auto *second = new FixedHintWidget;
        header->setSectionWidget(3, second);
        QVERIFY(first.isNull()); // a replaced widget is deleted
        QCOMPARE(header->sectionWidget(3), second);

        QWidget *taken = header->takeSectionWidget(3);
        QCOMPARE(taken, second);
        QCOMPARE(taken->parentWidget(), nullptr);
        QCOMPARE(header->sectionWidget(3), nullptr);
        // One deleted elsewhere is forgotten: repositioning used to touch the dead widget.
        delete taken;
        auto *hosted = new FixedHintWidget;
        header->setSectionWidget(1, hosted);
        delete hosted;
        QCOMPARE(header->sectionWidget(1), nullptr);
        header->resizeSection(1, 120);
    }

    void comboPopupOpensOnALongList()
    {
        QWidget window;
        ArmSafeComboBox combo(&window);
        for (int i = 0; i < 500; ++i)
            combo.addItem(QStringLiteral("Port %1 ").arg(i).repeated(i % 7 + 1));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        combo.showPopup();
        QTRY_VERIFY(combo.view()->isVisible());
        combo.hidePopup();
        QTRY_VERIFY(!combo.view()->isVisible());
    }
};

QTEST_MAIN(TestSmallWidgets)
#include "tst_smallwidgets.moc"
