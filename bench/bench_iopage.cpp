#include "benchmain.h"

#include "page/portcatalogue.h"
#include "page/weldiopage.h"
#include "page/weldsettingpage.h"
#include "support/scriptedcontroller.h"

#include <QComboBox>
#include <QJsonObject>

namespace {

const int kPorts = 1024;

// The host's lists, 1,024 ports of each type, and a record that uses some of them.
void script(ScriptedController &controller)
{
    for (const char *type : {"AI", "AO", "DI", "DO", "GI", "GO"}) {
        QStringList names;
        for (int i = kPorts; i > 0; --i)
            names.append(QLatin1String(type) + QString::number(i));
        controller.ports.insert(QLatin1String(type), names);
    }
    controller.serviceData.insert(QStringLiteral("weld_io_config"),
        QJsonObject {{"laser_enable_port", "DO1"}, {"gas_protect_port", "DO2"}, {"power_type", 1},
            {"power_port", "GO7"}, {"power_enabled", true}, {"light_feedback_port", "DI3"},
            {"light_feedback_enabled", true}});
    controller.serviceData.insert(
        QStringLiteral("weld_setting_config"), QJsonObject {{"wire_feed_type", 1}});
}

void showIoPage(benchmark::State &state)
{
    ScriptedController controller;
    script(controller);
    WeldSettingPage settings;
    WeldioPage page(&settings);
    page.show();
    for (auto _ : state) {
        state.PauseTiming();
        page.hide();
        state.ResumeTiming();
        page.show();
    }
}

// The floor: the same 22 drop-downs filled with the same, already sorted lists.
void fillComboBoxesOnly(benchmark::State &state)
{
    ScriptedController controller;
    script(controller);
    WeldSettingPage settings;
    WeldioPage page(&settings);
    page.show();
    QList<QComboBox *> combos;
    for (QComboBox *combo : page.findChildren<QComboBox *>()) {
        if (combo->objectName().endsWith(QLatin1String("_port")))
            combos.append(combo);
    }
    QHash<QComboBox *, QStringList> lists;
    for (QComboBox *combo : combos) {
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        lists.insert(combo, items);
    }
    if (combos.size() != 22)
        state.SkipWithError("expected 22 port drop-downs");
    for (auto _ : state) {
        for (QComboBox *combo : combos) {
            combo->clear();
            combo->addItems(lists.value(combo));
        }
    }
}

} // namespace

BENCHMARK(showIoPage)->Unit(benchmark::kMillisecond);
BENCHMARK(fillComboBoxesOnly)->Unit(benchmark::kMillisecond);

KEL_BENCHMARK_MAIN()
