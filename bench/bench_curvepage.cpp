#include "benchmain.h"
#include "page/characteristicscurvepage.h"
#include "page/curveaxes.h"
#include "support/scriptedcontroller.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPushButton>
#include <QShowEvent>

namespace {

// Ten nodes on every curve, all ports assigned: the largest tables an operator can make.
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

    QJsonObject io;
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

void sendShow(QWidget &page)
{
    QShowEvent event;
    QApplication::sendEvent(&page, &event);
    // What the pendant's event loop does after a show: lay out, and delete the spin boxes the
    // reloaded tables dropped with deleteLater. Left queued, they slow every later iteration.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Compute button: validation, curve object, request, fit, axis choice and chart feed.
void computeTab(benchmark::State &state)
{
    ScriptedController controller;
    fillFullRecords(controller);
    CharacteristicsCurvePage page(nullptr);
    sendShow(page);
    auto *compute = page.findChild<QPushButton *>(QStringLiteral("pushButton_compute"));
    for (auto _ : state) {
        compute->click();
        controller.clearSent();
        QCoreApplication::sendPostedEvents();
    }
}
BENCHMARK(computeTab)->Unit(benchmark::kMicrosecond);

// Show event with full records: load four tables, port lookup, lock; with range 1 every chart
// already has a line, so all four are computed again.
void showPage(benchmark::State &state)
{
    ScriptedController controller;
    fillFullRecords(controller);
    CharacteristicsCurvePage page(nullptr);
    sendShow(page);
    if (state.range(0) != 0) {
        for (const char *name : {"pushButton_compute", "pushButton_compute_5",
                 "pushButton_compute_2", "pushButton_compute_3"})
            page.findChild<QPushButton *>(QLatin1String(name))->click();
    }
    for (auto _ : state) {
        sendShow(page);
        controller.clearSent();
    }
}
BENCHMARK(showPage)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void axisChoice(benchmark::State &state)
{
    QVector<QPointF> points;
    for (int k = 0; k < 10; ++k)
        points.append(QPointF(k * 6553.5, 1 + k * 11));
    for (auto _ : state)
        benchmark::DoNotOptimize(CurveAxes::choose(points));
}
BENCHMARK(axisChoice);

} // namespace

KEL_BENCHMARK_MAIN()
