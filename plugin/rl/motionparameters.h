#pragma once

#include "ui_motionparameters.h"

#include <QStringList>
#include <QWidget>

namespace kelplugin {

// Speed, zone, tool and work object of a motion instruction, chosen from the host's lists.
// Shared by the motion instruction editors.
class MotionParameters : public QWidget
{
    Q_OBJECT
public:
    enum Field { Speed, Zone, Tool, WObj, FieldCount };

    explicit MotionParameters(QWidget *parent = nullptr);
    ~MotionParameters() override;

    // Reads the lists from the host and preselects its current tool and work object.
    void fillChoices();

    // In Field order.
    QStringList values() const;
    // A value the host does not list is kept as a choice, so that a program line survives
    // editing unchanged.
    void setValue(Field field, const QString &value);

signals:
    void changed();

private:
    QComboBox *combo(Field field) const;

    Ui::MotionParameters m_ui;
};

} // namespace kelplugin
