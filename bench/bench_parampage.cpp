// The weld parameter page with full records (30 weld data sets, 10 matching sets, both re-read
// on every show): its show at several port counts against the bare widget fill and against Qt
// showing the same page so filled; the weld profile preview redrawn after an edit; and the show
// in a frame in which a weld streams to the monitor's trend.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"

#include "page/weldparameterpage.h"
#include "widget/previewchart.h"
#include "widget/trendchart.h"

#include "controller/controllersimulator.h"
#include "controller/programrunner.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>
#include <QSpinBox>
#include <QTemporaryDir>

namespace {

QJsonObject fullWeldDataRecord()
{
    QJsonObject record;
    for (int n = 1; n <= WeldParameterPage::weldDataSetCount; ++n) {
        QJsonObject set;
        for (const QString &key : WeldParameterPage::weldDataKeys())
            set.insert(key, n * 10);
        set.insert(QStringLiteral("Tips"), QStringLiteral("set %1").arg(n));
        record.insert(QStringLiteral("LsData%1").arg(n), set);
    }
    return record;
}

QJsonObject fullMatchRecord()
{
    QJsonObject record;
    for (int n = 1; n <= WeldParameterPage::matchingSetCount; ++n) {
        QJsonArray nodes;
        for (int node = 1; node <= 4; ++node)
            nodes.append(QJsonArray {node * 10.0, node * 100.0, node * 1000.0, node * 10.0});
        record.insert(QStringLiteral("PowerData%1").arg(n),
            QJsonObject {{QStringLiteral("PowerDataID"), QStringLiteral("PowerData%1").arg(n)},
                {QStringLiteral("power_enable"), true}, {QStringLiteral("frequency_enable"), false},
                {QStringLiteral("dutycycle_enable"), false},
                {QStringLiteral("power_data"), nodes}});
    }
    return record;
}

// The page as the plug-in holds it: inside a visible parent, so that show() is the page's own.
struct Setup
{
    explicit Setup(int ports) : fixture(ports), page(nullptr, &host)
    {
        fixture.controller.serviceData.insert(
            QStringLiteral("weld_param_config"), fullWeldDataRecord());
        fixture.controller.serviceData.insert(
            QStringLiteral("weld_param_match"), fullMatchRecord());
        host.show();
        PageLoops::settle();
    }
    PageFixture fixture;
    QWidget host;
    WeldParameterPage page;
};

// An edit in the weld data editor: the profile worked out from the form and painted.
void profileRedraw(benchmark::State &state)
{
    Setup setup(64);
    auto *ramp = setup.page.findChild<QSpinBox *>(QStringLiteral("spinBox_ramp_value_end"));
    auto *chart = setup.page.findChild<PreviewChart *>(QStringLiteral("weldProfileChart"));
    chart->resize(420, 300);
    QImage image(chart->size(), QImage::Format_RGB32);
    int edits = 0;
    for (auto _ : state) {
        ramp->setValue(100 + ++edits % 2);
        QPainter painter(&image);
        chart->paint(painter);
    }
}

// The page shown in a frame in which a weld runs in real time: the controller advances by one
// frame (sampling every 50 ms), the monitor reads the stream, merges it into its trend and
// paints it. The monitor reads every 100 ms; reading in every frame is the worst case.
void streamingShow(benchmark::State &state)
{
    Setup setup(1024);
    QTemporaryDir dir;
    kelcontroller::ControllerSimulator sim(dir.path());
    sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QStringLiteral("set_weld_enable"), QStringLiteral("TRUE"));
    sim.setRobotPowered(true);
    sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        {{QStringLiteral("start_laserweld_monitor"), true}});
    kelcontroller::ProgramRunner *runner = sim.runner();
    runner->setRealTime(false);
    const QStringList seam {
        QStringLiteral("LsMoveL(p10, v1000, fine, tool0, wobj0);"),
        QStringLiteral("LaserOn(\"LsData2\");"),
        QStringLiteral("LsParaMatch(\"PowerData2\");"),
        QStringLiteral("LsMoveL(Offs(p10,600,0,0), v10, fine, tool0, wobj0);"),
        QStringLiteral("LaserOff;"),
    };
    TrendChart trend;
    trend.resize(540, 340);
    QImage image(trend.size(), QImage::Format_RGB32);
    for (auto _ : state) {
        state.PauseTiming();
        setup.page.hide();
        if (runner->state() == kelcontroller::ProgramRunner::State::Idle && !runner->run(seam)) {
            state.SkipWithError("the weld was refused");
            break;
        }
        state.ResumeTiming();
        runner->advance(17);
        const QJsonObject stream
            = sim.getKelServiceData(QStringLiteral("weld_monitor_data")).toObject();
        trend.addSamples(kellaser::trend::samplesFromStream(stream, runner->now()));
        QPainter painter(&image);
        trend.paint(painter);
        painter.end();
        setup.page.show();
        PageLoops::settle();
    }
}

} // namespace

void registerBenchmarks()
{
    PageLoops::addShows<Setup>("parampage_show", "ref_widget_fill");
    kelbench::add(kelbench::name("parampage_profile_redraw", "ours"), profileRedraw)
        ->Unit(benchmark::kMicrosecond);
    kelbench::add(kelbench::name("parampage_streaming_show", "ours", 1024), streamingShow)
        ->Unit(benchmark::kMillisecond);
}

KEL_BENCHMARK_MAIN()
