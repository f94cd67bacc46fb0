#include "widget/customchart.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace kellaser::chart;

namespace {

constexpr int kPinned = 1 << 20;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

QImage render(const CustomChart &chart)
{
    QImage image(chart.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    chart.paint(painter);
    return image;
}

bool isDark(const QImage &image, int x, int y)
{
    return qGray(image.pixel(x, y)) < 128;
}

// Lines of width 2 at integer coordinates fall on one of two pixel rows; accept either.
bool darkNear(const QImage &image, int x, int y)
{
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (isDark(image, x + dx, y + dy))
                return true;
    return false;
}

bool samePoint(const QPointF &a, const QPointF &b)
{
    return (a - b).manhattanLength() < 1e-9;
}

// Dark pixels inside the frame of a 380 x 259 chart (frame at x 50/360, y 20/234), clear of
// the 5 px ticks.
int darkPixelsInsidePlot(const QImage &image)
{
    int dark = 0;
    for (int y = 23; y <= 227; ++y)
        for (int x = 58; x <= 357; ++x)
            dark += isDark(image, x, y) ? 1 : 0;
    return dark;
}

} // namespace

class TestCustomChart : public QObject
{
    Q_OBJECT

private slots:
    void roundsHalvesUp_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("positive half away from zero") << 2.5 << 3;
        QTest::newRow("negative half towards plus") << -2.5 << -2;
        QTest::newRow("below positive half") << 2.49 << 2;
        QTest::newRow("NaN") << kNaN << 0;
        QTest::newRow("plus infinity pinned") << kInf << kPinned;
        QTest::newRow("beyond int pinned") << 1e300 << kPinned;
    }

    void roundsHalvesUp()
    {
        QFETCH(double, value);
        QFETCH(int, expected);
        QCOMPARE(roundHalfUp(value), expected);
    }

    void widensAxisToWholeSteps_data()
    {
        QTest::addColumn<int>("min");
        QTest::addColumn<int>("max");
        QTest::addColumn<int>("step");
        QTest::addColumn<qint64>("end");
        QTest::addColumn<bool>("usable");
        QTest::newRow("already whole steps") << 0 << 10 << 1 << qint64(10) << true;
        QTest::newRow("widened to next step") << 0 << 10 << 3 << qint64(12) << true;
        QTest::newRow("negative start") << -5 << 4 << 2 << qint64(5) << true;
        QTest::newRow("max equals min") << 3 << 3 << 1 << qint64(3) << false;
        QTest::newRow("zero step") << 0 << 10 << 0 << qint64(0) << false;
        QTest::newRow("full int range without looping")
            << std::numeric_limits<int>::min() << std::numeric_limits<int>::max() << 1
            << qint64(std::numeric_limits<int>::max()) << true;
        QTest::newRow("end beyond int")
            << std::numeric_limits<int>::min() << std::numeric_limits<int>::max()
            << std::numeric_limits<int>::max() << qint64(4294967293LL) << true;
    }

    void widensAxisToWholeSteps()
    {
        QFETCH(int, min);
        QFETCH(int, max);
        QFETCH(int, step);
        QFETCH(qint64, end);
        QFETCH(bool, usable);
        const Axis axis = widenedAxis(min, max, step);
        QCOMPARE(axis.end, end);
        QCOMPARE(axis.isUsable(), usable);
    }

    void mapsValuesToPixels_data()
    {
        // The default 380 x 259 chart: plot from x 50 to 360 (310 px), y 234 up to 20 (214 px).
        QTest::addColumn<QPointF>("value");
        QTest::addColumn<int>("xMax");
        QTest::addColumn<int>("yMax");
        QTest::addColumn<QPoint>("pixel");
        QTest::newRow("plot origin") << QPointF(0, 0) << 10 << 10 << QPoint(50, 234);
        QTest::newRow("far corner") << QPointF(10, 10) << 10 << 10 << QPoint(360, 20);
        // 310 / 4 = 77.5 and 214 / 4 = 53.5 per unit.
        QTest::newRow("positive halves round up") << QPointF(1, 1) << 4 << 4 << QPoint(128, 180);
        QTest::newRow("negative halves round towards plus")
            << QPointF(-1, -1) << 4 << 4 << QPoint(-27, 287);
        QTest::newRow("outside the range is not clipped")
            << QPointF(20, -5) << 10 << 10 << QPoint(670, 341);
    }

    void mapsValuesToPixels()
    {
        QFETCH(QPointF, value);
        QFETCH(int, xMax);
        QFETCH(int, yMax);
        QFETCH(QPoint, pixel);
        const PlotArea area = plotArea(380, 259);
        QCOMPARE(mapToPlot(value, widenedAxis(0, xMax, 1), widenedAxis(0, yMax, 1), area), pixel);
    }

