#pragma once

#include "kelplugin/physicalbutton.h"

#include <QList>
#include <QWidget>

class QVBoxLayout;

// One column of the pendant's hardware keys. Pressing a key calls its callback with true,
// releasing it with false; the icon follows the key's state.
class KeyPanel : public QWidget
{
    Q_OBJECT
public:
    explicit KeyPanel(QWidget *parent = nullptr);

    void setButtons(const QList<kelplugin::PhysicalButton> &buttons);
    QList<kelplugin::PhysicalButton> buttons() const { return m_buttons; }
    void setKeysActive(bool active);

private:
    QList<kelplugin::PhysicalButton> m_buttons;
    QVBoxLayout *m_layout;
};
