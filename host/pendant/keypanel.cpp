#include "keypanel.h"

#include <QIcon>
#include <QToolButton>
#include <QVBoxLayout>

KeyPanel::KeyPanel(QWidget *parent) : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(4, 4, 4, 4);
    m_layout->setSpacing(6);
    m_layout->addStretch();
    setEnabled(false);
}

void KeyPanel::setButtons(const QList<kelplugin::PhysicalButton> &buttons)
{
    while (m_layout->count() > 1) {
        QLayoutItem *item = m_layout->takeAt(0);
        delete item->widget();
        delete item;
    }
    m_buttons = buttons;
    int row = 0;
    for (const kelplugin::PhysicalButton &button : buttons) {
        auto *key = new QToolButton(this);
        key->setObjectName(QStringLiteral("key_") + button.name);
        key->setText(button.name);
        key->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        key->setIconSize(QSize(40, 40));
        key->setFixedSize(124, 84);
        key->setIcon(QIcon(button.unpressedIcon));
        const auto callback = button.callback;
        const QString pressedIcon = button.pressedIcon;
        const QString unpressedIcon = button.unpressedIcon;
        connect(key, &QToolButton::pressed, this, [key, callback, pressedIcon] {
            key->setIcon(QIcon(pressedIcon));
            if (callback)
                callback(true);
        });
        connect(key, &QToolButton::released, this, [key, callback, unpressedIcon] {
            key->setIcon(QIcon(unpressedIcon));
            if (callback)
                callback(false);
        });
        m_layout->insertWidget(row++, key);
    }
}

void KeyPanel::setKeysActive(bool active)
{
    setEnabled(active);
}
