#pragma once

#include "benchmain.h"
#include "widgetfill.h"

#include <QAbstractButton>

#include <functional>

class PageFixture;

// The timing loops the page benchmarks share. Posted events run inside the timing: the layout
// pass a refill causes is part of its cost, whether it runs at once or at the next show.
//
// The registrations take a Setup type: constructed from the ports per type, it holds the page
// as `page` (shown inside a visible parent) and its PageFixture as `fixture`.
class PageLoops
{
public:
    // The page's show: hidden untimed, then shown.
    static void show(benchmark::State &state, QWidget *page);
    // The bare fill: the same content put straight into the same widgets.
    static void fill(benchmark::State &state, WidgetFill &fill);
    // Qt showing the same page with the page's own show handling blocked, plus the bare fill:
    // what any page holding these widgets and this content pays.
    static void shownFill(benchmark::State &state, QWidget *page, WidgetFill &fill);
    // Runs what the pendant's event loop would after an action: posted events, then the
    // deletions pages ask for with deleteLater().
    static void settle();
    // One button click, with what the controller and the pendant recorded dropped untimed.
    static void click(benchmark::State &state, QAbstractButton *button, PageFixture &fixture);

    // "<case>/ours", "<case>/<bareFill>" and "<case>/ref_shown_fill" at 64, 1,024 and 8,192
    // ports per type. The fills take the widgets that pass the filter; with expectedCombos
    // set, a different number of drop-downs among them fails the benchmark.
    template<typename Setup>
    static void addShows(const char *caseName, const char *bareFill,
        const std::function<bool(QWidget *)> &filter = {}, int expectedCombos = -1)
    {
        for (const int ports : {64, 1024, 8192}) {
            kelbench::add(kelbench::name(caseName, "ours", ports), [ports](benchmark::State &s) {
                Setup setup(ports);
                show(s, &setup.page);
            })->Unit(benchmark::kMillisecond);
            for (const bool shown : {false, true}) {
                kelbench::add(kelbench::name(caseName, shown ? "ref_shown_fill" : bareFill, ports),
                    [ports, shown, filter, expectedCombos](benchmark::State &s) {
                        Setup setup(ports);
                        WidgetFill bare(&setup.page, filter);
                        if (expectedCombos >= 0 && bare.comboCount() != expectedCombos)
                            s.SkipWithError("the page holds another number of drop-downs");
                        else if (shown)
                            shownFill(s, &setup.page, bare);
                        else
                            fill(s, bare);
                    })
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }

    // "<case>/ours/1024": a click on the page's button of that object name.
    template<typename Setup> static void addClick(const char *caseName, const char *button)
    {
        kelbench::add(kelbench::name(caseName, "ours", 1024), [button](benchmark::State &s) {
            Setup setup(1024);
            click(s, setup.page.template findChild<QAbstractButton *>(QLatin1String(button)),
                setup.fixture);
        })->Unit(benchmark::kMillisecond);
    }
};
