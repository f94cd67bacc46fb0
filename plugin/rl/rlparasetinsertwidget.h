#pragma once

#include "ui_rlparasetinsertwidget.h"

#include "kelplugin/rlcontentbase.h"

namespace kelplugin {

// Insert and property editor of LsParaSet("LsDataN"): switches to another weld data set
// while welding.
class RLParaSetInsertWidget : public RLContentBase
{
    Q_OBJECT
    Q_PROPERTY(QString instructionName READ instructionName CONSTANT)
public:
    explicit RLParaSetInsertWidget(const QString &name, QWidget *parent = nullptr);
    ~RLParaSetInsertWidget() override;

    QString instructionName() const { return m_name; }

    // A line naming no known weld data set leaves the choice as it is and logs a warning.
    void setInstructionText(const QString &line) override;
    QString instructionText() const override;

private:
    void fillChoices();
    bool fill(const QString &line);

    Ui::RLParaSetInsertWidget m_ui;
    QString m_name;
};

} // namespace kelplugin
