#pragma once

#include "kelplugin/rlcontentbase.h"

#include <QList>

namespace kelplugin {

class MotionParameters;
class TargetPointChooser;

// What the laser welding motion editors share: a line is its points in order, then speed,
// zone, tool and work object, written into the instruction's template.
class MotionInsertWidget : public RLContentBase
{
    Q_OBJECT
    Q_PROPERTY(QString instructionName READ instructionName CONSTANT)
public:
    ~MotionInsertWidget() override;

    QString instructionName() const { return m_name; }

    // A line that is not this instruction with a valid set of parameters leaves the form as it
    // is and logs a warning.
    void setInstructionText(const QString &line) override;
    QString instructionText() const override;

protected:
    // textTemplate holds "%1" where the parameters go, e.g. "LsMoveL(%1);".
    MotionInsertWidget(
        const QString &name, const QString &keyword, const QString &textTemplate, QWidget *parent);
    // Called by the subclass once its form is built; fills the choice lists.
    void bind(const QList<TargetPointChooser *> &points, MotionParameters *parameters);

private:
    bool fill(const QString &line);
    void announceText();

    QString m_name;
    QString m_keyword;
    QString m_template;
    QList<TargetPointChooser *> m_points;
    MotionParameters *m_parameters = nullptr;
    QString m_announced;
    bool m_filling = false;
};

} // namespace kelplugin
