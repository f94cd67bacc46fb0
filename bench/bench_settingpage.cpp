// The device settings page's actions at several port counts (its wire-stick detection ports
// come from the catalogue), against putting the same content straight into its widgets, and
// against Qt showing the same page so filled.
#include "benchmain.h"
#include "pagefixture.h"
#include "pageloops.h"

#include "page/weldsettingpage.h"

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

} // namespace

void registerBenchmarks()
{
    PageLoops::addShows<Setup>("settingpage_show", "ref_widget_fill");
    PageLoops::addClick<Setup>("settingpage_save", "pushButton_save");
    PageLoops::addClick<Setup>("settingpage_cancel", "pushButton_cancel");
}

KEL_BENCHMARK_MAIN()
