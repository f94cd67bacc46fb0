#include "switchbutton.h"

#include <QMouseEvent>
#include <QPainter>

SwitchButton::Geometry SwitchButton::geometry(const QSize &size, bool on)
{
    const int h = size.height();
    const int w = size.width();
    const int knob = h - 4;
    const int track = int(h * 0.46);
    Geometry g;
    g.trackRadius = track / 2;
    g.track = QRect(knob / 2, (h - track) / 2, w - knob, track);
    // The knob starts at 3 although only 4 pixels are left: it sits one pixel low by design.
    g.knob = QRect(on ? w - knob - 3 : 3, 3, knob, knob);
    return g;
}

QColor SwitchButton::trackColour(bool on)
{
    return on ? QColor(83, 150, 238, 255) : QColor(189, 193, 198, 255);
}

QColor SwitchButton::knobColour(bool on)
{
    return on ? QColor(26, 115, 232) : QColor(221, 221, 221);
}

SwitchButton::SwitchButton(QWidget *parent) : QPushButton(parent)
{
    setFixedSize(50, 25);
    setCheckable(false);
    setFocusPolicy(Qt::StrongFocus);
}

void SwitchButton::setOn(bool on, bool emitSignal)
{
    if (m_on == on)
        return;
    m_on = on;
    update();
    if (emitSignal)
        emit onChanged(m_on);
}

QSize SwitchButton::sizeHint() const
{
    return QSize(50, 25);
}

void SwitchButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) {
        emit clickedRaw(!m_on);
        if (m_autoToggle) {
            m_on = !m_on;
            update();
            emit onChanged(m_on);
        }
    }
    QPushButton::mouseReleaseEvent(event);
}

void SwitchButton::leaveEvent(QEvent *event)
{
    QPushButton::leaveEvent(event);
}

void SwitchButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const Geometry g = geometry(size(), m_on);
    painter.setBrush(trackColour(m_on));
    painter.drawRoundedRect(g.track, g.trackRadius, g.trackRadius, Qt::AbsoluteSize);
    painter.setBrush(knobColour(m_on));
    painter.drawEllipse(g.knob);

    painter.setPen(m_on ? Qt::white : Qt::black);
    if (m_showText)
        painter.drawText(
            rect(), Qt::AlignCenter, m_on ? QStringLiteral("ON") : QStringLiteral("OFF"));
}
