// The I/O mapping page's actions at several port counts, against the bare cost of filling its
// 22 port drop-downs with the same lists, and against Qt showing the same page so filled.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"

#include "page/weldiopage.h"
#include "page/weldsettingpage.h"

#include <QComboBox>

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

} // namespace

void registerBenchmarks()
{
    PageLoops::addShows<Setup>("iopage_show", "ref_combo_fill", isPortList, 22);
    PageLoops::addClick<Setup>("iopage_save", "pushButton_Save");
    PageLoops::addClick<Setup>("iopage_cancel", "pushButton_Cancel");
    kelbench::add(kelbench::name("iopage_type_change", "ours", 1024), typeChange)
        ->Unit(benchmark::kMillisecond);
}

KEL_BENCHMARK_MAIN()
