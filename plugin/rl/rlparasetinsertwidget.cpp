#include "rlparasetinsertwidget.h"

#include "core/logline.h"
#include "rl/callexpression.h"

#include <exception>

namespace kelplugin {

namespace {
const int kWeldDataSets = 30;
}

RLParaSetInsertWidget::RLParaSetInsertWidget(const QString &name, QWidget *parent)
    : RLContentBase(parent), m_name(name)
{
    m_ui.setupUi(this);
    fillChoices();
    connect(m_ui.comboBox_data, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        [this] { emit instructionTextChanged(instructionText()); });
}

RLParaSetInsertWidget::~RLParaSetInsertWidget() = default;

void RLParaSetInsertWidget::setInstructionText(const QString &line)
{
    bool filled = false;
    try {
        filled = fill(line);
    } catch (const std::exception &e) {
        kellaser::logWarning() << "RLParaSetInsertWidget::setInstructionText exception:"
                               << e.what();
    } catch (...) {
        kellaser::logWarning() << "RLParaSetInsertWidget::setInstructionText unknown exception";
    }
    if (!filled) {
        kellaser::logWarning() << "RLParaSetInsertWidget::setInstructionText" << m_name
                               << "line not understood, form unchanged:" << line;
    }
}

QString RLParaSetInsertWidget::instructionText() const
{
    const QString quoted = QLatin1Char('"') + m_ui.comboBox_data->currentText() + QLatin1Char('"');
    return QStringLiteral("LsParaSet(%1);").arg(quoted);
}

void RLParaSetInsertWidget::fillChoices()
{
    const QSignalBlocker blocker(m_ui.comboBox_data);
    m_ui.comboBox_data->clear();
    for (int i = 1; i <= kWeldDataSets; ++i)
        m_ui.comboBox_data->addItem(QStringLiteral("LsData%1").arg(i));
}

bool RLParaSetInsertWidget::fill(const QString &line)
{
    QString function;
    QStringList parameters;
    if (!kellaser::util::extractFunctionAndParameters(line, function, parameters))
        return false;
    if (function != QLatin1String("LsParaSet") || parameters.size() != 1)
        return false;
    const QString quote = QStringLiteral("\"");
    const QString quoted = parameters.first();
    if (quoted.size() < 2 || !quoted.startsWith(quote) || !quoted.endsWith(quote))
        return false;
    const int index
        = m_ui.comboBox_data->findText(kellaser::util::stripEnclosing(quoted, quote, quote));
    if (index < 0)
        return false;
    m_ui.comboBox_data->setCurrentIndex(index);
    return true;
}

} // namespace kelplugin
