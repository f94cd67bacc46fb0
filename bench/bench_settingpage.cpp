// The device settings page's actions at several port counts (its wire-stick detection ports
// come from the catalogue), against putting the same content straight into its widgets, and
// against Qt showing the same page so filled.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"
#include "widgetfill.h"

#include "page/weldsettingpage.h"

#include <QPushButton>

namespace {

// The page as the plug-in holds it: inside a visible parent, so that show() is the page's own.
struct Setup
{
    explicit Setup(int ports) : fixture(ports), page(&host)
    {
        host.show();
        PageLoops::settle();
    }
    PageFixture fixture;
    QWidget host;
    WeldSettingPage page;
};

void filled(benchmark::State &state, int ports, bool shown)
{
    Setup setup(ports);
    WidgetFill fill(&setup.page);
    if (shown)
        PageLoops::shownFill(state, &setup.page, fill);
    else
        PageLoops::fill(state, fill);
}

void click(benchmark::State &state, const char *button)
{
    Setup setup(1024);
    PageLoops::click(
        state, setup.page.findChild<QPushButton *>(QLatin1String(button)), setup.fixture);
}

} // namespace

void registerBenchmarks()
{
    for (const int ports : {64, 1024, 8192}) {
        kelbench::add(kelbench::name("settingpage_show", "ours", ports),
            [ports](benchmark::State &s) {
                Setup setup(ports);
                PageLoops::show(s, &setup.page);
            })
            ->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("settingpage_show", "ref_widget_fill", ports),
            [ports](benchmark::State &s) { filled(s, ports, false); })
            ->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("settingpage_show", "ref_shown_fill", ports),
            [ports](benchmark::State &s) { filled(s, ports, true); })
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
