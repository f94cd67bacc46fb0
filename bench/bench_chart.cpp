// Painting cost of one calibration chart: ten nodes and the fitted line, as the curve page
// repaints it after each compute.

#include "widget/customchart.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

static void paintChartWithTenPoints(benchmark::State &state)
{
    CustomChart chart;
    chart.setAxis(QStringLiteral("%"), 10, 0, 100, QStringLiteral("W"), 500, 0, 4000);
    chart.setAxisLabels(QStringLiteral("Analog"), QStringLiteral("Power"));
    QVector<QPointF> points;
    for (int i = 0; i < 10; ++i)
        points.append(QPointF(i * 10.0 + 5, i * 380.0 + 40));
    chart.setPoints(points);
    chart.setLine(38.0, 40.0);
    QImage image(chart.size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        chart.paint(painter);
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(paintChartWithTenPoints);

int main(int argc, char **argv)
{
    // Widgets need an application; no screen is needed to paint into an image.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
