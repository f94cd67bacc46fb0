#include "trendchart.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kellaser::trend {

namespace {

// The stream's keys in series order; the samples use the same names.
const std::array<const char *, kSeriesCount> kKeys {
    "power", "frequency", "duty_cycle", "wire_speed", "weld_speed"};

double numberOr0(const QJsonValue &value)
{
    const double number = value.toDouble();
    return value.isDouble() && std::isfinite(number) ? number : 0.0;
}

Sample sampleFrom(const QJsonObject &values, qint64 t)
{
    Sample sample;
    sample.t = t;
    for (int i = 0; i < kSeriesCount; ++i)
        sample.values[i] = numberOr0(values.value(QLatin1String(kKeys[i])));
    return sample;
}

} // namespace

QVector<Sample> samplesFromStream(const QJsonObject &stream, qint64 pollTimeMs)
{
    QVector<Sample> samples;
    const QJsonValue list = stream.value(QLatin1String("samples"));
    if (list.isArray()) {
        const QJsonArray entries = list.toArray();
        samples.reserve(entries.size());
        for (const QJsonValue &entry : entries) {
            const QJsonObject values = entry.toObject();
            const QJsonValue t = values.value(QLatin1String("t"));
            // A sample without its time cannot be placed, nor told apart from the next poll's.
            if (!t.isDouble() || !std::isfinite(t.toDouble()))
                continue;
            samples.append(sampleFrom(values, qint64(t.toDouble())));
        }
        return samples;
    }
    const QJsonValue time = stream.value(QLatin1String("time_ms"));
    const bool hasTime = time.isDouble() && std::isfinite(time.toDouble());
    samples.append(sampleFrom(stream, hasTime ? qint64(time.toDouble()) : pollTimeMs));
    return samples;
}

int mergeSamples(QVector<Sample> &history, QVector<Sample> incoming)
{
    if (incoming.isEmpty())
        return 0;
    std::stable_sort(incoming.begin(), incoming.end(),
        [](const Sample &a, const Sample &b) { return a.t < b.t; });
    if (!history.isEmpty() && incoming.last().t < history.last().t)
        history.clear();
    int added = 0;
    for (const Sample &sample : qAsConst(incoming)) {
        if (!history.isEmpty() && sample.t <= history.last().t)
            continue;
        history.append(sample);
        ++added;
    }
    return added;
}

void trimToWindow(QVector<Sample> &history, qint64 windowMs)
{
    if (history.isEmpty())
        return;
    const qint64 start = history.last().t - windowMs;
    const auto firstInside = std::upper_bound(history.cbegin(), history.cend(), start,
        [](qint64 t, const Sample &sample) { return t < sample.t; });
    const int keepFrom = std::max(0, int(firstInside - history.cbegin()) - 1);
    history.remove(0, keepFrom);
}

double niceCeiling(double value)
{
    const double decade = std::pow(10.0, std::floor(std::log10(value)));
    for (double factor : {1.0, 2.0, 5.0, 10.0}) {
        const double candidate = factor * decade;
        // log10 may land just below a whole decade; a relative tolerance keeps 1000 at 1000.
        if (candidate >= value * (1.0 - 1e-12))
            return std::isfinite(candidate) ? candidate : value;
    }
    return value;
}

Range seriesRange(const QVector<Sample> &samples, int series)
{
    double low = 0;
    double high = 0;
    for (const Sample &sample : samples) {
        low = std::min(low, sample.values[series]);
        high = std::max(high, sample.values[series]);
    }
    return niceRange(low, high);
}

Range niceRange(double low, double high)
{
    low = std::isfinite(low) ? std::min(low, 0.0) : 0.0;
    high = std::isfinite(high) ? std::max(high, 0.0) : 0.0;
    Range range;
    range.min = low < 0 ? -niceCeiling(-low) : 0.0;
    range.max = high > 0 ? niceCeiling(high) : 0.0;
    if (range.max <= range.min)
        range.max = range.min + 1.0;
    return range;
}

double timeToX(qint64 t, qint64 newestT, qint64 windowMs, const QRectF &plot)
{
    if (windowMs <= 0)
        return plot.right();
    return plot.right() - double(newestT - t) / double(windowMs) * plot.width();
}

double valueToY(double value, const Range &range, const QRectF &plot)
{
    double fraction = (value - range.min) / (range.max - range.min);
    if (!std::isfinite(fraction))
        fraction = 0.0;
    return plot.bottom() - std::clamp(fraction, 0.0, 1.0) * plot.height();
}

} // namespace kellaser::trend

using namespace kellaser::trend;

