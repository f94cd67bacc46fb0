#include "fieldhint.h"

#include <QEvent>
#include <QPainter>
#include <QScrollArea>

namespace {

constexpr int kFrameMargin = 2;
constexpr int kPadding = 4;
constexpr int kMaxTextWidth = 320;
const QColor kRed(192, 0, 0);
const QColor kPaleRed(253, 236, 234);

// The hint lives in the widget that scrolls with the field, so that it scrolls along.
QWidget *hostOf(QWidget *field)
{
    for (QWidget *ancestor = field->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        auto *area = qobject_cast<QScrollArea *>(ancestor);
        if (area && area->widget() && area->widget()->isAncestorOf(field))
            return area->widget();
    }
    return field->window();
}

FieldHint *hintIn(const QWidget *widget)
{
    const auto hints = widget->window()->findChildren<FieldHint *>(QStringLiteral("fieldHint"));
    return hints.isEmpty() ? nullptr : hints.first();
}

} // namespace

FieldHint::FieldHint(QWidget *window) : QWidget(window)
{
    setObjectName(QStringLiteral("fieldHint"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

FieldHint *FieldHint::visibleIn(const QWidget *widget)
{
    if (!widget)
        return nullptr;
    FieldHint *hint = hintIn(widget);
    return hint && hint->isVisible() && hint->m_field ? hint : nullptr;
}

FieldHint *FieldHint::showAt(QWidget *field, const QString &text)
{
    QWidget *host = hostOf(field);
    FieldHint *hint = hintIn(field);
    if (hint && hint->parentWidget() != host) {
        delete hint;
        hint = nullptr;
    }
    if (!hint)
        hint = new FieldHint(host);
    if (hint->m_field != field) {
        if (hint->m_field)
            hint->m_field->removeEventFilter(hint);
        hint->m_field = field;
        field->installEventFilter(hint);
    }
    hint->m_text = text;
    hint->setToolTip(text);
    hint->place();
    hint->show();
    hint->raise();
    hint->update();
    return hint;
}

void FieldHint::hideFor(const QWidget *field)
{
    if (!field)
        return;
    FieldHint *hint = hintIn(field);
    if (hint && hint->m_field == field) {
        hint->m_field->removeEventFilter(hint);
        hint->m_field = nullptr;
        hint->hide();
    }
}

QRect FieldHint::textBox(const QRect &frame, const QSize &text, const QRect &area)
{
    const QSize size(
        qMax(text.width() + 2 * kPadding, frame.width()), text.height() + 2 * kPadding);
    QRect box(QPoint(frame.left(), frame.bottom() + 1), size);
    if (box.bottom() > area.bottom() && frame.top() - size.height() >= area.top())
        box.moveBottom(frame.top() - 1);
    if (box.right() > area.right())
        box.moveRight(area.right());
    if (box.left() < area.left())
        box.moveLeft(area.left());
    return box;
}

QSize FieldHint::textSize() const
{
    return fontMetrics()
        .boundingRect(QRect(0, 0, kMaxTextWidth, 10000), Qt::TextWordWrap, m_text)
        .size();
}

void FieldHint::place()
{
    QWidget *window = parentWidget();
    if (!m_field || !window)
        return;
    const QRect frame = QRect(m_field->mapTo(window, QPoint(0, 0)), m_field->size())
                            .adjusted(-kFrameMargin, -kFrameMargin, kFrameMargin, kFrameMargin);
    const QRect box = textBox(frame, textSize(), window->rect());
    const QRect all = frame.united(box);
    setGeometry(all);
    m_frame = frame.translated(-all.topLeft());
    m_box = box.translated(-all.topLeft());
}

bool FieldHint::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_field) {
        switch (event->type()) {
        case QEvent::Hide:
            hideFor(m_field);
            break;
        case QEvent::Move:
        case QEvent::Resize:
            place();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FieldHint::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kRed, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(m_frame).adjusted(1, 1, -1, -1), 3, 3);
    painter.setPen(QPen(kRed, 1));
    painter.setBrush(kPaleRed);
    painter.drawRect(QRectF(m_box).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.setPen(kRed.darker(120));
    painter.drawText(m_box.adjusted(kPadding, kPadding, -kPadding, -kPadding),
        Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignVCenter, m_text);
}
