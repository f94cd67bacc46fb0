#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QSpinBox>

#include "widget/switchbutton.h"

// The bare cost of a page's show: the same content put straight into the same widgets. It
// takes what a shown page holds (drop-down lists and choices, spin box values, switches) and
// puts it back on every apply(), without records, catalogue or checks, and with the widgets'
// signals blocked so that the page does not react.
class WidgetFill
{
public:
    // Only the widgets that pass the filter take part; without one, all of them.
    explicit WidgetFill(QWidget *page, const std::function<bool(QWidget *)> &filter = {});

    void apply();
    int comboCount() const { return m_combos.size(); }

private:
    struct Combo
    {
        QPointer<QComboBox> combo;
        QStringList items;
        int current;
    };
    struct Spin
    {
        QPointer<QSpinBox> spin;
        int value;
    };
    struct DoubleSpin
    {
        QPointer<QDoubleSpinBox> spin;
        double value;
    };
    struct Switch
    {
        QPointer<SwitchButton> button;
        bool on;
    };

    QList<Combo> m_combos;
    QList<Spin> m_spins;
    QList<DoubleSpin> m_doubleSpins;
    QList<Switch> m_switches;
};