namespace {

struct SeriesLook
{
    const char *name;
    const char *unit;
    QColor colour;
};

const std::array<SeriesLook, kSeriesCount> &looks()
{
    static const std::array<SeriesLook, kSeriesCount> table {{
        {QT_TRANSLATE_NOOP("TrendChart", "Power"), "W", QColor(214, 39, 40)},
        {QT_TRANSLATE_NOOP("TrendChart", "Frequency"), "Hz", QColor(31, 119, 180)},
        {QT_TRANSLATE_NOOP("TrendChart", "Duty cycle"), "%", QColor(44, 160, 44)},
        {QT_TRANSLATE_NOOP("TrendChart", "Wire speed"), "mm/s", QColor(255, 127, 14)},
        {QT_TRANSLATE_NOOP("TrendChart", "Weld speed"), "mm/s", QColor(148, 103, 189)},
    }};
    return table;
}

constexpr int kLegendWidth = 190;
constexpr int kMargin = 8;
constexpr int kTimeLabelHeight = 20;
constexpr qint64 kGridStepMs = 2000;

QString scaleText(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

TrendChart::TrendChart(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

TrendChart::~TrendChart() = default;

void TrendChart::addSamples(const QVector<Sample> &samples)
{
    if (mergeSamples(m_samples, samples) == 0)
        return;
    trimToWindow(m_samples, windowMs);
    update();
}

void TrendChart::clear()
{
    m_samples.clear();
    update();
}

QSize TrendChart::minimumSizeHint() const
{
    return {kLegendWidth + 240, 200};
}

void TrendChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paint(painter);
}

void TrendChart::paint(QPainter &painter) const
{
    painter.fillRect(rect(), Qt::white);
    const QRectF plot(kMargin, kMargin, width() - kLegendWidth - 2 * kMargin,
        height() - 2 * kMargin - kTimeLabelHeight);
    const qint64 newest = m_samples.isEmpty() ? 0 : m_samples.last().t;
    const QColor gridColour(205, 205, 205);

    // One lane per value, so that lines on scales of their own never cross each other.
    std::array<QRectF, kSeriesCount> lanes;
    const double laneHeight = plot.height() / kSeriesCount;
    for (int i = 0; i < kSeriesCount; ++i) {
        lanes[i] = QRectF(plot.left(), plot.top() + i * laneHeight, plot.width(), laneHeight);
        if (i % 2 == 1)
            painter.fillRect(lanes[i], QColor(246, 246, 246));
        painter.setPen(QPen(gridColour, 1));
        if (i > 0)
            painter.drawLine(lanes[i].topLeft(), lanes[i].topRight());
    }

    // A line every 2 s back from the newest sample.
    const QFontMetrics metrics(painter.font());
    for (qint64 back = 0; back <= windowMs; back += kGridStepMs) {
        const double x = timeToX(newest - back, newest, windowMs, plot);
        painter.setPen(QPen(gridColour, 1, Qt::DotLine));
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        const QString label = tr("%1 s").arg(-back / 1000);
        const double labelWidth = metrics.horizontalAdvance(label);
        const double left = std::clamp(x - labelWidth / 2, 0.0, plot.right() - labelWidth);
        painter.setPen(Qt::darkGray);
        painter.drawText(QRectF(left, plot.bottom() + 2, labelWidth + 1, kTimeLabelHeight), label);
    }

    std::array<Range, kSeriesCount> ranges;
    for (int i = 0; i < kSeriesCount; ++i)
        ranges[i] = seriesRange(m_samples, i);

    if (m_samples.isEmpty()) {
        painter.setPen(Qt::darkGray);
        painter.drawText(plot, Qt::AlignCenter, tr("No values yet"));
    } else {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipRect(plot);
        for (int i = 0; i < kSeriesCount; ++i) {
            // A little room above and below keeps a line at its scale's end off the lane's edge.
            const QRectF lane = lanes[i].adjusted(0, 4, 0, -4);
            QPolygonF line;
            line.reserve(m_samples.size());
            for (const Sample &sample : m_samples) {
                line.append(QPointF(timeToX(sample.t, newest, windowMs, plot),
                    valueToY(sample.values[i], ranges[i], lane)));
            }
            painter.setPen(QPen(looks()[i].colour, 2));
            painter.drawPolyline(line);
        }
        painter.restore();
    }
    painter.setPen(QColor(180, 180, 180));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot);

    for (int i = 0; i < kSeriesCount; ++i) {
        paintLegend(painter, i,
            QRectF(
                plot.right() + kMargin, lanes[i].top(), kLegendWidth - kMargin, lanes[i].height()),
            ranges[i]);
    }
}

void TrendChart::paintLegend(
    QPainter &painter, int series, const QRectF &row, const Range &range) const
{
    const SeriesLook &look = looks()[series];
    painter.fillRect(QRectF(row.left(), row.top() + 2, 5, row.height() - 4), look.colour);
    const QRectF text = row.adjusted(10, 0, 0, 0);
    const QRectF upper(text.left(), text.top(), text.width(), text.height() / 2);
    const QRectF lower(text.left(), upper.bottom(), text.width(), text.height() / 2);
    const QFont font = painter.font();

    painter.setPen(Qt::black);
    painter.drawText(upper, Qt::AlignLeft | Qt::AlignBottom, tr(look.name));

    QFont small = font;
    small.setPointSizeF(font.pointSizeF() * 0.85);
    painter.setFont(small);
    painter.setPen(Qt::darkGray);
    painter.drawText(lower, Qt::AlignRight | Qt::AlignTop,
        QStringLiteral("%1…%2").arg(scaleText(range.min), scaleText(range.max)));

    QFont bold = font;
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(look.colour.darker(120));
    const QString value = m_samples.isEmpty()
        ? QStringLiteral("–")
        : QString::number(m_samples.last().values[series], 'f', 1);
    painter.drawText(lower, Qt::AlignLeft | Qt::AlignTop,
        value + QLatin1Char(' ') + QString::fromLatin1(look.unit));
    painter.setFont(font);
}
