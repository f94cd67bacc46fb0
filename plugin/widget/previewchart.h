#pragma once

#include <QColor>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>
#include <QWidget>

class QPainter;

namespace kellaser::preview {

// The horizontal axis: from 0 to a whole number of 1-2-5 steps at or beyond the largest x.
struct XAxis
{
    double max = 1.0;
    double step = 1.0;
};
XAxis xAxis(double largest);

// Where a name of wanted's size goes: at wanted when that is inside bounds and clear of every
// name already taken, else moved past the name in its way, upwards (up) or to the right, as
// long as it stays inside bounds. A null rect when there is no room for it.
QRectF placeName(QRectF wanted, const QRectF &bounds, const QVector<QRectF> &taken, bool up);

} // namespace kellaser::preview

// A small chart of how values follow one quantity (time, speed): each value in a lane of its
// own on a scale of its own, with named stretches and marks where something is wrong. It only
// draws what it is given.
class PreviewChart : public QWidget
{
    Q_OBJECT

public:
    struct Lane
    {
        QString name;
        QString unit;
        QColor colour;
        QPolygonF course;
        QPolygonF dots;
    };
    // lane -1: a stretch over all lanes, named above the plot (from == to: a moment, named at
    // the plot's foot); else a stretch named inside its lane. Names stay inside the plot and
    // clear of each other: a moment's name moves up and a lane's name right when another is in
    // the way, and is left out when there is no room.
    struct Span
    {
        int lane;
        double from;
        double to;
        QString label;
    };
    // lane -1: a line across all lanes at x; else a ring around the point on its lane.
    struct Mark
    {
        int lane;
        QPointF at;
    };
    struct Content
    {
        QString xUnit;
        double xLargest = 0.0;
        QVector<Lane> lanes;
        QVector<Span> spans;
        QVector<Mark> marks;
        QString message; // shown instead of the lanes when there are none
    };

    explicit PreviewChart(QWidget *parent = nullptr);
    ~PreviewChart() override;

    void setContent(const Content &content);
    const Content &content() const { return m_content; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;
    // Paints the chart as paintEvent does, onto any device of the widget's size.
    void paint(QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Content m_content;
};
