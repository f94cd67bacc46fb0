// The device settings page's actions at several port counts (its wire-stick detection ports
// come from the catalogue), against putting the same content straight into its widgets.
#include "benchmain.h"
#include "pagefixture.h"
#include "widgetfill.h"

#include "page/weldsettingpage.h"

#include <QPushButton>

namespace {

// The page as the plug-in holds it: inside a visible parent, so that show() is the page's own.
struct Setup
{
    explicit Setup(int ports) : fixture(ports), page(&host) { host.show(); }
    PageFixture fixture;
    QWidget host;
    WeldSettingPage page;
};

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
    WidgetFill fill(&setup.page);
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

} // namespace

void registerBenchmarks()
{
    for (const int ports : {64, 1024, 8192}) {
        kelbench::add(kelbench::name("settingpage_show", "ours", ports),
            [ports](benchmark::State &s) { show(s, ports); })
            ->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("settingpage_show", "ref_widget_fill", ports),
            [ports](benchmark::State &s) { fill(s, ports); })
            ->Unit(benchmark::kMillisecond);
    }
    kelbench::add(kelbench::name("settingpage_save", "ours", 1024), [](benchmark::State &s) {
        click(s, "pushButton_save");
    })->Unit(benchmark::kMillisecond);
    kelbench::add(kelbench::name("settingpage_cancel", "ours", 1024), [](benchmark::State &s) {
        click(s, "pushButton_cancel");
    })->Unit(benchmark::kMillisecond);
}

KEL_BENCHMARK_MAIN()
