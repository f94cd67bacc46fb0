// The characteristic curve page with full records (ten nodes on every curve, every curve's port
// assigned): its show at several port counts against the bare widget fill and against Qt
// showing the same page so filled; a show that recomputes all four charts; one compute.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"

#include "page/characteristicscurvepage.h"
#include "page/curveaxes.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPushButton>

namespace {

void fillFullRecords(ScriptedController &controller)
{
    const char *const curves[][2] = {{"laser_power_node", "power_nodes_data"},
        {"laser_feed_node", "feed_nodes_data"}, {"laser_frequency_node", "frequency_nodes_data"},
        {"laser_dutycycle_node", "dutycycle_nodes_data"}};
    QJsonObject record;
    for (const auto &curve : curves) {
        QJsonArray nodes;
        for (int k = 0; k < 10; ++k)
            nodes.append(QJsonArray {k * 6553.5, 1 + k * 11});
        record.insert(QLatin1String(curve[0]), 10);
        record.insert(QLatin1String(curve[1]), nodes);
    }
    controller.serviceData.insert(QStringLiteral("weld_curve_config"), record);

    QJsonObject io = controller.serviceData.value(QStringLiteral("weld_io_config")).toObject();
    for (const char *name : {"power", "wire_speed", "frequency", "duty_cycle"}) {
        io.insert(QLatin1String(name) + QStringLiteral("_enabled"), true);
        io.insert(QLatin1String(name) + QStringLiteral("_port"), QStringLiteral("GO1"));
    }
    controller.serviceData.insert(QStringLiteral("weld_io_config"), io);

    const QJsonObject fit {{QStringLiteral("slope"), 0.0017}, {QStringLiteral("intercept"), 1.0}};
    controller.repliesByCommand.insert(QStringLiteral("compute_curve_config"),
        QJsonArray {QJsonObject {{QStringLiteral("kellaserweld"),
            QJsonObject {{QStringLiteral("compute_curve_config"), fit}}}}});
}

// The page as the plug-in holds it: inside a visible parent, so that show() is the page's own.
struct Setup
{
    explicit Setup(int ports, bool withLines = false) : fixture(ports), page(nullptr, &host)
    {
        fillFullRecords(fixture.controller);
        host.show();
        PageLoops::settle();
        // With a line on every chart, each show computes all four again.
        if (withLines) {
            for (const char *name : {"pushButton_compute", "pushButton_compute_5",
                     "pushButton_compute_2", "pushButton_compute_3"})
                page.findChild<QPushButton *>(QLatin1String(name))->click();
            PageLoops::settle();
        }
    }
    PageFixture fixture;
    QWidget host;
    CharacteristicsCurvePage page;
};

void axisChoice(benchmark::State &state)
{
    QVector<QPointF> points;
    for (int k = 0; k < 10; ++k)
        points.append(QPointF(k * 6553.5, 1 + k * 11));
    for (auto _ : state)
        benchmark::DoNotOptimize(CurveAxes::choose(points));
}

} // namespace

void registerBenchmarks()
{
    PageLoops::addShows<Setup>("curvepage_show", "ref_widget_fill");
    kelbench::add(kelbench::name("curvepage_show_lines", "ours", 1024), [](benchmark::State &s) {
        Setup setup(1024, true);
        PageLoops::show(s, &setup.page);
    })->Unit(benchmark::kMillisecond);
    // Compute button: validation, curve object, request, fit, axis choice and chart feed.
    PageLoops::addClick<Setup>("curvepage_compute", "pushButton_compute");
    kelbench::add(kelbench::name("curve_axes", "ours"), axisChoice);
}

KEL_BENCHMARK_MAIN()
