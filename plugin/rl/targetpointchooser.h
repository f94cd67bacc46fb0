#pragma once

#include "ui_targetpointchooser.h"

#include <QWidget>

namespace kelplugin {

// Chooses the target of a motion instruction: a taught point, optionally displaced with
// Offs (work object frame) or RelTool (tool frame). Shared by the motion instruction editors.
class TargetPointChooser : public QWidget
{
    Q_OBJECT
public:
    enum class Offset { None, Offs, RelTool };

    struct Target
    {
        QString point;
        Offset offset = Offset::None;
        double x = 0;
        double y = 0;
        double z = 0;
    };

    explicit TargetPointChooser(QWidget *parent = nullptr);
    ~TargetPointChooser() override;

    // Reads the taught points from the host, keeping the chosen one.
    void fillChoices();

    // "p10", "Offs(p10,0,0,5)" or "RelTool(p10,0,0,-5)".
    QString expression() const;
    // Shows a target; a point the host does not list is kept as a choice.
    void setTarget(const Target &target);

    // False for anything but a point name or an Offs/RelTool of a point and three numbers.
    static bool parseExpression(const QString &expression, Target &target);
    static QString formatExpression(const Target &target);
    // The first of p1, p2, ... that is not taken.
    static QString nextPointName(const QStringList &taken);

signals:
    void changed();

private:
    void addCurrentPosition();
    void selectPoint(const QString &name);
    void updateOffsetEnabled();

    Ui::TargetPointChooser m_ui;
};

} // namespace kelplugin
