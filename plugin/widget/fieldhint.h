#pragma once

#include <QPointer>
#include <QWidget>

// The reason a field refused a value, shown at the field: a red frame around it and the text
// just below (above when there is no room). One per window; it follows its field and goes
// when the field is hidden. Clicks pass through it.
class FieldHint : public QWidget
{
    Q_OBJECT
public:
    // Shows text at field, replacing whatever hint its window showed.
    static FieldHint *showAt(QWidget *field, const QString &text);
    // Hides the window's hint if it belongs to field.
    static void hideFor(const QWidget *field);
    // The hint shown in the window of widget, or nullptr.
    static FieldHint *visibleIn(const QWidget *widget);

    QString text() const { return m_text; }
    QWidget *field() const { return m_field; }

    // Where the text box goes: below the framed field, else above it, moved left to stay
    // inside area. Everything in the coordinates of the field's window.
    static QRect textBox(const QRect &frame, const QSize &text, const QRect &area);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    explicit FieldHint(QWidget *window);
    void place();
    QSize textSize() const;

    QPointer<QWidget> m_field;
    QString m_text;
    QRect m_frame; // in this widget's coordinates
    QRect m_box;
};
