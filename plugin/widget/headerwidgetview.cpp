#include "headerwidgetview.h"

#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <QStyleOptionHeader>

HeaderWidgetView::HeaderWidgetView(Qt::Orientation orientation, QWidget *parent)
    : QHeaderView(orientation, parent)
{
    connect(this, &QHeaderView::sectionResized, this, [this] { repositionWidgets(); });
    connect(this, &QHeaderView::sectionMoved, this, [this] { repositionWidgets(); });
    connect(this, &QHeaderView::sectionCountChanged, this, [this] { repositionWidgets(); });
    connect(this, &QHeaderView::geometriesChanged, this, [this] { repositionWidgets(); });
    setFrameShape(QFrame::NoFrame);
    setFrameShadow(QFrame::Plain);
}

HeaderWidgetView::~HeaderWidgetView()
{
    // The widgets die with the viewport; their destroyed signals must not reach us by then.
    for (const QMetaObject::Connection &connection : qAsConst(m_destroyedConnections))
        disconnect(connection);
}

void HeaderWidgetView::setSectionWidget(int section, QWidget *widget)
{
    QWidget *old = m_widgets.value(section);
    if (old == widget)
        return;
    removeSectionWidget(section);
    if (!widget)
        return;
    // Children of the viewport move with it when the header scrolls.
    widget->setParent(viewport());
    m_widgets.insert(section, widget);
    m_destroyedConnections.insert(section,
        connect(widget, &QObject::destroyed, this, [this, section] { forgetSection(section); }));
    repositionWidget(section, widget);
    viewport()->update();
}

QWidget *HeaderWidgetView::sectionWidget(int section) const
{
    return m_widgets.value(section);
}

QWidget *HeaderWidgetView::takeSectionWidget(int section)
{
    QWidget *widget = m_widgets.value(section);
    if (!widget)
        return nullptr;
    forgetSection(section);
    widget->hide();
    widget->setParent(nullptr);
    viewport()->update();
    return widget;
}

void HeaderWidgetView::removeSectionWidget(int section)
{
    delete takeSectionWidget(section);
}

QRect HeaderWidgetView::sectionWidgetRect(int section) const
{
    if (section < 0 || section >= count() || isSectionHidden(section))
        return {};
    const int position = sectionViewportPosition(section);
    const int size = sectionSize(section);
    if (orientation() == Qt::Horizontal)
        return QRect(position, 0, size, viewport()->height());
    return QRect(0, position, viewport()->width(), size);
}

void HeaderWidgetView::resizeEvent(QResizeEvent *event)
{
    QHeaderView::resizeEvent(event);
    repositionWidgets();
}

void HeaderWidgetView::paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const
{
    if (!rect.isValid())
        return;
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = logicalIndex;
    option.textAlignment = Qt::AlignCenter;
    option.iconAlignment = Qt::AlignCenter;
    if (!m_widgets.contains(logicalIndex) && model())
        option.text = model()->headerData(logicalIndex, orientation(), Qt::DisplayRole).toString();

    const int visual = visualIndex(logicalIndex);
    if (count() == 1)
        option.position = QStyleOptionHeader::OnlyOneSection;
    else if (visual == 0)
        option.position = QStyleOptionHeader::Beginning;
    else if (visual == count() - 1)
        option.position = QStyleOptionHeader::End;
    else
        option.position = QStyleOptionHeader::Middle;

    const QPointF brushOrigin = painter->brushOrigin();
    painter->setBrushOrigin(rect.topLeft());
    style()->drawControl(QStyle::CE_Header, &option, painter, this);
    painter->setBrushOrigin(brushOrigin);
}

void HeaderWidgetView::repositionWidgets()
{
    for (auto it = m_widgets.cbegin(); it != m_widgets.cend(); ++it)
        repositionWidget(it.key(), it.value());
}

void HeaderWidgetView::repositionWidget(int section, QWidget *widget)
{
    const QRect sectionRect = sectionWidgetRect(section);
    if (sectionRect.isEmpty()) {
        widget->hide();
        return;
    }
    QSize size = widget->sizeHint();
    if (!size.isValid())
        size = sectionRect.size();
    size = size.boundedTo(sectionRect.size());
    widget->setGeometry(QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, size, sectionRect));
    widget->show();
}

void HeaderWidgetView::forgetSection(int section)
{
    disconnect(m_destroyedConnections.take(section));
    m_widgets.remove(section);
}
