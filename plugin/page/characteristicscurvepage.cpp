#include "characteristicscurvepage.h"

#include "curveaxes.h"
#include "fitquality.h"
#include "pagesave.h"
#include "weldsettingpage.h"

#include "core/commandchannel.h"
#include "core/logline.h"
#include "widget/customchart.h"
#include "widget/fieldguard.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QSpinBox>
#include <QTableWidget>

#include <cmath>
#include <limits>

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kCurveRecord = QStringLiteral("weld_curve_config");
const QString kIoRecord = QStringLiteral("weld_io_config");
const QString kComputeCommand = QStringLiteral("compute_curve_config");

// Record keys and commands of one curve, in tab order.
struct CurveKeys
{
    QString nodeCount;
    QString nodes;
    QString saveCommand;
    QString portEnabled;
    QString port;
};

const std::array<CurveKeys, CharacteristicsCurvePage::CurveCount> &curveKeys()
{
    static const std::array<CurveKeys, CharacteristicsCurvePage::CurveCount> keys {{
        {QStringLiteral("laser_power_node"), QStringLiteral("power_nodes_data"),
            QStringLiteral("set_weld_curve_power_config"), QStringLiteral("power_enabled"),
            QStringLiteral("power_port")},
        {QStringLiteral("laser_feed_node"), QStringLiteral("feed_nodes_data"),
            QStringLiteral("set_weld_curve_feed_config"), QStringLiteral("wire_speed_enabled"),
            QStringLiteral("wire_speed_port")},
        {QStringLiteral("laser_frequency_node"), QStringLiteral("frequency_nodes_data"),
            QStringLiteral("set_weld_curve_frequency_config"), QStringLiteral("frequency_enabled"),
            QStringLiteral("frequency_port")},
        {QStringLiteral("laser_dutycycle_node"), QStringLiteral("dutycycle_nodes_data"),
            QStringLiteral("set_weld_curve_dutycycle_config"), QStringLiteral("duty_cycle_enabled"),
            QStringLiteral("duty_cycle_port")},
    }};
    return keys;
}

constexpr int kRawColumn = 1;
constexpr int kPhysicalColumn = 2;
// The fit table's first figure column: deviation in the curve's unit, then in % of the line.
constexpr int kFitUnitColumn = 1;
// Units of the physical values, in tab order; Latin in every language.
const char *const kUnits[] = {"W", "mm/s", "Hz", "%"};
const QColor kLargestDeviation(255, 205, 205);
constexpr int kRowHeight = 35;
// The combo offers 2..10 nodes; a record cannot make a table longer than that.
constexpr int kMaxNodes = 10;

// A read-only, centred cell of the fit figures' table.
QTableWidgetItem *figureItem(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled);
    item->setTextAlignment(Qt::AlignCenter);
    return item;
}

// The physical range is keyed on the table's name. "tableWidget_power" does not exist on the
// form (the power table is "tableWidget_laserpower"), so power takes the general range.
std::pair<int, int> physicalRange(const QString &tableName)
{
    if (tableName == QLatin1String("tableWidget_power"))
        return {0, 6000};
    if (tableName == QLatin1String("tableWidget_dutycycle"))
        return {1, 100};
    return {0, 65535};
}

