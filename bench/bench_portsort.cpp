#include "benchmain.h"

#include "page/portcatalogue.h"
#include "support/straightforwardportorder.h"

#include <QCollator>
#include <QRandomGenerator>
#include <QVariant>

#include <algorithm>
#include <functional>

namespace {

// Names as a large cell would report them, in the host's arbitrary order.
QStringList portNames(int count)
{
    static const char *const prefixes[] = {"DO", "DI", "GO", "AO", "do_", "DO_Board", "EXT_IO"};
    QRandomGenerator random(42);
    QStringList names;
    for (int i = 0; i < count; ++i) {
        const QString prefix = QLatin1String(prefixes[random.bounded(7)]);
        switch (random.bounded(3)) {
        case 0:
            names.append(prefix + QString::number(random.bounded(5000)));
            break;
        case 1:
            names.append(prefix + QString::number(random.bounded(16)) + QLatin1Char('_')
                + QString::number(random.bounded(64)));
            break;
        default:
            names.append(prefix + QString::number(random.bounded(999)) + QLatin1Char('A'));
        }
    }
    return names;
}

void sortWith(benchmark::State &state, int count, std::function<void(QStringList &)> sort)
{
    const QStringList names = portNames(count);
    for (auto _ : state) {
        QStringList sorted = names;
        sort(sorted);
        benchmark::DoNotOptimize(sorted);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

void registerBenchmarks()
{
    // 10,000 names as one large cell; 64, 1,024 and 8,192 as the ports of one type.
    for (const int count : {64, 1024, 8192, 10000}) {
        kelbench::add(kelbench::name("portsort", "ours", count), [count](benchmark::State &s) {
            sortWith(s, count, [](QStringList &names) { names = PortCatalogue::sorted(names); });
        })->Unit(benchmark::kMicrosecond);
        kelbench::add(kelbench::name("portsort", "ref_collator", count),
            [count](benchmark::State &s) {
                QCollator collator(QLocale::c());
                collator.setNumericMode(true);
                collator.setCaseSensitivity(Qt::CaseSensitive);
                sortWith(s, count, [&collator](QStringList &names) {
                    std::sort(names.begin(), names.end(), collator);
                });
            })
            ->Unit(benchmark::kMicrosecond);
        kelbench::add(kelbench::name("portsort", "ref_tokenise", count),
            [count](benchmark::State &s) {
                sortWith(s, count, [](QStringList &names) {
                    std::sort(names.begin(), names.end(), straightforward::portLess);
                });
            })
            ->Unit(benchmark::kMicrosecond);
    }
}

KEL_BENCHMARK_MAIN()
