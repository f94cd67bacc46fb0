#include "widgetfill.h"

#include <QSignalBlocker>

WidgetFill::WidgetFill(QWidget *page, const std::function<bool(QWidget *)> &filter)
{
    const auto wanted = [&filter](QWidget *widget) { return !filter || filter(widget); };
    const auto combos = page->findChildren<QComboBox *>();
    for (QComboBox *combo : combos) {
        if (!wanted(combo))
            continue;
        QStringList items;
        items.reserve(combo->count());
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        m_combos.append({combo, items, combo->currentIndex()});
    }
    const auto spins = page->findChildren<QSpinBox *>();
    for (QSpinBox *spin : spins) {
        if (wanted(spin))
            m_spins.append({spin, spin->value()});
    }
    const auto doubleSpins = page->findChildren<QDoubleSpinBox *>();
    for (QDoubleSpinBox *spin : doubleSpins) {
        if (wanted(spin))
            m_doubleSpins.append({spin, spin->value()});
    }
    const auto switches = page->findChildren<SwitchButton *>();
    for (SwitchButton *button : switches) {
        if (wanted(button))
            m_switches.append({button, button->isOn()});
    }
}

void WidgetFill::apply()
{
    for (const Combo &combo : qAsConst(m_combos)) {
        if (!combo.combo)
            continue;
        const QSignalBlocker blocker(combo.combo);
        combo.combo->clear();
        combo.combo->addItems(combo.items);
        combo.combo->setCurrentIndex(combo.current);
    }
    for (const Spin &spin : qAsConst(m_spins)) {
        if (!spin.spin)
            continue;
        const QSignalBlocker blocker(spin.spin);
        spin.spin->setValue(spin.value);
    }
    for (const DoubleSpin &spin : qAsConst(m_doubleSpins)) {
        if (!spin.spin)
            continue;
        const QSignalBlocker blocker(spin.spin);
        spin.spin->setValue(spin.value);
    }
    for (const Switch &button : qAsConst(m_switches)) {
        if (button.button)
            button.button->setOn(button.on, false);
    }
}
