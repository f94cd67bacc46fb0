#pragma once

#include <QLineF>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QVector>
#include <QWidget>

#include <optional>

class QPainter;

namespace kellaser::chart {

// One axis after widening to whole steps: ticks run from min to end in steps of step.
struct Axis
{
    qint64 min = 0;
    qint64 end = 0;
    qint64 step = 1;
    // A zero-width or non-advancing axis cannot map values to pixels.
    bool isUsable() const { return end > min && step > 0; }
    double span() const { return double(end - min); }
};

// Plot rectangle of a chart of the given size: 50 px left margin, 20 px right, 20 px top,
// 25 px bottom.
struct PlotArea
{
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
};

PlotArea plotArea(int widgetWidth, int widgetHeight);

// Rounds halves up: 2.5 -> 3, -2.5 -> -2. Non-finite and huge values are pinned to a range
// a painter still handles.
int roundHalfUp(double value);

// xEnd = xMin, then add xStep while xEnd < xMax. A step of zero or less leaves end at min.
Axis widenedAxis(int min, int max, int step);

// Pixel offset of value from the axis start along a plot side of the given length.
int pixelOffset(double value, const Axis &axis, int length);

QPoint mapToPlot(const QPointF &value, const Axis &x, const Axis &y, const PlotArea &area);

// The visible stretch of physical = slope * raw + intercept, in axis units: each end is cut
// first at the bottom and top, then at the sides. No line for a (nearly) flat slope or
// non-finite input.
std::optional<QLineF> clippedLine(double slope, double intercept, const Axis &x, const Axis &y);

// Number of ticks from min up to end, with or without the tick at end itself.
qint64 tickCount(const Axis &axis, bool includeEnd);

} // namespace kellaser::chart

// Draws one calibration curve: framed plot with integer ticks, the nodes as dots and the
// fitted straight line clipped to the plot. It only paints what it was given.
class CustomChart : public QWidget
{
    Q_OBJECT

public:
    explicit CustomChart(QWidget *parent = nullptr);
    ~CustomChart() override;

    void setAxis(const QString &xSuffix, int xStep, int xMin, int xMax, const QString &ySuffix,
        int yStep, int yMin, int yMax);
    void setPoints(const QVector<QPointF> &points);
    void setLine(double slope, double intercept);
    void setAxisLabels(const QString &xLabel, const QString &yLabel);
    bool hasLine() const { return m_hasLine; }
    // Marks the node farthest from the line (an index into the points; -1 for none). Drawn
    // after everything else, so the chart below it stays as it was.
    void setFitMark(int point);
    int fitMark() const { return m_fitMark; }
    double slope() const { return m_slope; }
    double intercept() const { return m_intercept; }

    // Paints the chart as paintEvent does, onto any device of the widget's size.
    void paint(QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_slope = 0;
    double m_intercept = 0;
    int m_xMax = 10;
    int m_xMin = 0;
    int m_yMax = 10;
    int m_yMin = 0;
    int m_xStep = 1;
    int m_yStep = 1;
    QString m_xSuffix;
    QString m_ySuffix;
    QString m_xLabel;
    QString m_yLabel;
    QVector<QPointF> m_points;
    bool m_hasLine = false;
    int m_fitMark = -1;
};
