// Cost of showing the weld parameter page with full records (30 weld data sets, 10 matching
// sets): both lists are re-read from the controller on every show.

#include "benchmain.h"
#include "page/weldparameterpage.h"
#include "support/scriptedcontroller.h"

#include <QJsonArray>
#include <QJsonObject>

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

} // namespace

static void showWithFullRecords(benchmark::State &state)
{
    ScriptedController controller;
    controller.serviceData.insert(QStringLiteral("weld_param_config"), fullWeldDataRecord());
    controller.serviceData.insert(QStringLiteral("weld_param_match"), fullMatchRecord());
    QWidget mainPage;
    auto *page = new WeldParameterPage(nullptr, &mainPage);
    mainPage.show();
    for (auto _ : state) {
        page->hide();
        page->show();
        // The controller stand-in records every read; keep it from growing.
        controller.readKeys.clear();
    }
}
BENCHMARK(showWithFullRecords);

KEL_BENCHMARK_MAIN()
