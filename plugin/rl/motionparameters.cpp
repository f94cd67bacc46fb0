#include "motionparameters.h"

#include "kelplugin/interfacemanager.h"

namespace kelplugin {

namespace {

// A controller without lists still gets a usable line: the robot's built-in data.
void fill(QComboBox *box, QStringList items, const QString &fallback, const QString &current)
{
    items.removeAll(QString());
    items.removeDuplicates();
    if (items.isEmpty())
        items.append(fallback);
    const QSignalBlocker blocker(box);
    box->clear();
    box->addItems(items);
    if (!current.isEmpty() && !items.contains(current))
        box->addItem(current);
    if (!current.isEmpty())
        box->setCurrentIndex(box->findText(current));
}

} // namespace

MotionParameters::MotionParameters(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    for (int field = 0; field < FieldCount; ++field) {
        connect(combo(Field(field)), QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &MotionParameters::changed);
    }
}

MotionParameters::~MotionParameters() = default;

void MotionParameters::fillChoices()
{
    InterfaceManager &host = kelPluginInterface();
    fill(m_ui.comboBox_speed, host.getSpeedList(), QStringLiteral("v100"), QString());
    fill(m_ui.comboBox_zone, host.getZoneList(), QStringLiteral("fine"), QString());
    fill(m_ui.comboBox_tool, host.getToolList(), QStringLiteral("tool0"), host.getCurTool());
    fill(m_ui.comboBox_wobj, host.getWobjList(), QStringLiteral("wobj0"), host.getCurWobj());
    emit changed();
}

QStringList MotionParameters::values() const
{
    QStringList result;
    for (int field = 0; field < FieldCount; ++field)
        result.append(combo(Field(field))->currentText());
    return result;
}

void MotionParameters::setValue(Field field, const QString &value)
{
    QComboBox *box = combo(field);
    if (!box || value.isEmpty())
        return;
    int index = box->findText(value);
    if (index < 0) {
        const QSignalBlocker blocker(box);
        box->addItem(value);
        index = box->count() - 1;
    }
    box->setCurrentIndex(index);
}

QComboBox *MotionParameters::combo(Field field) const
{
    switch (field) {
    case Speed:
        return m_ui.comboBox_speed;
    case Zone:
        return m_ui.comboBox_zone;
    case Tool:
        return m_ui.comboBox_tool;
    case WObj:
        return m_ui.comboBox_wobj;
    case FieldCount:
        break;
    }
    return nullptr;
}

} // namespace kelplugin
