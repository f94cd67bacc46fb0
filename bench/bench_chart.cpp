// Painting one calibration chart, ten nodes and the fitted line, as the curve page repaints it
// after each compute, against replaying the same drawing recorded once: what the chart adds is
// its arithmetic and its calls, the rest is the painter's.
#include "benchmain.h"

#include "widget/customchart.h"

#include <QImage>
#include <QPainter>
#include <QPicture>

#include <functional>

namespace {

void setUp(CustomChart &chart)
{
    chart.setAxis(QStringLiteral("%"), 10, 0, 100, QStringLiteral("W"), 500, 0, 4000);
    chart.setAxisLabels(QStringLiteral("Analog"), QStringLiteral("Power"));
    QVector<QPointF> points;
    for (int i = 0; i < 10; ++i)
        points.append(QPointF(i * 10.0 + 5, i * 380.0 + 40));
    chart.setPoints(points);
    chart.setLine(38.0, 40.0);
}

void paintInto(
    benchmark::State &state, const QSize &size, const std::function<void(QPainter &)> &draw)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        draw(painter);
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}

void paintChart(benchmark::State &state)
{
    CustomChart chart;
    setUp(chart);
    paintInto(state, chart.size(), [&chart](QPainter &painter) { chart.paint(painter); });
}

void replayPicture(benchmark::State &state)
{
    CustomChart chart;
    setUp(chart);
    QPicture picture;
    {
        QPainter recorder(&picture);
        chart.paint(recorder);
    }
    paintInto(state, chart.size(), [&picture](QPainter &painter) { picture.play(&painter); });
}

} // namespace

void registerBenchmarks()
{
    kelbench::add(kelbench::name("chart_paint", "ours"), paintChart)->Unit(benchmark::kMicrosecond);
    kelbench::add(kelbench::name("chart_paint", "ref_picture_replay"), replayPicture)
        ->Unit(benchmark::kMicrosecond);
}

KEL_BENCHMARK_MAIN()