    void clipsLineToPlot_data()
    {
        QTest::addColumn<double>("slope");
        QTest::addColumn<double>("intercept");
        QTest::addColumn<int>("xStep");
        QTest::addColumn<int>("xMax");
        QTest::addColumn<bool>("drawn");
        QTest::addColumn<QLineF>("line");
        // y axis always 0..10.
        QTest::newRow("gentle line inside") << 0.5 << 1.0 << 1 << 10 << true << QLineF(0, 1, 10, 6);
        QTest::newRow("steep line cut at top")
            << 10.0 << 0.0 << 1 << 10 << true << QLineF(0, 0, 1, 10);
        QTest::newRow("steep line cut at bottom and top")
            << 10.0 << -50.0 << 1 << 10 << true << QLineF(5, 0, 6, 10);
        QTest::newRow("falling steep line")
            << -10.0 << 100.0 << 1 << 10 << true << QLineF(9, 10, 10, 0);
        QTest::newRow("ends at widened axis end")
            << 0.5 << 0.0 << 3 << 10 << true << QLineF(0, 0, 12, 6);
        QTest::newRow("slope zero") << 0.0 << 5.0 << 1 << 10 << false << QLineF();
        QTest::newRow("slope at flat limit") << 1e-6 << 5.0 << 1 << 10 << false << QLineF();
        QTest::newRow("NaN slope") << kNaN << 0.0 << 1 << 10 << false << QLineF();
        QTest::newRow("zero-width x range") << 1.0 << 0.0 << 1 << 0 << false << QLineF();
    }

    void clipsLineToPlot()
    {
        QFETCH(double, slope);
        QFETCH(double, intercept);
        QFETCH(int, xStep);
        QFETCH(int, xMax);
        QFETCH(bool, drawn);
        QFETCH(QLineF, line);
        const auto clipped
            = clippedLine(slope, intercept, widenedAxis(0, xMax, xStep), widenedAxis(0, 10, 1));
        QCOMPARE(clipped.has_value(), drawn);
        if (drawn) {
            QVERIFY2(samePoint(clipped->p1(), line.p1()) && samePoint(clipped->p2(), line.p2()),
                qPrintable(QStringLiteral("(%1, %2)-(%3, %4)")
                               .arg(clipped->x1())
                               .arg(clipped->y1())
                               .arg(clipped->x2())
                               .arg(clipped->y2())));
        }
    }

