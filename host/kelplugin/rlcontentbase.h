#pragma once

#include "kelplugin_global.h"

#include <QWidget>

namespace kelplugin {

// Base of the insert and property editors of robot-language instructions. The program editor
// hands an existing line to setInstructionText() and reads the edited line back from
// instructionText().
class KELPLUGIN_EXPORT RLContentBase : public QWidget
{
    Q_OBJECT
public:
    explicit RLContentBase(QWidget *parent = nullptr);
    ~RLContentBase() override;

    virtual void setInstructionText(const QString &line);
    virtual QString instructionText() const;

signals:
    void instructionTextChanged(const QString &text);

private:
    QString m_text;
};

} // namespace kelplugin
