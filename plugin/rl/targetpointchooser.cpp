#include "targetpointchooser.h"

#include "core/logline.h"
#include "page/pagesave.h"
#include "rl/callexpression.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QRegularExpression>
#include <QtMath>

namespace kelplugin {

namespace {

bool toFiniteNumber(const QString &text, double &value)
{
    bool ok = false;
    value = text.toDouble(&ok);
    return ok && qIsFinite(value);
}

QString numberText(double value)
{
    // Spin boxes hold three decimals; 'g' drops trailing zeros.
    return QString::number(value, 'g', 15);
}

} // namespace

TargetPointChooser::TargetPointChooser(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    updateOffsetEnabled();

    connect(m_ui.pushButton_add_point, &QPushButton::clicked, this,
        &TargetPointChooser::addCurrentPosition);
    connect(m_ui.comboBox_point, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &TargetPointChooser::changed);
    connect(
        m_ui.comboBox_offset, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
            updateOffsetEnabled();
            emit changed();
        });
    for (QDoubleSpinBox *box :
        {m_ui.doubleSpinBox_offset_x, m_ui.doubleSpinBox_offset_y, m_ui.doubleSpinBox_offset_z}) {
        connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &TargetPointChooser::changed);
    }
}

TargetPointChooser::~TargetPointChooser() = default;

void TargetPointChooser::fillChoices()
{
    const QString chosen = m_ui.comboBox_point->currentText();
    const QSignalBlocker blocker(m_ui.comboBox_point);
    m_ui.comboBox_point->clear();
    m_ui.comboBox_point->addItems(kelPluginInterface().getPointNameList());
    if (!chosen.isEmpty())
        selectPoint(chosen);
}

QString TargetPointChooser::expression() const
{
    Target target;
    target.point = m_ui.comboBox_point->currentText();
    target.offset = Offset(m_ui.comboBox_offset->currentIndex());
    target.x = m_ui.doubleSpinBox_offset_x->value();
    target.y = m_ui.doubleSpinBox_offset_y->value();
    target.z = m_ui.doubleSpinBox_offset_z->value();
    return formatExpression(target);
}

void TargetPointChooser::setTarget(const Target &target)
{
    {
        const QSignalBlocker pointBlocker(m_ui.comboBox_point);
        const QSignalBlocker offsetBlocker(m_ui.comboBox_offset);
        const QSignalBlocker xBlocker(m_ui.doubleSpinBox_offset_x);
        const QSignalBlocker yBlocker(m_ui.doubleSpinBox_offset_y);
        const QSignalBlocker zBlocker(m_ui.doubleSpinBox_offset_z);
        selectPoint(target.point);
        m_ui.comboBox_offset->setCurrentIndex(int(target.offset));
        m_ui.doubleSpinBox_offset_x->setValue(target.x);
        m_ui.doubleSpinBox_offset_y->setValue(target.y);
        m_ui.doubleSpinBox_offset_z->setValue(target.z);
        updateOffsetEnabled();
    }
    emit changed();
}

bool TargetPointChooser::parseExpression(const QString &expression, Target &target)
{
    static const QRegularExpression pointName(QStringLiteral("^\\s*([A-Za-z_]\\w*)\\s*$"));
    const QRegularExpressionMatch plain = pointName.match(expression);
    if (plain.hasMatch()) {
        target = Target();
        target.point = plain.captured(1);
        return true;
    }

    QString function;
    QStringList parameters;
    if (!kellaser::util::extractFunctionAndParameters(expression, function, parameters))
        return false;
    Target parsed;
    if (function == QLatin1String("Offs"))
        parsed.offset = Offset::Offs;
    else if (function == QLatin1String("RelTool"))
        parsed.offset = Offset::RelTool;
    else
        return false;
    if (parameters.size() != 4 || !pointName.match(parameters.at(0)).hasMatch())
        return false;
    parsed.point = parameters.at(0);
    if (!toFiniteNumber(parameters.at(1), parsed.x) || !toFiniteNumber(parameters.at(2), parsed.y)
        || !toFiniteNumber(parameters.at(3), parsed.z))
        return false;
    target = parsed;
    return true;
}

QString TargetPointChooser::formatExpression(const Target &target)
{
    switch (target.offset) {
    case Offset::Offs:
    case Offset::RelTool:
        return QStringLiteral("%1(%2,%3,%4,%5)")
            .arg(target.offset == Offset::Offs ? QStringLiteral("Offs") : QStringLiteral("RelTool"),
                target.point, numberText(target.x), numberText(target.y), numberText(target.z));
    case Offset::None:
        break;
    }
    return target.point;
}

QString TargetPointChooser::nextPointName(const QStringList &taken)
{
    for (int i = 1;; ++i) {
        const QString name = QStringLiteral("p%1").arg(i);
        if (!taken.contains(name))
            return name;
    }
}

void TargetPointChooser::addCurrentPosition()
{
    // A taught point is stored in the controller: the level is asked at the click.
    if (!kellaser::PageSave::mayChange(tr("Insufficient user permissions!")))
        return;
    InterfaceManager &host = kelPluginInterface();
    const QString name = nextPointName(host.getPointNameList());
    if (!host.addCurrentPoint(name, false, host.getCurTool(), host.getCurWobj())) {
        kellaser::logWarning() << "TargetPointChooser::addCurrentPosition"
                               << "addCurrentPoint failed:" << name;
        ThrowLog(QStringLiteral("kellaserweld"), THROW_LOG_ERROR,
            tr("Failed to add the current position."));
        return;
    }
    fillChoices();
    selectPoint(name);
}

void TargetPointChooser::selectPoint(const QString &name)
{
    int index = m_ui.comboBox_point->findText(name);
    if (index < 0 && !name.isEmpty()) {
        m_ui.comboBox_point->addItem(name);
        index = m_ui.comboBox_point->count() - 1;
    }
    m_ui.comboBox_point->setCurrentIndex(index);
}

void TargetPointChooser::updateOffsetEnabled()
{
    const bool displaced = m_ui.comboBox_offset->currentIndex() != int(Offset::None);
    m_ui.doubleSpinBox_offset_x->setEnabled(displaced);
    m_ui.doubleSpinBox_offset_y->setEnabled(displaced);
    m_ui.doubleSpinBox_offset_z->setEnabled(displaced);
}

} // namespace kelplugin
