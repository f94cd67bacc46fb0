#include "previewchart.h"

#include "trendchart.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kellaser::preview {

XAxis xAxis(double largest)
{
    if (!std::isfinite(largest) || largest <= 0)
        return {};
    XAxis axis;
    // About five ticks, as on the calibration charts.
    axis.step = kellaser::trend::niceCeiling(largest / 5);
    axis.max = std::ceil(largest / axis.step * (1.0 - 1e-12)) * axis.step;
    return axis;
}

QRectF placeName(QRectF wanted, const QRectF &bounds, const QVector<QRectF> &taken, bool up)
{
    for (;;) {
        if (!bounds.contains(wanted))
            return {};
        const auto inTheWay = std::find_if(taken.cbegin(), taken.cend(),
            [&wanted](const QRectF &name) { return name.intersects(wanted); });
        if (inTheWay == taken.cend())
            return wanted;
        // Each move leaves the name in the way behind for good, so this ends.
        if (up)
            wanted.moveBottom(inTheWay->top());
        else
            wanted.moveLeft(inTheWay->right());
    }
}

} // namespace kellaser::preview

using kellaser::trend::Range;

namespace {

constexpr int kMargin = 8;
constexpr int kSpanLabelHeight = 18;
constexpr int kTickLabelHeight = 18;
constexpr int kMarkRadius = 7;
const QColor kMarkColour(220, 0, 0);
const QColor kGridColour(205, 205, 205);

double toX(double x, const kellaser::preview::XAxis &axis, const QRectF &plot)
{
    return plot.left() + std::clamp(x / axis.max, -0.05, 1.05) * plot.width();
}

Range laneRange(const PreviewChart::Lane &lane)
{
    double low = 0;
    double high = 0;
    for (const QPointF &point : lane.course) {
        low = std::min(low, point.y());
        high = std::max(high, point.y());
    }
    return kellaser::trend::niceRange(low, high);
}

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

PreviewChart::PreviewChart(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

PreviewChart::~PreviewChart() = default;

void PreviewChart::setContent(const Content &content)
{
    m_content = content;
    update();
}

QSize PreviewChart::minimumSizeHint() const
{
    return {280, 220};
}

QSize PreviewChart::sizeHint() const
{
    return {420, 300};
}

void PreviewChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paint(painter);
}

void PreviewChart::paint(QPainter &painter) const
{
    using kellaser::trend::valueToY;
    painter.fillRect(rect(), Qt::white);
    const QRectF plot(kMargin, kSpanLabelHeight, width() - 2 * kMargin,
        height() - kSpanLabelHeight - kTickLabelHeight - kMargin);
    if (m_content.lanes.isEmpty()) {
        painter.setPen(Qt::darkGray);
        painter.drawText(plot, Qt::AlignCenter | Qt::TextWordWrap, m_content.message);
        return;
    }
    const kellaser::preview::XAxis axis = kellaser::preview::xAxis(m_content.xLargest);
    const QFontMetrics metrics(painter.font());
    const double unitWidth = metrics.horizontalAdvance(m_content.xUnit) + 1;
    const QRectF unitRect(
        plot.right() - unitWidth, plot.bottom() - kTickLabelHeight, unitWidth, kTickLabelHeight);
    // Names inside the plot, so that none is drawn over another.
    QVector<QRectF> names {unitRect};

    // Phases first, so that everything else is drawn over their shading.
    bool shaded = false;
    for (const Span &span : m_content.spans) {
        if (span.lane >= 0 || span.from == span.to)
            continue;
        const double left = std::max(toX(span.from, axis, plot), plot.left());
        const double right = std::min(toX(span.to, axis, plot), plot.right());
        if (shaded)
            painter.fillRect(
                QRectF(left, plot.top(), right - left, plot.height()), QColor(242, 242, 242));
        shaded = !shaded;
        painter.setPen(QPen(kGridColour, 1, Qt::DashLine));
        painter.drawLine(QPointF(left, plot.top()), QPointF(left, plot.bottom()));
        const QRectF label(left, 0, right - left, kSpanLabelHeight);
        painter.setPen(Qt::black);
        painter.drawText(label, Qt::AlignCenter,
            metrics.elidedText(span.label, Qt::ElideRight, int(label.width())));
    }

    // Moments over every shading, so that none hides one.
    for (const Span &span : m_content.spans) {
        if (span.lane >= 0 || span.from != span.to)
            continue;
        const double x = toX(span.from, axis, plot);
        painter.setPen(QPen(Qt::darkGray, 1, Qt::DashLine));
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        QRectF wanted(x + 3, plot.bottom() - metrics.descent() - 2 - metrics.ascent(),
            metrics.horizontalAdvance(span.label) + 1, metrics.height());
        // At the right edge the name goes left of its line.
        if (wanted.right() > plot.right())
            wanted.moveRight(x - 3);
        const QRectF room = kellaser::preview::placeName(wanted, plot, names, true);
        if (!room.isNull()) {
            names.append(room);
            painter.drawText(QPointF(room.left(), room.top() + metrics.ascent()), span.label);
        }
    }

    for (int i = 0; i * axis.step <= axis.max * (1.0 + 1e-9) && i <= 20; ++i) {
        const double x = toX(i * axis.step, axis, plot);
        painter.setPen(QPen(kGridColour, 1, Qt::DotLine));
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        const QString label = number(i * axis.step);
        const double labelWidth = metrics.horizontalAdvance(label);
        painter.setPen(Qt::darkGray);
        painter.drawText(QRectF(std::clamp(x - labelWidth / 2, 0.0, width() - labelWidth),
                             plot.bottom() + 2, labelWidth + 1, kTickLabelHeight),
            label);
    }
    painter.setPen(Qt::black);
    painter.drawText(unitRect, Qt::AlignRight | Qt::AlignVCenter, m_content.xUnit);

    const int laneCount = m_content.lanes.size();
    const double laneHeight = plot.height() / laneCount;
    QVector<QRectF> lanes;
    QVector<Range> ranges;
    const QFont base = painter.font();
    QFont small = base;
    small.setPointSizeF(small.pointSizeF() * 0.85);
    for (int i = 0; i < laneCount; ++i) {
        const Lane &lane = m_content.lanes.at(i);
        const QRectF outer(plot.left(), plot.top() + i * laneHeight, plot.width(), laneHeight);
        // Room above for the lane's name, below for its stretches' names.
        const QRectF inner = outer.adjusted(0, metrics.height() + 2, 0, -metrics.height() - 2);
        lanes.append(inner);
        ranges.append(laneRange(lane));
        painter.setPen(QPen(kGridColour, 1));
        if (i > 0)
            painter.drawLine(outer.topLeft(), outer.topRight());
        // The zero line tells "off" from a low value.
        const double zero = valueToY(0, ranges.last(), inner);
        painter.drawLine(QPointF(inner.left(), zero), QPointF(inner.right(), zero));
        painter.setPen(lane.colour.darker(120));
        painter.drawText(outer.adjusted(4, 1, -4, 0), Qt::AlignLeft | Qt::AlignTop,
            QStringLiteral("%1  %2…%3 %4")
                .arg(lane.name, number(ranges.last().min), number(ranges.last().max), lane.unit));

        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        QPolygonF line;
        line.reserve(lane.course.size());
        for (const QPointF &point : lane.course)
            line.append({toX(point.x(), axis, plot), valueToY(point.y(), ranges.last(), inner)});
        painter.setPen(QPen(lane.colour, 2));
        painter.drawPolyline(line);
        painter.setBrush(lane.colour);
        for (const QPointF &dot : lane.dots) {
            painter.drawEllipse(
                QPointF(toX(dot.x(), axis, plot), valueToY(dot.y(), ranges.last(), inner)), 3, 3);
        }
        painter.restore();
    }

    painter.setFont(small);
    painter.setPen(Qt::darkGray);
    for (const Span &span : m_content.spans) {
        if (span.lane < 0 || span.lane >= laneCount)
            continue;
        const double left = toX(span.from, axis, plot);
        const double right = toX(span.to, axis, plot);
        const QRectF lane = lanes.at(span.lane);
        const QRectF label(left, lane.bottom() + 1, std::max(right - left, 1.0), metrics.height());
        painter.drawLine(QPointF(left, lane.bottom() + 1), QPointF(right, lane.bottom() + 1));
        const QString text = span.label;
        const double textWidth = QFontMetricsF(small).horizontalAdvance(text) + 1;
        const QRectF room
            = kellaser::preview::placeName(QRectF(std::clamp(label.center().x() - textWidth / 2,
                                                      plot.left(), plot.right() - textWidth),
                                               label.top(), textWidth, label.height()),
                plot, names, false);
        if (room.isNull())
            continue;
        names.append(room);
        painter.drawText(room, Qt::AlignCenter, text);
    }
    painter.setFont(base);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const Mark &mark : m_content.marks) {
        const double x = toX(mark.at.x(), axis, plot);
        if (mark.lane < 0 || mark.lane >= laneCount) {
            painter.setPen(QPen(kMarkColour, 2, Qt::DashLine));
            painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
            continue;
        }
        painter.setPen(QPen(kMarkColour, 2));
        painter.drawEllipse(
            QPointF(x, valueToY(mark.at.y(), ranges.at(mark.lane), lanes.at(mark.lane))),
            kMarkRadius, kMarkRadius);
    }
    painter.setPen(QColor(180, 180, 180));
    painter.drawRect(plot);
}
