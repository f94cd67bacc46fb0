#include "customchart.h"

#include <QFont>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace kellaser::chart {

namespace {
// Far outside any pendant screen, well inside what the raster engine's fixed point handles.
constexpr double kPixelLimit = 1 << 20;
// More ticks than pixels only paints a black bar; beyond this the ticks are left out.
constexpr qint64 kMaxTicks = 1000;
constexpr double kFlatSlope = 1e-6;
} // namespace

PlotArea plotArea(int widgetWidth, int widgetHeight)
{
    PlotArea area;
    area.left = 50;
    area.right = widgetWidth - 70 + 50;
    area.bottom = widgetHeight - 25;
    area.top = area.bottom - (widgetHeight - 45);
    return area;
}

int roundHalfUp(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::floor(value + 0.5);
    if (rounded > kPixelLimit)
        return int(kPixelLimit);
    if (rounded < -kPixelLimit)
        return -int(kPixelLimit);
    return int(rounded);
}

Axis widenedAxis(int min, int max, int step)
{
    Axis axis;
    axis.min = min;
    axis.end = min;
    axis.step = step;
    if (step <= 0 || max <= min)
        return axis;
    // Same end as stepping one by one, without looping over huge ranges.
    const qint64 steps = (qint64(max) - min + step - 1) / step;
    axis.end = min + steps * step;
    return axis;
}

int pixelOffset(double value, const Axis &axis, int length)
{
    if (!axis.isUsable())
        return 0;
    const double scale = double(length) / axis.span();
    return roundHalfUp((value - double(axis.min)) * scale);
}

QPoint mapToPlot(const QPointF &value, const Axis &x, const Axis &y, const PlotArea &area)
{
    return QPoint(area.left + pixelOffset(value.x(), x, area.width()),
        area.bottom - pixelOffset(value.y(), y, area.height()));
}

std::optional<QLineF> clippedLine(double slope, double intercept, const Axis &x, const Axis &y)
{
    if (!x.isUsable() || !y.isUsable())
        return std::nullopt;
    if (!std::isfinite(slope) || !std::isfinite(intercept) || std::abs(slope) <= kFlatSlope)
        return std::nullopt;

    const double xMin = double(x.min);
    const double xEnd = double(x.end);
    const double yMin = double(y.min);
    const double yEnd = double(y.end);
    // Bottom and top first, so a steep line ends on them rather than on the sides.
    const auto clip = [&](double px, double py) {
        if (py < yMin) {
            px += (yMin - py) / slope;
            py = yMin;
        }
        if (py > yEnd) {
            px += (yEnd - py) / slope;
            py = yEnd;
        }
        if (px < xMin) {
            py += (xMin - px) * slope;
            px = xMin;
        }
        if (px > xEnd) {
            py += (xEnd - px) * slope;
            px = xEnd;
        }
        return QPointF(px, py);
    };
    const QPointF start = clip(xMin, slope * xMin + intercept);
    const QPointF end = clip(xEnd, slope * xEnd + intercept);
    if (!std::isfinite(start.x()) || !std::isfinite(start.y()) || !std::isfinite(end.x())
        || !std::isfinite(end.y()))
        return std::nullopt;
    return QLineF(start, end);
}

qint64 tickCount(const Axis &axis, bool includeEnd)
{
    if (!axis.isUsable())
        return 0;
    return (axis.end - axis.min) / axis.step + (includeEnd ? 1 : 0);
}

} // namespace kellaser::chart

CustomChart::CustomChart(QWidget *parent) : QWidget(parent)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("CustomChart"));
    resize(380, 259);
    setWindowTitle(tr("Form"));
}

CustomChart::~CustomChart() = default;

void CustomChart::setAxis(const QString &xSuffix, int xStep, int xMin, int xMax,
    const QString &ySuffix, int yStep, int yMin, int yMax)
{
    m_xSuffix = xSuffix;
    m_xStep = xStep;
    m_xMin = xMin;
    m_xMax = xMax;
    m_ySuffix = ySuffix;
    m_yStep = yStep;
    m_yMin = yMin;
    m_yMax = yMax;
}

