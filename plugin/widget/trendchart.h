#pragma once

#include <QRectF>
#include <QVector>
#include <QWidget>

#include <array>

class QJsonObject;
class QPainter;

namespace kellaser::trend {

// The five quantities of the monitor stream, in the order of the monitor's rows.
constexpr int kSeriesCount = 5;

struct Sample
{
    qint64 t = 0; // controller time, ms
    std::array<double, kSeriesCount> values {};
};

// A series' vertical scale: min at the plot's bottom, max at its top.
struct Range
{
    double min = 0;
    double max = 1;
};

// The samples of one read of "weld_monitor_data": its "samples" array (entries that are not
// objects or lack a numeric "t" are dropped), or else one sample of the stream's own values at
// "time_ms", or at pollTimeMs when that is missing too. Values that are not finite numbers
// read as 0.
QVector<Sample> samplesFromStream(const QJsonObject &stream, qint64 pollTimeMs);

// Adds the incoming samples newer than the history's newest, oldest first, each time once.
// When the incoming samples all lie before the history's newest the controller's clock has
// started again: the history is replaced. Returns the number of samples added.
int mergeSamples(QVector<Sample> &history, QVector<Sample> incoming);

// Drops samples older than the window before the newest, but keeps the last one at or before
// the window's start so that the lines reach the plot's left edge.
void trimToWindow(QVector<Sample> &history, qint64 windowMs);

// The smallest 1, 2 or 5 times a power of ten that is at least value (> 0).
double niceCeiling(double value);
// 0 and the next 1, 2 or 5 times a power of ten beyond low and high; 0..1 when both are 0.
// Values that are not finite count 0.
Range niceRange(double low, double high);
// niceRange of the series' values, so that the scale does not change with every sample.
Range seriesRange(const QVector<Sample> &samples, int series);

// x of time t in a plot whose right edge is newestT and whose width spans windowMs.
double timeToX(qint64 t, qint64 newestT, qint64 windowMs, const QRectF &plot);
// y of value on the series' range; values outside the range are pinned to the plot's edge.
double valueToY(double value, const Range &range, const QRectF &plot);

} // namespace kellaser::trend

// The monitor's live trend: the five streamed values over the last seconds, each in a lane of
// its own on a scale of its own, beside a legend that gives each value with its unit and scale.
class TrendChart : public QWidget
{
    Q_OBJECT
public:
    static constexpr qint64 windowMs = 10000;

    explicit TrendChart(QWidget *parent = nullptr);
    ~TrendChart() override;

    // Merges one read of the stream (see kellaser::trend::samplesFromStream).
    void addSamples(const QVector<kellaser::trend::Sample> &samples);
    void clear();
    const QVector<kellaser::trend::Sample> &samples() const { return m_samples; }

    QSize minimumSizeHint() const override;
    void paint(QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintLegend(QPainter &painter, int series, const QRectF &row,
        const kellaser::trend::Range &range) const;

    QVector<kellaser::trend::Sample> m_samples;
};
