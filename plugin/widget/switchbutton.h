#pragma once

#include <QColor>
#include <QPushButton>
#include <QRect>

// The on/off slider of the configuration pages: a rounded track with a round knob, left when
// off and right when on. Painted entirely by itself.
class SwitchButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn)
    Q_PROPERTY(bool autoToggle READ autoToggle WRITE setAutoToggle)
public:
    // Where track and knob go for a widget of the given size; integer arithmetic throughout.
    struct Geometry
    {
        QRect track;
        int trackRadius;
        QRect knob;
    };
    static Geometry geometry(const QSize &size, bool on);
    static QColor trackColour(bool on);
    static QColor knobColour(bool on);

    explicit SwitchButton(QWidget *parent = nullptr);

    bool isOn() const { return m_on; }
    // The property's setter: changes the state and tells listeners.
    void setOn(bool on) { setOn(on, true); }
    void setOn(bool on, bool emitSignal);
    bool autoToggle() const { return m_autoToggle; }
    void setAutoToggle(bool autoToggle) { m_autoToggle = autoToggle; }

    QSize sizeHint() const override;

signals:
    void onChanged(bool on);
    // Emitted on every click with the state the click asks for.
    void clickedRaw(bool currentState);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_on = false;
    bool m_showText = false;
    bool m_autoToggle = true;
};