void CustomChart::setPoints(const QVector<QPointF> &points)
{
    m_points = points;
}

void CustomChart::setLine(double slope, double intercept)
{
    m_slope = slope;
    m_intercept = intercept;
    m_hasLine = true;
}

void CustomChart::setFitMark(int point)
{
    m_fitMark = point;
}

void CustomChart::setAxisLabels(const QString &xLabel, const QString &yLabel)
{
    m_xLabel = xLabel;
    m_yLabel = yLabel;
}

void CustomChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paint(painter);
}

void CustomChart::paint(QPainter &painter) const
{
    using namespace kellaser::chart;
    const PlotArea area = plotArea(width(), height());
    const Axis x = widenedAxis(m_xMin, m_xMax, m_xStep);
    const Axis y = widenedAxis(m_yMin, m_yMax, m_yStep);

    painter.setPen(QPen(Qt::black, 2));
    painter.drawLine(area.left, area.bottom, area.right, area.bottom);
    painter.drawLine(area.left, area.top, area.left, area.bottom);
    painter.drawLine(area.left, area.top, area.right, area.top);
    painter.drawLine(area.right, area.top, area.right, area.bottom);

    // Without a usable range nothing can be placed; the frame alone says "no curve".
    if (x.isUsable() && y.isUsable()) {
        if (tickCount(x, false) <= kMaxTicks) {
            for (qint64 tick = x.min; tick < x.end; tick += x.step) {
                const int px = area.left + pixelOffset(double(tick), x, area.width());
                painter.drawLine(px, area.bottom - 5, px, area.bottom);
                painter.drawText(
                    QPoint(px - 10, area.bottom + 20), QString::number(tick) + m_xSuffix);
            }
        }
        if (tickCount(y, true) <= kMaxTicks) {
            for (qint64 tick = y.min; tick <= y.end; tick += y.step) {
                const int py = area.bottom - pixelOffset(double(tick), y, area.height());
                painter.drawLine(area.left, py, area.left + 5, py);
                painter.drawText(QPoint(10, py + 10), QString::number(tick) + m_ySuffix);
            }
        }

        painter.setPen(QPen(Qt::black, 1));
        painter.setBrush(QBrush(Qt::black, Qt::SolidPattern));
        for (const QPointF &point : m_points) {
            if (std::isnan(point.x()) || std::isnan(point.y()))
                continue;
            painter.drawEllipse(mapToPlot(point, x, y, area), 3, 3);
        }

        if (const auto line = clippedLine(m_slope, m_intercept, x, y))
            painter.drawLine(mapToPlot(line->p1(), x, y, area), mapToPlot(line->p2(), x, y, area));
    }

    painter.setFont(QFont(QStringLiteral("Arial"), 10));
    painter.drawText(QPoint(area.right - 30, area.bottom + 20), m_xLabel);
    painter.drawText(QPoint(45, area.top - 5), m_yLabel);

    // The node's distance to the line in red, with a ring around the node.
    if (m_fitMark < 0 || m_fitMark >= m_points.size() || !x.isUsable() || !y.isUsable())
        return;
    const QPointF node = m_points.at(m_fitMark);
    const double onLine = m_slope * node.x() + m_intercept;
    if (std::isnan(node.x()) || std::isnan(node.y()) || !std::isfinite(onLine))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(220, 0, 0), 2));
    painter.setBrush(Qt::NoBrush);
    const QPoint dot = mapToPlot(node, x, y, area);
    // A line leaving the plot above or below the node ends the mark at the frame.
    const double shownLine = std::clamp(onLine, double(y.min), double(y.end));
    painter.drawLine(dot, mapToPlot(QPointF(node.x(), shownLine), x, y, area));
    painter.drawEllipse(dot, 7, 7);
    painter.restore();
}