// A controller number truncated toward zero; anything that is not a finite number reads 0.
int truncatedInt(const QJsonValue &value)
{
    const double number = value.toDouble(0.0);
    if (!std::isfinite(number))
        return 0;
    if (number >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (number <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(number);
}

double finiteDouble(const QJsonValue &value)
{
    const double number = value.toDouble(0.0);
    return std::isfinite(number) ? number : 0.0;
}

QDoubleSpinBox *rawSpin(const QTableWidget *table, int row)
{
    return qobject_cast<QDoubleSpinBox *>(table->cellWidget(row, kRawColumn));
}

QSpinBox *physicalSpin(const QTableWidget *table, int row)
{
    return qobject_cast<QSpinBox *>(table->cellWidget(row, kPhysicalColumn));
}

double itemNumber(const QTableWidget *table, int row, int column)
{
    const QTableWidgetItem *item = table->item(row, column);
    return item ? item->text().toDouble() : 0.0;
}

// One node as a chart point; a row without its editors falls back to its item texts.
QPointF nodePoint(const QTableWidget *table, int row)
{
    const QDoubleSpinBox *raw = rawSpin(table, row);
    const QSpinBox *physical = physicalSpin(table, row);
    if (raw && physical)
        return {raw->value(), double(physical->value())};
    return {itemNumber(table, row, kRawColumn), itemNumber(table, row, kPhysicalColumn)};
}

} // namespace

CharacteristicsCurvePage::CharacteristicsCurvePage(WeldSettingPage *settingPage, QWidget *parent)
    : QWidget(parent), m_settingPage(settingPage)
{
    m_ui.setupUi(this);
    m_curves = {{
        {m_ui.laserpower, m_ui.comboBox_node, m_ui.tableWidget_laserpower, m_ui.Chart_laserpower,
            m_ui.tableWidget_fit_laserpower, m_ui.label_fit_laserpower},
        {m_ui.feedspeed, m_ui.comboBox_node_2, m_ui.tableWidget_feedspeed, m_ui.Chart_feedspeed,
            m_ui.tableWidget_fit_feedspeed, m_ui.label_fit_feedspeed},
        {m_ui.frequency, m_ui.comboBox_node_3, m_ui.tableWidget_frequency, m_ui.Chart_frequency,
            m_ui.tableWidget_fit_frequency, m_ui.label_fit_frequency},
        {m_ui.dutycycle, m_ui.comboBox_node_4, m_ui.tableWidget_dutycycle, m_ui.Chart_dutycycle,
            m_ui.tableWidget_fit_dutycycle, m_ui.label_fit_dutycycle},
    }};

    m_state->setForm([this] {
        QJsonArray form;
        for (int i = 0; i < CurveCount; ++i)
            form.append(curveObject(Curve(i)));
        return form;
    });
    connect(m_ui.pushButton_compute, &QPushButton::clicked, this,
        &CharacteristicsCurvePage::onComputePowerChart);
    connect(m_ui.pushButton_compute_5, &QPushButton::clicked, this,
        &CharacteristicsCurvePage::onComputeFeedSpeedChart);
    connect(m_ui.pushButton_compute_2, &QPushButton::clicked, this,
        &CharacteristicsCurvePage::onComputeFrequencyChart);
    connect(m_ui.pushButton_compute_3, &QPushButton::clicked, this,
        &CharacteristicsCurvePage::onComputeDutyCycleChart);

    connect(m_ui.comboBox_node, qOverload<int>(&QComboBox::currentIndexChanged), this,
        &CharacteristicsCurvePage::refreshPowerCmb);
    connect(m_ui.comboBox_node_2, qOverload<int>(&QComboBox::currentIndexChanged), this,
        &CharacteristicsCurvePage::refreshFeedSpeedCmb);
    connect(m_ui.comboBox_node_3, qOverload<int>(&QComboBox::currentIndexChanged), this,
        &CharacteristicsCurvePage::refreshFrequencyCmb);
    connect(m_ui.comboBox_node_4, qOverload<int>(&QComboBox::currentIndexChanged), this,
        &CharacteristicsCurvePage::refreshDutyCycleCmb);

    const std::array<std::pair<QPushButton *, QPushButton *>, CurveCount> saveAndCancel {{
        {m_ui.pushButton_Save_laserpower, m_ui.pushButton_cancel},
        {m_ui.pushButton_Save_speed, m_ui.pushButton_cancel_5},
        {m_ui.pushButton_Save_frequency, m_ui.pushButton_cancel_2},
        {m_ui.pushButton_Save_dutycycle, m_ui.pushButton_cancel_3},
    }};
    for (int i = 0; i < CurveCount; ++i) {
        const auto curve = Curve(i);
        connect(
            saveAndCancel[i].first, &QPushButton::clicked, this, [this, curve] { save(curve); });
        connect(
            saveAndCancel[i].second, &QPushButton::clicked, this, [this, curve] { cancel(curve); });
        // The value columns share the width, so a port name or "Not configured" fits.
        QHeaderView *header = m_curves[i].table->horizontalHeader();
        header->setSectionResizeMode(0, QHeaderView::ResizeToContents);
        header->setSectionResizeMode(kRawColumn, QHeaderView::Stretch);
        header->setSectionResizeMode(kPhysicalColumn, QHeaderView::Stretch);
        setUpFitTable(curve);
        // The tables start with as many rows as their combo says, before any record arrives.
        refreshTable(curve, m_curves[i].nodeCount->currentIndex());
    }
    FieldGuard::install(this);
}

CharacteristicsCurvePage::~CharacteristicsCurvePage() = default;

void CharacteristicsCurvePage::initStyle()
{
    kellaser::logInfo() << "CharacteristicsCurvePage::initStyle";
    const QString comboStyle = QStringLiteral(
        "QComboBox { background-color: white; border: 1px solid #555555; border-radius: 6px;"
        " padding: 4px 8px; }");
    for (const CurveWidgets &widgets : m_curves)
        widgets.nodeCount->setStyleSheet(comboStyle);
}

void CharacteristicsCurvePage::checkSaveResult(const QJsonArray &result, const QString &command)
{
    kellaser::CommandChannel::checkReply(result, command,
        QStringLiteral("CharacteristicsCurvePage::checkSaveResult failed. "),
        tr("Saved successfully"), tr("Save failed. Please check the parameter configuration."));
}

QJsonObject CharacteristicsCurvePage::curveObject(Curve curve) const
{
    const CurveWidgets &widgets = m_curves[curve];
    QJsonArray rows;
    for (int row = 0; row < widgets.table->rowCount(); ++row) {
        const QPointF node = nodePoint(widgets.table, row);
        rows.append(QJsonArray {node.x(), int(node.y())});
    }
    const CurveKeys &keys = curveKeys()[curve];
    return {{keys.nodeCount, widgets.nodeCount->currentIndex() + 2}, {keys.nodes, rows}};
}

CharacteristicsCurvePage::CurveSave CharacteristicsCurvePage::curveSave(Curve curve)
{
    const CurveKeys &keys = curveKeys()[curve];
    return {keys.nodeCount, keys.nodes, keys.saveCommand};
}

QString CharacteristicsCurvePage::nodesRefusal(const QVector<QPointF> &nodes)
{
    if (nodes.size() < 2)
        return tr("Validation failed,The table requires at least two rows of data!");
    const int i = firstFallingNode(nodes);
    if (i < 0)
        return QString();
    const QString message
        = tr("The data in line %1 must be greater than the data in row %2!").arg(i + 1).arg(i);
    // The formatted text goes through the translation once more, as the catalogue expects.
    return tr(message.toUtf8().constData());
}

int CharacteristicsCurvePage::firstFallingNode(const QVector<QPointF> &nodes)
{
    for (int i = 1; i < nodes.size(); ++i) {
        const QPointF &previous = nodes.at(i - 1);
        const QPointF &node = nodes.at(i);
        if (!(previous.x() < node.x() && previous.y() < node.y()))
            return i;
    }
    return -1;
}

bool CharacteristicsCurvePage::validate(Curve curve)
{
    const QTableWidget *table = m_curves[curve].table;
    QVector<QPointF> nodes;
    for (int i = 0; i < table->rowCount(); ++i) {
        // A half-built table cannot be judged; the node count alone can.
        if (table->rowCount() >= 2 && (!rawSpin(table, i) || !physicalSpin(table, i)))
            return false;
        nodes.append(nodePoint(table, i));
    }
    const QString refusal = nodesRefusal(nodes);
    if (refusal.isEmpty())
        return true;
    kelplugin::ThrowLog(kPluginKey, kelplugin::THROW_LOG_WARNING, refusal);
    const int node = firstFallingNode(nodes);
    if (node < 0) {
        FieldGuard::point(m_curves[curve].nodeCount, tr("At least two nodes"));
        return false;
    }
    // The value that does not rise is the one to correct; the raw value is checked first.
    const bool rawFalls = !(nodes.at(node - 1).x() < nodes.at(node).x());
    QWidget *field = rawFalls ? static_cast<QWidget *>(rawSpin(table, node))
                              : static_cast<QWidget *>(physicalSpin(table, node));
    FieldGuard::point(field,
        tr("%1 must be greater than in node %2").arg(FieldGuard::fieldName(field)).arg(node));
    return false;
}

bool CharacteristicsCurvePage::isModified(Curve curve) const
{
    const QJsonArray filled = m_state->filledForm().toArray();
    return m_state->allRead() && curve < filled.size() && filled.at(curve) != curveObject(curve);
}

bool CharacteristicsCurvePage::hasUnsavedChanges() const
{
    for (int i = 0; i < CurveCount; ++i) {
        if (isModified(Curve(i)))
            return true;
    }
    return false;
}

QString CharacteristicsCurvePage::unsavedChangesName() const
{
    QStringList tabs;
    for (int i = 0; i < CurveCount; ++i) {
        if (isModified(Curve(i)))
            tabs.append(m_ui.tabWidget->tabText(m_ui.tabWidget->indexOf(m_curves[i].tab)));
    }
    return tr("the characteristic curves (%1)").arg(tabs.join(QStringLiteral(", ")));
}

bool CharacteristicsCurvePage::saveChanges()
{
    QList<Curve> modified;
    for (int i = 0; i < CurveCount; ++i) {
        if (isModified(Curve(i)))
            modified.append(Curve(i));
    }
    for (const Curve curve : modified) {
        save(curve);
        if (isModified(curve)) {
            // The tab that could not be saved stays in front, its message beside it.
            m_ui.tabWidget->setCurrentWidget(m_curves[curve].tab);
            return false;
        }
    }
    return true;
}

void CharacteristicsCurvePage::discardChanges()
{
    readRecord();
}

void CharacteristicsCurvePage::computeChart(Curve curve)
{
    if (!validate(curve))
        return;
    drawFit(curve);
}

void CharacteristicsCurvePage::drawFit(Curve curve)
{
    const CurveWidgets &widgets = m_curves[curve];
    const QJsonArray reply
        = kellaser::CommandChannel::send(this, kComputeCommand, curveObject(curve));
    const Fit fit = fitFromReply(reply);

    QVector<QPointF> points;
    points.reserve(widgets.table->rowCount());
    for (int row = 0; row < widgets.table->rowCount(); ++row)
        points.append(nodePoint(widgets.table, row));
    const CurveAxes axes = CurveAxes::choose(points);

    const QTableWidgetItem *header = widgets.table->horizontalHeaderItem(kRawColumn);
    widgets.chart->setAxis(
        QString(), axes.xStep, axes.xMin, axes.xMax, QString(), axes.yStep, axes.yMin, axes.yMax);
    widgets.chart->setPoints(points);
    widgets.chart->setLine(fit.slope, fit.intercept);
    widgets.chart->setAxisLabels(
        header ? header->text() : QString(), yAxisLabel(widgets.chart->objectName()));
    showFitQuality(curve);
    widgets.chart->update();
}

void CharacteristicsCurvePage::showFitQuality(Curve curve)
{
    const CurveWidgets &widgets = m_curves[curve];
    QVector<QPointF> points;
    for (int row = 0; row < widgets.table->rowCount(); ++row)
        points.append(nodePoint(widgets.table, row));
    const kellaser::FitQuality quality
        = kellaser::FitQuality::of(points, widgets.chart->slope(), widgets.chart->intercept());
    clearFitQuality(curve);
    if (!quality.usable) {
        widgets.fit->setText(tr("No fitted line: the nodes' deviations cannot be shown."));
        return;
    }
    const auto number = [](double value) { return QString::number(value, 'f', 1); };
    for (int row = 0; row < quality.deviations.size(); ++row) {
        const double percent = quality.percents.at(row);
        const QStringList texts {number(quality.deviations.at(row)),
            std::isnan(percent) ? tr("line at 0") : number(percent)};
        for (int column = 0; column < texts.size(); ++column) {
            widgets.fitTable->setItem(row, kFitUnitColumn + column, figureItem(texts.at(column)));
        }
    }
    const QString rSquared = std::isnan(quality.rSquared)
        ? tr("R² cannot be computed: all values are equal")
        : tr("R² = %1").arg(quality.rSquared, 0, 'f', 4);
    if (quality.largest < 0) {
        widgets.fit->setText(tr("%1 · every node lies on the line").arg(rSquared));
        return;
    }
    for (int column = 0; column < widgets.fitTable->columnCount(); ++column) {
        if (QTableWidgetItem *item = widgets.fitTable->item(quality.largest, column))
            item->setBackground(kLargestDeviation);
    }
    // With many nodes the table scrolls; the marked row is brought into view.
    widgets.fitTable->scrollToItem(widgets.fitTable->item(quality.largest, 0));
    if (QTableWidgetItem *item = widgets.table->item(quality.largest, 0))
        item->setBackground(kLargestDeviation);
    widgets.chart->setFitMark(quality.largest);

    const int node = quality.largest;
    const double value = quality.againstOthers ? quality.offOthers : quality.deviations.at(node);
    const double percent
        = quality.againstOthers ? quality.offOthersPercent : quality.percents.at(node);
    QString figure = QStringLiteral("%1 %2").arg(number(value), QLatin1String(kUnits[curve]));
    if (!std::isnan(percent))
        figure = QStringLiteral("%1 (%2 %)").arg(figure, number(percent));
    const QString text = quality.againstOthers
        ? tr("%1 · stands out most: node %2, %3 off the line through the others")
        : tr("%1 · largest deviation: node %2, %3");
    widgets.fit->setText(text.arg(rSquared).arg(node + 1).arg(figure));
}

void CharacteristicsCurvePage::setUpFitTable(Curve curve)
{
    QTableWidget *table = m_curves[curve].fitTable;
    const QString unit = QLatin1String(kUnits[curve]);
    const QString deviation = tr("Deviation (%1)");
    table->setHorizontalHeaderLabels(
        {tr("Node"), deviation.arg(unit), deviation.arg(QLatin1String("%"))});
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    for (int column = kFitUnitColumn; column < table->columnCount(); ++column)
        table->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
}

void CharacteristicsCurvePage::clearFitQuality(Curve curve)
{
    const CurveWidgets &widgets = m_curves[curve];
    // Loading a record changes every spin box; most of those calls find nothing to clear.
    if (widgets.fit->text().isEmpty() && widgets.fitTable->rowCount() == widgets.table->rowCount())
        return;
    widgets.fit->clear();
    // One row per node at all times, so the chart above keeps its height when figures come.
    widgets.fitTable->clearContents();
    widgets.fitTable->setRowCount(widgets.table->rowCount());
    for (int row = 0; row < widgets.table->rowCount(); ++row) {
        widgets.fitTable->setItem(row, 0, figureItem(QString::number(row + 1)));
        if (QTableWidgetItem *node = widgets.table->item(row, 0))
            node->setBackground(QBrush());
    }
    if (widgets.chart->fitMark() >= 0) {
        widgets.chart->setFitMark(-1);
        widgets.chart->update();
    }
}

CharacteristicsCurvePage::Fit CharacteristicsCurvePage::fitFromReply(const QJsonArray &reply)
{
    Fit fit;
    for (const QJsonValue &element : reply) {
        const QJsonObject result
            = element.toObject().value(kPluginKey).toObject().value(kComputeCommand).toObject();
        fit.intercept = result.value(QStringLiteral("intercept")).toDouble(0.0);
        fit.slope = result.value(QStringLiteral("slope")).toDouble(0.0);
    }
    return fit;
}

QString CharacteristicsCurvePage::yAxisLabel(const QString &chartName)
{
    if (chartName == QLatin1String("Chart_laserpower"))
        return tr("Power W");
    if (chartName == QLatin1String("Chart_feedspeed"))
        return tr("Feedspeed mm/s");
    if (chartName == QLatin1String("Chart_frequency"))
        return tr("Frequency Hz");
    if (chartName == QLatin1String("Chart_dutycycle"))
        return tr("Dutycycle %");
    return QString();
}

void CharacteristicsCurvePage::save(Curve curve)
{
    if (!kellaser::PageSave::mayChange(tr("Insufficient user permissions!"), m_state->allRead()))
        return;
    if (!validate(curve))
        return;
    drawFit(curve);
    const QString &command = curveKeys()[curve].saveCommand;
    const QJsonObject sent = curveObject(curve);
    const kellaser::CommandChannel::Entry entry
        = kellaser::PageSave::send({this, kCurveRecord, command, sent,
            [this, command](const QJsonArray &reply) { checkSaveResult(reply, command); },
            [this] {
                readRecord();
                for (int i = 0; i < CurveCount; ++i) {
                    if (m_curves[i].chart->hasLine())
                        computeChart(Curve(i));
                }
            },
            nullptr});
    // Only this tab's table reached the controller; the other tabs keep their changes.
    if (entry.outcome == kellaser::CommandChannel::Outcome::Success) {
        QJsonArray filled = m_state->filledForm().toArray();
        if (curve < filled.size()) {
            filled.replace(curve, sent);
            m_state->setFilledForm(filled);
        }
    }
}

void CharacteristicsCurvePage::readRecord()
{
    m_state->note(
        kCurveRecord, loadRecord(kelplugin::kelPluginInterface().getKelServiceData(kCurveRecord)));
}

void CharacteristicsCurvePage::cancel(Curve curve)
{
    readRecord();
    if (m_curves[curve].chart->hasLine())
        computeChart(curve);
    kelplugin::ThrowLog(kPluginKey, kelplugin::THROW_LOG_INFO, tr("Cancel successful"));
}

void CharacteristicsCurvePage::refreshTable(Curve curve, int index)
{
    QTableWidget *table = m_curves[curve].table;
    const int count = qMax(0, index + 2);
    resizeTable(curve, count);
    for (int row = 0; row < count; ++row)
        setNode(table, row, 0.0, 0);
}

void CharacteristicsCurvePage::resizeTable(Curve curve, int rows)
{
    QTableWidget *table = m_curves[curve].table;
    // Rows that stay keep their editors: building spin boxes anew on every show costs more
    // than a frame, and every value is written again by the caller anyway.
    table->setRowCount(rows);
    const auto range = physicalRange(table->objectName());
    for (int row = 0; row < rows; ++row) {
        if (!table->item(row, 0)) {
            auto *number = new QTableWidgetItem(QString::number(row + 1));
            number->setFlags(number->flags() & ~Qt::ItemIsEditable);
            table->setItem(row, 0, number);
        }
        if (!rawSpin(table, row)) {
            auto *rawBox = new QDoubleSpinBox(table);
            rawBox->setRange(0.0, 65535.99);
            rawBox->setDecimals(2);
            rawBox->setSingleStep(0.01);
            FieldGuard::guard(rawBox, tr("Node %1 output value").arg(row + 1));
            table->setCellWidget(row, kRawColumn, rawBox);
            connect(rawBox, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                [this, curve] { clearFitQuality(curve); });
        }
        if (!physicalSpin(table, row)) {
            auto *physicalBox = new QSpinBox(table);
            physicalBox->setRange(range.first, range.second);
            FieldGuard::guard(physicalBox,
                tr("Node %1 %2")
                    .arg(row + 1)
                    .arg(table->horizontalHeaderItem(kPhysicalColumn)
                            ? table->horizontalHeaderItem(kPhysicalColumn)->text().trimmed()
                            : QString()),
                QLatin1String(kUnits[curve]));
            table->setCellWidget(row, kPhysicalColumn, physicalBox);
            connect(physicalBox, qOverload<int>(&QSpinBox::valueChanged), this,
                [this, curve] { clearFitQuality(curve); });
        }
        table->setRowHeight(row, kRowHeight);
    }
    clearFitQuality(curve);
}

void CharacteristicsCurvePage::setNode(QTableWidget *table, int row, double raw, int physical)
{
    // The spin box ranges clamp what a record or a wiped row asks for.
    rawSpin(table, row)->setValue(raw);
    physicalSpin(table, row)->setValue(physical);
}

void CharacteristicsCurvePage::fillTable(Curve curve, int nodeCount, const QJsonValue &rows)
{
    QTableWidget *table = m_curves[curve].table;
    const QJsonArray array = rows.toArray();
    const int count = qBound(0, nodeCount, kMaxNodes);
    resizeTable(curve, count);
    for (int k = 0; k < count; ++k) {
        const QJsonArray node = k < array.size() ? array.at(k).toArray() : QJsonArray();
        setNode(table, k, finiteDouble(node.at(0)), truncatedInt(node.at(1)));
    }
}

bool CharacteristicsCurvePage::loadRecord(const QJsonValue &record)
{
    if (!record.isObject())
        return false;
    const QJsonObject object = record.toObject();
    // Without the power node count the record is taken as incomplete: nothing is loaded.
    if (!object.contains(curveKeys()[Power].nodeCount))
        return false;
    for (int i = 0; i < CurveCount; ++i) {
        const CurveKeys &keys = curveKeys()[i];
        const int nodeCount = truncatedInt(object.value(keys.nodeCount));
        // A count outside 2..10 leaves the combo without a selection.
        m_curves[i].nodeCount->setCurrentIndex(
            nodeCount >= 2 && nodeCount <= kMaxNodes ? nodeCount - 2 : -1);
        const QJsonValue rows = object.value(keys.nodes);
        if (rows.isArray())
            fillTable(Curve(i), nodeCount, rows);
    }
    return true;
}

void CharacteristicsCurvePage::applyPorts(const QJsonValue &ioRecord)
{
    if (!ioRecord.isObject())
        return;
    const QJsonObject object = ioRecord.toObject();
    for (int i = 0; i < CurveCount; ++i) {
        const CurveKeys &keys = curveKeys()[i];
        const QJsonValue port = object.value(keys.port);
        const bool configured
            = object.value(keys.portEnabled).toBool(false) && !port.isNull() && !port.isUndefined();
        m_curves[i].tab->setEnabled(configured);
        const QString text = configured ? port.toVariant().toString() : tr("Not configured");
        QTableWidget *table = m_curves[i].table;
        if (QTableWidgetItem *header = table->horizontalHeaderItem(kRawColumn))
            header->setText(text);
        else
            table->setHorizontalHeaderItem(kRawColumn, new QTableWidgetItem(text));
    }
}

bool CharacteristicsCurvePage::isLocked() const
{
    if (kelplugin::kelPluginInterface().getUserOperateLevel() < 3)
        return true;
    return m_settingPage && m_settingPage->isMainEnabled();
}

void CharacteristicsCurvePage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    auto &host = kelplugin::kelPluginInterface();
    readRecord();
    applyPorts(host.getKelServiceData(kIoRecord));
    for (int i = 0; i < CurveCount; ++i) {
        if (m_curves[i].chart->hasLine())
            computeChart(Curve(i));
    }
    setEnabled(!isLocked());
}

void CharacteristicsCurvePage::onComputePowerChart()
{
    computeChart(Power);
}

void CharacteristicsCurvePage::onComputeFeedSpeedChart()
{
    computeChart(FeedSpeed);
}

void CharacteristicsCurvePage::onComputeFrequencyChart()
{
    computeChart(Frequency);
}

void CharacteristicsCurvePage::onComputeDutyCycleChart()
{
    computeChart(DutyCycle);
}

void CharacteristicsCurvePage::refreshPowerCmb(int index)
{
    refreshTable(Power, index);
}

void CharacteristicsCurvePage::refreshFeedSpeedCmb(int index)
{
    refreshTable(FeedSpeed, index);
}

void CharacteristicsCurvePage::refreshFrequencyCmb(int index)
{
    refreshTable(Frequency, index);
}

void CharacteristicsCurvePage::refreshDutyCycleCmb(int index)
{
    refreshTable(DutyCycle, index);
}
