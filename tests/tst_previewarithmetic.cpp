#include "page/fitquality.h"
#include "page/matchingcurve.h"
#include "page/weldprofile.h"
#include "support/testenvironment.h"
#include "widget/previewchart.h"

#include <QPainter>
#include <QtTest>

#include <cmath>
#include <limits>

using kellaser::FitQuality;
using kellaser::MatchingCurve;
using kellaser::WeldProfile;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

using Nodes = QVector<MatchingCurve::Node>;

QPolygonF line(std::initializer_list<QPointF> points)
{
    return QPolygonF(QVector<QPointF>(points));
}

// Laser values of a set whose end ramp ends before the laser goes off: LaserOff at 300 ms
// (start phase 100 ms, then the shortest weld stretch of 200 ms), laser off at 360 ms. No wire
// moves.
QJsonObject laserSet()
{
    return {{"laser_power_start", 500}, {"ramp_value_start", 100}, {"delay_time_start", 50},
        {"laser_power_weld", 1000}, {"laser_power_end", 200}, {"ramp_value_end", 40},
        {"delay_time_end", 60}, {"feeding_speed_run", 0}};
}

QList<int> issuesOf(const WeldProfile &profile)
{
    QList<int> issues;
    for (const WeldProfile::Problem &problem : profile.problems)
        issues.append(problem.issue);
    return issues;
}

bool sameOrBothNaN(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || qFuzzyCompare(1.0 + a, 1.0 + b);
}

} // namespace

Q_DECLARE_METATYPE(Nodes)

