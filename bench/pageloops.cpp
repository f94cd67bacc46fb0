#include "pageloops.h"

#include "pagefixture.h"
#include "widgetfill.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace {

// Swallows the page's show events, so that its showEvent() does not run.
class ShowBlocker : public QObject
{
public:
    explicit ShowBlocker(QWidget *page) : m_page(page) { page->installEventFilter(this); }
    ~ShowBlocker() override { m_page->removeEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return watched == m_page && event->type() == QEvent::Show;
    }

private:
    QWidget *m_page;
};

} // namespace

void PageLoops::show(benchmark::State &state, QWidget *page)
{
    for (auto _ : state) {
        state.PauseTiming();
        page->hide();
        state.ResumeTiming();
        page->show();
        settle();
    }
}

void PageLoops::fill(benchmark::State &state, WidgetFill &fill)
{
    for (auto _ : state) {
        fill.apply();
        settle();
    }
}

void PageLoops::shownFill(benchmark::State &state, QWidget *page, WidgetFill &fill)
{
    const ShowBlocker blocker(page);
    for (auto _ : state) {
        state.PauseTiming();
        page->hide();
        state.ResumeTiming();
        page->show();
        fill.apply();
        settle();
    }
}

void PageLoops::settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void PageLoops::click(benchmark::State &state, QAbstractButton *button, PageFixture &fixture)
{
    if (!button) {
        state.SkipWithError("button not found");
        return;
    }
    for (auto _ : state) {
        button->click();
        settle();
        state.PauseTiming();
        fixture.controller.clearSent();
        fixture.controller.readKeys.clear();
        fixture.shell.clear();
        state.ResumeTiming();
    }
}
