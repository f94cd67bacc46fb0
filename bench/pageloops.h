#pragma once

#include <benchmark/benchmark.h>

class PageFixture;
class QAbstractButton;
class QWidget;
class WidgetFill;

// The timing loops the page benchmarks share. Posted events run inside the timing: the layout
// pass a refill causes is part of its cost, whether it runs at once or at the next show.
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
};
