// The weld parameter page with full records (30 weld data sets, 10 matching sets, both re-read
// on every show): its show at several port counts against the bare widget fill and against Qt
// showing the same page so filled; and the weld profile preview redrawn after an edit.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"

#include "page/weldparameterpage.h"
#include "widget/previewchart.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>
#include <QSpinBox>

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

} // namespace

void registerBenchmarks()
{
    PageLoops::addShows<Setup>("parampage_show", "ref_widget_fill");
    kelbench::add(kelbench::name("parampage_profile_redraw", "ours"), profileRedraw)
        ->Unit(benchmark::kMicrosecond);
}

KEL_BENCHMARK_MAIN()
