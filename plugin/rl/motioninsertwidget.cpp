#include "motioninsertwidget.h"

#include "core/logline.h"
#include "rl/callexpression.h"
#include "rl/motionparameters.h"
#include "rl/targetpointchooser.h"

#include <exception>

namespace kelplugin {

MotionInsertWidget::MotionInsertWidget(
    const QString &name, const QString &keyword, const QString &textTemplate, QWidget *parent)
    : RLContentBase(parent), m_name(name), m_keyword(keyword), m_template(textTemplate)
{ }

MotionInsertWidget::~MotionInsertWidget() = default;

void MotionInsertWidget::bind(
    const QList<TargetPointChooser *> &points, MotionParameters *parameters)
{
    m_points = points;
    m_parameters = parameters;
    m_filling = true;
    for (TargetPointChooser *chooser : m_points) {
        chooser->fillChoices();
        connect(chooser, &TargetPointChooser::changed, this, &MotionInsertWidget::announceText);
    }
    m_parameters->fillChoices();
    connect(m_parameters, &MotionParameters::changed, this, &MotionInsertWidget::announceText);
    m_filling = false;
    m_announced = instructionText();
}

void MotionInsertWidget::setInstructionText(const QString &line)
{
    bool filled = false;
    try {
        m_filling = true;
        filled = fill(line);
    } catch (const std::exception &e) {
        kellaser::logWarning() << "MotionInsertWidget::setInstructionText exception:" << e.what();
    } catch (...) {
        kellaser::logWarning() << "MotionInsertWidget::setInstructionText unknown exception";
    }
    m_filling = false;
    if (!filled) {
        kellaser::logWarning() << "MotionInsertWidget::setInstructionText" << m_name
                               << "line not understood, form unchanged:" << line;
    }
    announceText();
}

QString MotionInsertWidget::instructionText() const
{
    QStringList parameters;
    for (const TargetPointChooser *chooser : m_points)
        parameters.append(chooser->expression());
    if (m_parameters)
        parameters.append(m_parameters->values());
    return m_template.arg(parameters.join(QStringLiteral(", ")));
}

bool MotionInsertWidget::fill(const QString &line)
{
    QString function;
    QStringList parameters;
    if (!kellaser::util::extractFunctionAndParameters(line, function, parameters))
        return false;
    const int pointCount = m_points.size();
    if (function != m_keyword || parameters.size() < pointCount
        || parameters.size() > pointCount + MotionParameters::FieldCount)
        return false;

    // Check every point before touching the form, so that a bad line changes nothing.
    QList<TargetPointChooser::Target> targets;
    for (int i = 0; i < pointCount; ++i) {
        TargetPointChooser::Target target;
        if (!TargetPointChooser::parseExpression(parameters.at(i), target))
            return false;
        targets.append(target);
    }
    for (int i = 0; i < pointCount; ++i)
        m_points.at(i)->setTarget(targets.at(i));
    // Missing trailing parameters keep what the form shows.
    for (int i = pointCount; i < parameters.size(); ++i)
        m_parameters->setValue(MotionParameters::Field(i - pointCount), parameters.at(i));
    kellaser::logDebug() << "LASER::"
                         << "MotionInsertWidget::fill" << m_name
                         << "parameters:" << parameters.join(QStringLiteral(", "));
    return true;
}

void MotionInsertWidget::announceText()
{
    if (m_filling)
        return;
    const QString text = instructionText();
    if (text == m_announced)
        return;
    m_announced = text;
    emit instructionTextChanged(text);
}

} // namespace kelplugin
