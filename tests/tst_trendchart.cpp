#include "widget/trendchart.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace kellaser::trend;

namespace {

QVector<Sample> samplesAt(const QList<qint64> &times)
{
    QVector<Sample> samples;
    for (qint64 t : times) {
        Sample sample;
        sample.t = t;
        samples.append(sample);
    }
    return samples;
}

QList<qint64> timesOf(const QVector<Sample> &samples)
{
    QList<qint64> times;
    for (const Sample &sample : samples)
        times.append(sample.t);
    return times;
}

const QRectF kPlot(10, 20, 200, 100);

} // namespace

class TestTrendChart : public QObject
{
    Q_OBJECT

private slots:
    void readsStreamSamples_data()
    {
        QTest::addColumn<QJsonObject>("stream");
        QTest::addColumn<QList<qint64>>("times");
        QTest::addColumn<QList<double>>("firstValues");

        QTest::newRow("samples array, stream values ignored")
            << QJsonObject {{"time_ms", 150}, {"power", 9},
                   {"samples",
                       QJsonArray {
                           QJsonObject {{"t", 100}, {"power", 1500}, {"frequency", 2000},
                               {"duty_cycle", 80}, {"wire_speed", -12.5}, {"weld_speed", 20}},
                           QJsonObject {{"t", 150}, {"power", 1400}}}}}
            << QList<qint64> {100, 150} << QList<double> {1500, 2000, 80, -12.5, 20};
        QTest::newRow("entries without a numeric time dropped, odd values read 0")
            << QJsonObject {{"samples",
                   QJsonArray {QJsonObject {{"t", "100"}, {"power", 5}}, 7,
                       QJsonObject {{"t", 200}, {"power", "x"}, {"frequency", true}}}}}
            << QList<qint64> {200} << QList<double> {0, 0, 0, 0, 0};
        QTest::newRow("no samples: the stream's own values at its time")
            << QJsonObject {{"time_ms", 4000}, {"power", 1500}, {"weld_speed", 20}}
            << QList<qint64> {4000} << QList<double> {1500, 0, 0, 0, 20};
        QTest::newRow("no time either: the poll's time") << QJsonObject {{"power", 3},
            {"time_ms", "soon"}} << QList<qint64> {777} << QList<double> {3, 0, 0, 0, 0};
    }

    void readsStreamSamples()
    {
        QFETCH(QJsonObject, stream);
        QFETCH(QList<qint64>, times);
        QFETCH(QList<double>, firstValues);

        const QVector<Sample> samples = samplesFromStream(stream, 777);

        QCOMPARE(timesOf(samples), times);
        if (!samples.isEmpty()) {
            const auto &values = samples.first().values;
            QCOMPARE(QList<double>(values.begin(), values.end()), firstValues);
        }
    }

    void mergesPollsOnceInOrder_data()
    {
        QTest::addColumn<QList<qint64>>("history");
        QTest::addColumn<QList<qint64>>("incoming");
        QTest::addColumn<QList<qint64>>("merged");
        QTest::addColumn<int>("added");

        QTest::newRow("first poll takes all")
            << QList<qint64> {} << QList<qint64> {0, 50, 100} << QList<qint64> {0, 50, 100} << 3;
        QTest::newRow("overlapping poll adds only the newer")
            << QList<qint64> {0, 50, 100} << QList<qint64> {50, 100, 150, 200}
            << QList<qint64> {0, 50, 100, 150, 200} << 2;
        QTest::newRow("same poll again adds nothing")
            << QList<qint64> {0, 50} << QList<qint64> {0, 50} << QList<qint64> {0, 50} << 0;
        QTest::newRow("unordered and repeated incoming")
            << QList<qint64> {} << QList<qint64> {100, 0, 50, 50} << QList<qint64> {0, 50, 100}
            << 3;
        QTest::newRow("late poll keeps the gap's samples")
            << QList<qint64> {0, 50} << QList<qint64> {100, 150, 200, 250}
            << QList<qint64> {0, 50, 100, 150, 200, 250} << 4;
        QTest::newRow("clock started again replaces the history")
            << QList<qint64> {9000, 9050} << QList<qint64> {0, 50} << QList<qint64> {0, 50} << 2;
        QTest::newRow("empty poll")
            << QList<qint64> {10} << QList<qint64> {} << QList<qint64> {10} << 0;
    }

