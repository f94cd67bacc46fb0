#pragma once

#include <QHash>
#include <QHeaderView>
#include <QMetaObject>

// A header view that can host a widget in any section, e.g. a switch in a table column
// header. The widget is centred in its section at its size hint (cut to the section) and
// follows the section when it is resized, moved or scrolled; the section's own text is not
// painted.
class HeaderWidgetView : public QHeaderView
{
public:
    explicit HeaderWidgetView(Qt::Orientation orientation, QWidget *parent = nullptr);
    ~HeaderWidgetView() override;

    // Takes ownership; a widget already in the section is deleted. nullptr clears the section.
    void setSectionWidget(int section, QWidget *widget);
    QWidget *sectionWidget(int section) const;
    // Gives the widget back to the caller, hidden and without a parent.
    QWidget *takeSectionWidget(int section);
    void removeSectionWidget(int section);

    // The rectangle, in viewport coordinates, where the section's widget belongs; empty
    // when the section is hidden or does not exist.
    QRect sectionWidgetRect(int section) const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;

private:
    void repositionWidgets();
    void repositionWidget(int section, QWidget *widget);
    void forgetSection(int section);

    QHash<int, QWidget *> m_widgets;
    // Drops the entry when a hosted widget is deleted behind our back.
    QHash<int, QMetaObject::Connection> m_destroyedConnections;
};