    void drawsFrameTicksDotsAndClippedLine()
    {
        CustomChart chart;
        QCOMPARE(chart.size(), QSize(380, 259));
        chart.setAxis(QString(), 1, 0, 10, QString(), 1, 0, 10);
        chart.setPoints({QPointF(8, 2)});
        // Unclipped this would leave the plot through the top at x 5 and run on to x 10.
        chart.setLine(2.0, 0.0);
        const QImage image = render(chart);

        QVERIFY(darkNear(image, 200, 234)); // bottom
        QVERIFY(darkNear(image, 200, 20));  // top
        QVERIFY(darkNear(image, 50, 127));  // left
        QVERIFY(darkNear(image, 360, 127)); // right

        // x tick at 1: px 81, 5 px up from the bottom edge; nothing beside it.
        QVERIFY(darkNear(image, 81, 230));
        QVERIFY(!isDark(image, 86, 230));
        // The top y tick's label "10" left of the frame's top corner.
        bool topLabel = false;
        for (int y = 18; y < 32; ++y)
            for (int x = 8; x < 28; ++x)
                topLabel = topLabel || isDark(image, x, y);
        QVERIFY(topLabel);
        // The dot of (8, 2): centre (298, 191), radius 3.
        QVERIFY(isDark(image, 298, 191));
        QVERIFY(!isDark(image, 304, 191));
        QVERIFY(!isDark(image, 298, 197));

        // The line runs from (50, 234) to (205, 20): its middle is dark, nothing of it above the
        // top.
        QVERIFY(darkNear(image, 127, 127));
        for (int y = 0; y < 18; ++y)
            for (int x = 60; x < 380; ++x)
                QVERIFY2(!isDark(image, x, y), qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
        // Nor to the right of where it meets the top.
        QVERIFY(!isDark(image, 250, 60));
    }

    // The fit mark is drawn after the chart: every pixel it changes is its red, the frame,
    // ticks, labels, dots and line elsewhere are as they were.
    void aFitMarkLeavesTheDrawingAsItWas_data()
    {
        QTest::addColumn<double>("intercept");
        QTest::newRow("line through the plot") << 0.0;
        // The chart draws no line; the mark stops at the frame's top (y 20).
        QTest::newRow("line far above the plot") << 100.0;
    }

    void aFitMarkLeavesTheDrawingAsItWas()
    {
        QFETCH(double, intercept);
        CustomChart chart;
        chart.setAxis(QString(), 1, 0, 10, QString(), 1, 0, 10);
        chart.setPoints({QPointF(2, 3), QPointF(8, 2)});
        chart.setLine(0.5, intercept);
        const QImage plain = render(chart);
        chart.setFitMark(1);
        const QImage marked = render(chart);
        int changed = 0;
        for (int y = 0; y < plain.height(); ++y) {
            for (int x = 0; x < plain.width(); ++x) {
                if (plain.pixel(x, y) == marked.pixel(x, y))
                    continue;
                ++changed;
                // Blended at its edges, so redder than before rather than pure red.
                const QColor before = plain.pixelColor(x, y);
                const QColor c = marked.pixelColor(x, y);
                QVERIFY2(c.red() - c.green() > before.red() - before.green() && y >= 18,
                    qPrintable(QStringLiteral("%1,%2 is not the mark's").arg(x).arg(y)));
            }
        }
        QVERIFY(changed > 0);
    }
    void flatLineShowsOnlyDots()
    {
        CustomChart chart;
        chart.setAxis(QString(), 1, 0, 10, QString(), 1, 0, 10);
        chart.setPoints({QPointF(5, 5)});
        chart.setLine(0.0, 5.0);
        QVERIFY(chart.hasLine());
        const QImage image = render(chart);
        QVERIFY(isDark(image, 205, 127));
        for (int x = 60; x < 195; ++x)
            QVERIFY(!isDark(image, x, 127));
    }

    void unusableRangeDrawsOnlyFrame_data()
    {
        QTest::addColumn<int>("xStep");
        QTest::addColumn<int>("xMin");
        QTest::addColumn<int>("xMax");
        QTest::newRow("xMax equals xMin") << 1 << 5 << 5;
        QTest::newRow("zero x step") << 0 << 0 << 10;
    }

    void unusableRangeDrawsOnlyFrame()
    {
        QFETCH(int, xStep);
        QFETCH(int, xMin);
        QFETCH(int, xMax);
        CustomChart chart;
        chart.setAxis(QString(), xStep, xMin, xMax, QString(), 1, 0, 10);
        chart.setPoints({QPointF(5, 5), QPointF(xMin, 0)});
        chart.setLine(1.0, 0.0);
        chart.setFitMark(0);
        const QImage image = render(chart);
        QVERIFY(darkNear(image, 200, 234));
        QVERIFY(darkNear(image, 50, 127));
        QCOMPARE(darkPixelsInsidePlot(image), 0);
    }

    void hostileDataStillPaints_data()
    {
        QTest::addColumn<double>("slope");
        QTest::addColumn<double>("intercept");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("yMin");
        QTest::addColumn<int>("yMax");
        QTest::addColumn<bool>("dotInside");
        QTest::newRow("NaN slope") << kNaN << 0.0 << QPointF(5, 5) << 0 << 10 << true;
        QTest::newRow("infinite slope") << kInf << 0.0 << QPointF(5, 5) << 0 << 10 << true;
        QTest::newRow("huge intercept") << 1.0 << 1e300 << QPointF(5, 5) << 0 << 10 << true;
        QTest::newRow("NaN point") << 0.0 << 0.0 << QPointF(kNaN, 5) << 0 << 10 << false;
        QTest::newRow("huge point") << 0.0 << 0.0 << QPointF(1e300, 1e300) << 0 << 10 << false;
        // Four billion ticks would never finish; they are left out.
        QTest::newRow("full int y axis")
            << 0.0 << 0.0 << QPointF(5, 0) << std::numeric_limits<int>::min()
            << std::numeric_limits<int>::max() << true;
    }

    void hostileDataStillPaints()
    {
        QFETCH(double, slope);
        QFETCH(double, intercept);
        QFETCH(QPointF, point);
        QFETCH(int, yMin);
        QFETCH(int, yMax);
        QFETCH(bool, dotInside);
        CustomChart chart;
        chart.setAxis(QString(), 1, 0, 10, QString(), 1, yMin, yMax);
        chart.setPoints({point});
        chart.setLine(slope, intercept);
        // The mark's ring and distance line meet the same data.
        chart.setFitMark(0);
        const QImage image = render(chart);
        QVERIFY(darkNear(image, 200, 234));
        QCOMPARE(darkPixelsInsidePlot(image) > 0, dotInside);
    }
};

QTEST_MAIN(TestCustomChart)
#include "tst_customchart.moc"