class TestPreviewArithmetic : public QObject
{
    Q_OBJECT

private slots:
    void profileBreakpoints_data()
    {
        QTest::addColumn<QJsonObject>("set");
        QTest::addColumn<QPolygonF>("power");
        QTest::addColumn<QPolygonF>("wire");
        QTest::addColumn<QList<int>>("issues");

        QTest::newRow("end ramp within the laser off delay")
            << laserSet()
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {340, 200}, {360, 200}, {360, 0}})
            << QPolygonF() << QList<int>();
        QTest::newRow("end ramp longer than the delay is cut at laser off")
            << testenv::patched(laserSet(), {{"ramp_value_end", 100}, {"delay_time_end", 50}})
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {350, 600}, {350, 0}})
            << QPolygonF() << QList<int> {WeldProfile::RampDownCut};
        QTest::newRow("no ramps or delays: start and end powers never reached")
            << QJsonObject {{"laser_power_start", 1200}, {"ramp_value_start", 0},
                   {"delay_time_start", 0}, {"laser_power_weld", 1000}, {"laser_power_end", 1100},
                   {"ramp_value_end", 0}, {"delay_time_end", 0}, {"feeding_speed_run", 0}}
            << line({{0, 0}, {0, 1000}, {200, 1000}, {200, 0}}) << QPolygonF()
            << QList<int> {WeldProfile::StartAboveWeld, WeldProfile::EndAboveWeld};
        QTest::newRow("wire start, end feed, retract, compensation after its delay")
            << testenv::patched(laserSet(),
                   {{"wire_feed_enable_start", true}, {"feeding_speed_start", 10},
                       {"wire_feed_time_start", 150}, {"feeding_speed_run", 40},
                       {"wire_feed_enable_end", true}, {"wire_speed_end", 20},
                       {"wire_feed_time_end", 100}, {"wire_retraction_end", true},
                       {"wire_retract_end", 30}, {"wire_retract_time_end", 200},
                       {"wire_fill_com_end", true}, {"fill_delay_time_end", 50},
                       {"fill_wire_speed_end", 0}, {"fill_wire_time_end", 100}})
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {340, 200}, {360, 200}, {360, 0},
                   {750, 0}})
            << line({{0, 0}, {0, 10}, {150, 10}, {150, 40}, {300, 40}, {300, 20}, {400, 20},
                   {400, -30}, {600, -30}, {600, 0}, {650, 0}, {750, 0}})
            << QList<int> {WeldProfile::CompensationEmpty};
        QTest::newRow("start wire longer than the start phase is cut at LaserOff")
            << testenv::patched(laserSet(),
                   {{"wire_feed_enable_start", true}, {"feeding_speed_start", 10},
                       {"wire_feed_time_start", 5000}, {"feeding_speed_run", 40}})
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {340, 200}, {360, 200}, {360, 0}})
            << line({{0, 0}, {0, 10}, {300, 10}, {300, 0}, {360, 0}}) << QList<int>();
        QTest::newRow("laser welding: no wire, whatever its other keys say")
            << testenv::patched(laserSet(),
                   {{"feeding_speed_run", 40}, {"wire_retraction_end", true},
                       {"wire_retract_end", 30}, {"wire_retract_time_end", 200}})
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {340, 200}, {360, 200}, {360, 0}})
            << QPolygonF() << QList<int>();
        QTest::newRow("filler wire that moves nothing draws no wire lane")
            << testenv::patched(laserSet(),
                   {{"wire_feed_enable_end", true}, {"wire_speed_end", 0},
                       {"wire_feed_time_end", 100}})
            << line({{0, 0}, {0, 500}, {100, 1000}, {300, 1000}, {340, 200}, {360, 200}, {360, 0}})
            << QPolygonF() << QList<int> {WeldProfile::WireEndEmpty};
        QTest::newRow("missing, mistyped, NaN and negative values draw as 0")
            << QJsonObject {{"laser_power_weld", "1000"}, {"ramp_value_end", -5},
                   {"delay_time_end", kNaN}, {"laser_power_start", 100}, {"ramp_value_start", 0},
                   {"delay_time_start", 0}, {"laser_power_end", 0}, {"feeding_speed_run", 0}}
            << line({{0, 0}, {200, 0}}) << QPolygonF()
            << QList<int> {WeldProfile::BadValue, WeldProfile::BadValue, WeldProfile::BadValue,
                   WeldProfile::StartAboveWeld};
        QTest::newRow("hand-edited hour-long ramp held at the controller's limit")
            << testenv::patched(laserSet(), {{"ramp_value_start", 3.6e6}, {"delay_time_start", 0}})
            << line({{0, 0}, {0, 500}, {60000, 1000}, {90030, 1000}, {90070, 200}, {90090, 200},
                   {90090, 0}})
            << QPolygonF() << QList<int>();
    }

    void profileBreakpoints()
    {
        QFETCH(QJsonObject, set);
        QFETCH(QPolygonF, power);
        QFETCH(QPolygonF, wire);
        QFETCH(QList<int>, issues);

        const WeldProfile profile = WeldProfile::fromSet(set);
        QCOMPARE(profile.power, power);
        QCOMPARE(profile.wire, wire);
        QCOMPARE(issuesOf(profile), issues);
        QCOMPARE(profile.hint().isEmpty(), issues.isEmpty());
    }

    void namePlacement_data()
    {
        QTest::addColumn<QRectF>("wanted");
        QTest::addColumn<QVector<QRectF>>("taken");
        QTest::addColumn<bool>("up");
        QTest::addColumn<QRectF>("placed"); // null: left out

        // Bounds 0..100 both ways; names 20 wide, 10 high.
        const QRectF foot(10, 90, 20, 10);
        QTest::newRow("clear: where wanted") << foot << QVector<QRectF> {} << true << foot;
        QTest::newRow("touching another is clear")
            << foot << QVector<QRectF> {{30, 90, 20, 10}} << true << foot;
        QTest::newRow("a moment's name moves up past two in its way")
            << foot << QVector<QRectF> {{0, 85, 20, 15}, {15, 70, 20, 15}} << true
            << QRectF(10, 60, 20, 10);
        QTest::newRow("a lane's name moves right past the one in its way")
            << foot << QVector<QRectF> {{0, 90, 25, 10}} << false << QRectF(25, 90, 20, 10);
        QTest::newRow("no room to the right: left out")
            << foot << QVector<QRectF> {{0, 90, 85, 10}} << false << QRectF();
        QTest::newRow("past the right edge: left out")
            << QRectF(95, 90, 20, 10) << QVector<QRectF> {} << true << QRectF();
    }

    void namePlacement()
    {
        QFETCH(QRectF, wanted);
        QFETCH(QVector<QRectF>, taken);
        QFETCH(bool, up);
        QFETCH(QRectF, placed);

        QCOMPARE(kellaser::preview::placeName(wanted, {0, 0, 100, 100}, taken, up), placed);
    }

    void matchingValueAt_data()
    {
        QTest::addColumn<Nodes>("nodes");
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("power");
        // Drawn up to 40 mm/s: held flat from 0 to the first node and from the last node on.
        QTest::addColumn<QPolygonF>("course");

        const Nodes rising {{5, 800, 0, 0}, {10, 1200, 0, 0}, {20, 1800, 0, 0}, {30, 2400, 0, 0}};
        const QPolygonF risingCourse
            = line({{0, 800}, {5, 800}, {10, 1200}, {20, 1800}, {30, 2400}, {40, 2400}});
        QTest::newRow("between two nodes") << rising << 15.0 << 1500.0 << risingCourse;
        QTest::newRow("below the first node: held") << rising << 2.0 << 800.0 << risingCourse;
        QTest::newRow("above the last node: held") << rising << 40.0 << 2400.0 << risingCourse;
        QTest::newRow("nodes out of order are taken by speed")
            << Nodes {{20, 1800, 0, 0}, {5, 800, 0, 0}, {30, 2400, 0, 0}, {10, 1200, 0, 0}} << 25.0
            << 2100.0 << risingCourse;
        QTest::newRow("negative and NaN values count 0") << Nodes {{-5, kNaN, 0, 0},
            {10, 1000, 0, 0}} << 5.0 << 500.0 << line({{0, 0}, {0, 0}, {10, 1000}, {40, 1000}});
        QTest::newRow("no nodes") << Nodes() << 5.0 << 0.0 << QPolygonF();
    }

    void matchingValueAt()
    {
        QFETCH(Nodes, nodes);
        QFETCH(double, speed);
        QFETCH(double, power);
        QFETCH(QPolygonF, course);

        const MatchingCurve curve(nodes);
        QCOMPARE(curve.valueAt(MatchingCurve::Power, speed), power);
        QCOMPARE(curve.course(MatchingCurve::Power, 40), course);
    }

    void matchingRefusal_data()
    {
        QTest::addColumn<Nodes>("nodes");
        QTest::addColumn<bool>("powerChecked");
        QTest::addColumn<int>("node");
        QTest::addColumn<int>("column");

        const Nodes rising {
            {5, 800, 2000, 40}, {10, 1200, 3000, 60}, {20, 1800, 4000, 80}, {30, 2400, 5000, 100}};
        QTest::newRow("all rising") << rising << true << -1 << 0;
        Nodes equalSpeeds = rising;
        equalSpeeds[2][0] = 10;
        QTest::newRow("equal speeds refuse the later node") << equalSpeeds << true << 2 << 0;
        Nodes fallingPower = equalSpeeds;
        fallingPower[2][1] = 1000;
        QTest::newRow("power before speed") << fallingPower << true << 2 << 1;
        QTest::newRow("power not checked when switched off") << fallingPower << false << 2 << 0;
    }

    void matchingRefusal()
    {
        QFETCH(Nodes, nodes);
        QFETCH(bool, powerChecked);
        QFETCH(int, node);
        QFETCH(int, column);

        const auto refusal = MatchingCurve::firstRefusal(nodes, {true, powerChecked, true, true});
        QCOMPARE(refusal.node, node);
        if (node >= 0)
            QCOMPARE(int(refusal.column), column);
    }

    void fitDeviations_data()
    {
        QTest::addColumn<QVector<QPointF>>("nodes");
        QTest::addColumn<double>("slope");
        QTest::addColumn<double>("intercept");
        QTest::addColumn<QVector<double>>("deviations");
        QTest::addColumn<QVector<double>>("percents");
        QTest::addColumn<int>("largest");
        QTest::addColumn<QPointF>("offOthers"); // in the unit and in %; NaN: not judged so
        QTest::addColumn<double>("rSquared");

        // Mean 15.5: total squares 240.25 + 30.25 + 42.25 + 210.25 = 523, residual squares 4.
        QTest::newRow("one node 10 % off the line")
            << QVector<QPointF> {{0, 0}, {1, 10}, {2, 22}, {3, 30}} << 10.0 << 0.0
            << QVector<double> {0, 0, 2, 0} << QVector<double> {kNaN, 0, 10, 0} << 2
            << QPointF(2, 10) << 1.0 - 4.0 / 523.0;
        // The least-squares line through 15 W per step with the last node typed 10 % high is
        // 16.35 x - 90: node 3 lies further from it than node 4. Weighed by leverage (0.7, 0.3,
        // 0.3, 0.7) node 4 leads, 246.5 to 215.1; the line through the others misses it by
        // 450 W. Mean 2362.5: total squares 13426875, residual squares 60750.
        QTest::newRow("an end node 10 % off: the line leans to it")
            << QVector<QPointF> {{0, 0}, {100, 1500}, {200, 3000}, {300, 4950}} << 16.35 << -90.0
            << QVector<double> {90, -45, -180, 135}
            << QVector<double> {100, -4500.0 / 1545, -18000.0 / 3180, 13500.0 / 4815} << 3
            << QPointF(450, 10) << 1.0 - 60750.0 / 13426875.0;
        // Interior node off, end node leaning: weighed 0.37, 0.48, 1.67, 1.46 - the interior
        // one leads although the line through the others misses the end node by more.
        QTest::newRow("an inner node off, the line fitted")
            << QVector<QPointF> {{0, 0}, {1, 10}, {2, 22}, {3, 30}} << 10.2 << 0.2
            << QVector<double> {-0.2, -0.4, 1.4, -0.8}
            << QVector<double> {-100, -0.4 / 10.4 * 100, 1.4 / 20.6 * 100, -0.8 / 30.8 * 100} << 2
            << QPointF(2, 10) << 1.0 - 2.8 / 523.0;
        QTest::newRow("three nodes: the largest deviation, not judged")
            << QVector<QPointF> {{0, 1}, {1, 3}, {2, 6}} << 2.5 << 0.8
            << QVector<double> {0.2, -0.3, 0.2}
            << QVector<double> {25, -0.3 / 3.3 * 100, 0.2 / 5.8 * 100} << 1 << QPointF(kNaN, kNaN)
            << 1.0 - 0.17 / (38.0 / 3.0);
        QTest::newRow("equal deviations: the first is the largest")
            << QVector<QPointF> {{0, 1}, {1, 3}} << 2.0 << 0.0 << QVector<double> {1, 1}
            << QVector<double> {kNaN, 50} << 0 << QPointF(kNaN, kNaN) << 1.0 - 2.0 / 2.0;
        // 0.02 reads 0.0: nothing to mark. Mean 4.005, total squares 20.0403.
        QTest::newRow("every node on the line as shown: none stands out")
            << QVector<QPointF> {{0, 1}, {1, 3}, {2, 5.02}, {3, 7}} << 2.0 << 1.0
            << QVector<double> {0, 0, 0.02, 0} << QVector<double> {0, 0, 0.4, 0} << -1
            << QPointF(kNaN, kNaN) << 1.0 - 0.0004 / 20.0403;
        QTest::newRow("all values equal: no R²")
            << QVector<QPointF> {{0, 5}, {1, 5}} << 1.0 << 0.0 << QVector<double> {5, 4}
            << QVector<double> {kNaN, 400} << 0 << QPointF(kNaN, kNaN) << kNaN;
    }

    void fitDeviations()
    {
        QFETCH(QVector<QPointF>, nodes);
        QFETCH(double, slope);
        QFETCH(double, intercept);
        QFETCH(QVector<double>, deviations);
        QFETCH(QVector<double>, percents);
        QFETCH(int, largest);
        QFETCH(QPointF, offOthers);
        QFETCH(double, rSquared);

        const FitQuality quality = FitQuality::of(nodes, slope, intercept);
        QVERIFY(quality.usable);
        QCOMPARE(quality.deviations.size(), deviations.size());
        QCOMPARE(quality.percents.size(), percents.size());
        for (int i = 0; i < percents.size(); ++i) {
            QVERIFY2(sameOrBothNaN(quality.deviations.at(i), deviations.at(i)),
                qPrintable(QString::number(i)));
            QVERIFY2(sameOrBothNaN(quality.percents.at(i), percents.at(i)),
                qPrintable(QString::number(i)));
        }
        QCOMPARE(quality.largest, largest);
        QCOMPARE(quality.againstOthers, !std::isnan(offOthers.x()));
        if (quality.againstOthers) {
            QVERIFY(sameOrBothNaN(quality.offOthers, offOthers.x()));
            QVERIFY(sameOrBothNaN(quality.offOthersPercent, offOthers.y()));
        }
        QVERIFY(sameOrBothNaN(quality.rSquared, rSquared));
    }

    void chartPlacesDotsAcrossThePlot_data()
    {
        QTest::addColumn<double>("largest");
        QTest::addColumn<double>("x");
        QTest::addColumn<int>("column");

        // A 400 px chart plots from x 8 to 392 (384 px).
        QTest::newRow("zero at the left edge") << 10.0 << 0.0 << 8;
        QTest::newRow("largest at the right edge") << 10.0 << 10.0 << 392;
        // The axis runs on to 8, a whole number of steps of 2.
        QTest::newRow("axis widened past the largest") << 7.0 << 7.0 << 344;
    }

    void chartPlacesDotsAcrossThePlot()
    {
        QFETCH(double, largest);
        QFETCH(double, x);
        QFETCH(int, column);

        const QColor colour(0, 0, 255);
        PreviewChart chart;
        chart.resize(400, 300);
        PreviewChart::Content content;
        content.xLargest = largest;
        // No course: the dot is all there is of the lane's colour.
        content.lanes.append({"lane", "W", colour, QPolygonF(), line({{x, 1}})});
        chart.setContent(content);
        QImage image(chart.size(), QImage::Format_RGB32);
        QPainter painter(&image);
        chart.paint(painter);
        painter.end();

        int left = image.width();
        int right = -1;
        for (int y = 0; y < image.height(); ++y) {
            for (int px = 0; px < image.width(); ++px) {
                if (image.pixelColor(px, y) == colour) {
                    left = std::min(left, px);
                    right = std::max(right, px);
                }
            }
        }
        QVERIFY2(std::abs((left + right) / 2 - column) <= 1,
            qPrintable(QStringLiteral("dot from %1 to %2").arg(left).arg(right)));
    }
};

QTEST_MAIN(TestPreviewArithmetic)
#include "tst_previewarithmetic.moc"
