// The I/O mapping page's actions at several port counts, against the bare cost of filling its
// 22 port drop-downs with the same lists, and against Qt showing the same page so filled.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"
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
        PageLoops::settle();
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

void filled(benchmark::State &state, int ports, bool shown)
{
    Setup setup(ports);
    WidgetFill fill(&setup.page, isPortList);
    if (fill.comboCount() != 22) {
        state.SkipWithError("expected 22 port drop-downs");
        return;
    }
    if (shown)
        PageLoops::shownFill(state, &setup.page, fill);
    else
        PageLoops::fill(state, fill);
}

// Switching a row between analog and group ports refills its drop-down.
void typeChange(benchmark::State &state)
{
    Setup setup(1024);
    auto *type = setup.page.findChild<QComboBox *>(QStringLiteral("comboBox_power_type"));
    if (!type) {
        state.SkipWithError("comboBox_power_type not found");
        return;
    }
    for (auto _ : state) {
        type->setCurrentIndex(type->currentIndex() == 0 ? 1 : 0);
        PageLoops::settle();
    }
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
        kelbench::add(kelbench::name("iopage_show", "ours", ports), [ports](benchmark::State &s) {
            Setup setup(ports);
            PageLoops::show(s, &setup.page);
        })->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("iopage_show", "ref_combo_fill", ports),
            [ports](benchmark::State &s) { filled(s, ports, false); })
            ->Unit(benchmark::kMillisecond);
        kelbench::add(kelbench::name("iopage_show", "ref_shown_fill", ports),
            [ports](benchmark::State &s) { filled(s, ports, true); })
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