    void mergesPollsOnceInOrder()
    {
        QFETCH(QList<qint64>, history);
        QFETCH(QList<qint64>, incoming);
        QFETCH(QList<qint64>, merged);
        QFETCH(int, added);

        QVector<Sample> samples = samplesAt(history);
        QCOMPARE(mergeSamples(samples, samplesAt(incoming)), added);
        QCOMPARE(timesOf(samples), merged);
    }

    void trimsToWindow_data()
    {
        QTest::addColumn<QList<qint64>>("history");
        QTest::addColumn<QList<qint64>>("kept");

        QTest::newRow("all inside")
            << QList<qint64> {0, 5000, 10000} << QList<qint64> {0, 5000, 10000};
        QTest::newRow("older dropped, the last before the start kept")
            << QList<qint64> {0, 1000, 2000, 12500, 13000} << QList<qint64> {2000, 12500, 13000};
        QTest::newRow("a sample right at the start is enough")
            << QList<qint64> {0, 1000, 11000} << QList<qint64> {1000, 11000};
    }

    void trimsToWindow()
    {
        QFETCH(QList<qint64>, history);
        QFETCH(QList<qint64>, kept);

        QVector<Sample> samples = samplesAt(history);
        kellaser::trend::trimToWindow(samples, 10000);
        QCOMPARE(timesOf(samples), kept);
    }

    void choosesSeriesRange_data()
    {
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");

        QTest::newRow("next 1-2-5 step above") << QList<double> {0, 1500, 1420} << 0.0 << 2000.0;
        QTest::newRow("a whole decade stays") << QList<double> {1000} << 0.0 << 1000.0;
        QTest::newRow("retracting wire goes below 0") << QList<double> {-15, 40} << -20.0 << 50.0;
        QTest::newRow("all zero still spans") << QList<double> {0, 0} << 0.0 << 1.0;
    }

    void choosesSeriesRange()
    {
        QFETCH(QList<double>, values);
        QFETCH(double, min);
        QFETCH(double, max);

        QVector<Sample> samples;
        for (double value : values) {
            Sample sample;
            sample.values[3] = value;
            samples.append(sample);
        }
        const Range range = seriesRange(samples, 3);
        QCOMPARE(range.min, min);
        QCOMPARE(range.max, max);
    }

    void mapsTimeToX_data()
    {
        QTest::addColumn<qint64>("t");
        QTest::addColumn<qint64>("window");
        QTest::addColumn<double>("x");

        QTest::newRow("newest at the right edge") << qint64(10000) << qint64(10000) << 210.0;
        QTest::newRow("older than the window falls left")
            << qint64(-5000) << qint64(10000) << -90.0;
    }

    void mapsTimeToX()
    {
        QFETCH(qint64, t);
        QFETCH(qint64, window);
        QFETCH(double, x);
        QCOMPARE(timeToX(t, 10000, window, kPlot), x);
    }

    void mapsValueToY_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<double>("y");

        QTest::newRow("range min at the bottom") << 0.0 << 0.0 << 2000.0 << 120.0;
        QTest::newRow("quarter") << 500.0 << 0.0 << 2000.0 << 95.0;
        QTest::newRow("zero of a range below 0") << 0.0 << -20.0 << 80.0 << 100.0;
        QTest::newRow("above the range pinned to the top") << 3000.0 << 0.0 << 2000.0 << 20.0;
        QTest::newRow("below the range pinned to the bottom") << -1.0 << 0.0 << 2000.0 << 120.0;
        QTest::newRow("empty range at the bottom") << 5.0 << 5.0 << 5.0 << 120.0;
        QTest::newRow("NaN at the bottom")
            << std::numeric_limits<double>::quiet_NaN() << 0.0 << 1.0 << 120.0;
    }

    void mapsValueToY()
    {
        QFETCH(double, value);
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(double, y);
        QCOMPARE(valueToY(value, Range {min, max}, kPlot), y);
    }
};

QTEST_MAIN(TestTrendChart)
#include "tst_trendchart.moc"
