// The I/O mapping page's actions at several port counts, against the bare cost of filling its
// 22 port drop-downs with the same lists.
#include "benchmain.h"
#include "pagefixture.h"
#include "widgetfill.h"

#include "page/weldiopage.h"
#include "page/weldsettingpage.h"

#include <QComboBox>
#include <QPushButton>

namespace {

// The page as the plug-in holds it: inside a visible parent, so that show() is the page's own.
struct Setup
{
    explicit Setup(int ports) : fixture(ports), settings(&host), page(&settings, &host)
    {
        settings.hide();
        host.show();
        page.show();
    }
    PageFixture fixture;
    QWidget host;
    WeldSettingPage settings;
    WeldioPage page;
};

bool isPortList(QWidget *widget)
{
    return widget->objectName().endsWith(QLatin1String("_port"));
}

// Posted events run inside the timing on both sides: the layout pass a refill causes is part
// of its cost, whether it runs now or at the next show.
void show(benchmark::State &state, int ports)
{
    Setup setup(ports);
    for (auto _ : state) {
        state.PauseTiming();
        setup.page.hide();
        state.ResumeTiming();
        setup.page.show();
        QCoreApplication::sendPostedEvents();
    }
}

void fill(benchmark::State &state, int ports)
{
    Setup setup(ports);
    WidgetFill fill(&setup.page, isPortList);
    if (fill.comboCount() != 22)
        state.SkipWithError("expected 22 port drop-downs");
    for (auto _ : state) {
        fill.apply();
        QCoreApplication::sendPostedEvents();
    }
}

void click(benchmark::State &state, const char *button)
{
    Setup setup(1024);
    auto *target = setup.page.findChild<QPushButton *>(QLatin1String(button));
    if (!target)
        state.SkipWithError("button not found");
    for (auto _ : state) {
        target->click();
        state.PauseTiming();
        setup.fixture.controller.clearSent();
        setup.fixture.controller.readKeys.clear();
        setup.fixture.shell.clear();
        state.ResumeTiming();
    }
}

// Switching a row between analog and group ports refills its drop-down.
void typeChange(benchmark::State &state)
{
    Setup setup(1024);
    auto *type = setup.page.findChild<QComboBox *>(QStringLiteral("comboBox_power_type"));
    if (!type)
        state.SkipWithError("comboBox_power_type not found");
    for (auto _ : state)
        type->setCurrentIndex(type->currentIndex() == 0 ? 1 : 0);
}

} // namespace

void registerBenchmarks()
{
    for (const int ports : {64, 1024, 8192}) {
        kelbench::add(kelbench::name("iopage_show", "ours", ports), [ports](benchmark::State &s) {
            show(s, ports);
        })->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("iopage_show", "ref_combo_fill", ports),
            [ports](benchmark::State &s) { fill(s, ports); })
            ->Unit(benchmark::kMillisecond);
    }
    kelbench::add(kelbench::name("iopage_save", "ours", 1024), [](benchmark::State &s) {
        click(s, "pushButton_Save");
    })->Unit(benchmark::kMillisecond);
    kelbench::add(kelbench::name("iopage_cancel", "ours", 1024), [](benchmark::State &s) {
        click(s, "pushButton_Cancel");
    })->Unit(benchmark::kMillisecond);
    kelbench::add(kelbench::name("iopage_type_change", "ours", 1024), typeChange)
        ->Unit(benchmark::kMillisecond);
}

KEL_BENCHMARK_MAIN()
